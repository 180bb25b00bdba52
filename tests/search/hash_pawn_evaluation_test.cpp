#include <gtest/gtest.h>

#include <cstdint>

#include "search/hash_evaluation.h"
#include "search/hash_pawn.h"
#include "search/position_type.h"

namespace {

constexpr std::uint64_t KEY = 0xFEDCBA9876543210ULL;
constexpr Bitboard WHITE_PAWNS = 0x000000000800F700ULL;  // a2-c2, e2-h2, d4
constexpr Bitboard BLACK_PAWNS = 0x00EF001000000000ULL;  // a7-d7, f7-h7, e5

PawnHashEntry EntryOf(std::uint64_t key, int type) {
  PawnHashEntry entry{};
  entry.key = key;
  entry.position_type = std::uint32_t(type);
  entry.passed = SquareBit(D4) | SquareBit(E5);
  entry.isolated = SquareBit(D4);
  entry.pawn_ending = -37;
  return entry;
}

}  // namespace

TEST(PawnHashTable, SizesAndRefusal) {
  PawnHashTable table;
  EXPECT_EQ(table.TotalSlots(), 64u);
  EXPECT_TRUE(table.Resize(std::uint64_t{4} << 20));
  EXPECT_EQ(table.TotalSlots(), 32768u);
  EXPECT_EQ(table.MemoryUsage(), 3670016u);  // 3.5 MB
  EXPECT_TRUE(table.Resize(0));
  EXPECT_EQ(table.TotalSlots(), 64u);
  EXPECT_FALSE(table.Resize(std::uint64_t{1} << 40));
  EXPECT_EQ(table.TotalSlots(), 64u);
}

TEST(PawnHashTable, AnEntryIsGoodOnlyForItsStructureAndType) {
  PawnHashTable table;
  table.Store(EntryOf(KEY, MIDDLEGAME));
  const PawnHashEntry* found = table.Probe(KEY, MIDDLEGAME, WHITE_PAWNS, BLACK_PAWNS);
  ASSERT_NE(found, nullptr);
  EXPECT_EQ(found->pawn_ending, -37);
  EXPECT_EQ(table.Probe(KEY, OPENING, WHITE_PAWNS, BLACK_PAWNS), nullptr);
  EXPECT_EQ(table.Probe(KEY ^ 0x100000000ULL, MIDDLEGAME, WHITE_PAWNS, BLACK_PAWNS), nullptr);
  // Another type of the same structure gets an entry of its own.
  table.Store(EntryOf(KEY, ENDGAME_ROOKS));
  EXPECT_NE(table.Probe(KEY, ENDGAME_ROOKS, WHITE_PAWNS, BLACK_PAWNS), nullptr);
  EXPECT_EQ(table.probes, 4u);
  EXPECT_EQ(table.hits, 2u);
  table.NewSearch();
  EXPECT_EQ(table.probes, 0u);
  EXPECT_EQ(table.hits, 0u);
  EXPECT_EQ(table.FreeSlots(), table.TotalSlots() - 2);
  // Sets that are not the pawns on the board mean a collision: a miss.
  EXPECT_EQ(table.Probe(KEY, MIDDLEGAME, WHITE_PAWNS & ~SquareBit(D4), BLACK_PAWNS), nullptr);
  EXPECT_EQ(table.hits, 0u);
}

TEST(PawnHashTableDeathTest, NoEntryForEndingsWithoutPawns) {
  PawnHashTable table;
  EXPECT_DEATH(table.Store(EntryOf(KEY, ENDGAME_NO_PAWNS_LEFT)), "");
}

TEST(EvaluationHashTable, SizesAnswersAndCounters) {
  EvaluationHashTable table;
  EXPECT_EQ(table.TotalSlots(), 32u);
  EXPECT_EQ(table.MemoryUsage(), 384u);
  EXPECT_TRUE(table.Resize(std::uint64_t{4} << 20));
  EXPECT_EQ(table.TotalSlots(), 262144u);
  EXPECT_EQ(table.MemoryUsage(), std::uint64_t{3} << 20);
  table.Resize(0);

  EXPECT_EQ(table.Probe(KEY, 0), EVALUATION_MISS);
  table.Store(KEY, -25);
  EXPECT_EQ(table.Probe(KEY, -24), EVALUATION_BELOW_BETA);
  EXPECT_EQ(table.Probe(KEY, -25), EVALUATION_AT_LEAST_BETA);
  EXPECT_EQ(table.Probe(KEY ^ (std::uint64_t{1} << 40), -25), EVALUATION_MISS);  // same slot
  EXPECT_EQ(table.probes, 4u);
  EXPECT_EQ(table.hits, 2u);
  table.NewSearch();
  EXPECT_EQ(table.probes, 0u);
  EXPECT_EQ(table.Probe(KEY, 0), EVALUATION_BELOW_BETA);  // the contents stay
  table.Store(KEY ^ (std::uint64_t{1} << 40), 7);        // and are simply overwritten
  EXPECT_EQ(table.Probe(KEY, 0), EVALUATION_MISS);
}
