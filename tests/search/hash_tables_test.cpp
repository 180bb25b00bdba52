// The hash tables of the search: sizes, what an entry answers, which entry a bucket keeps, the
// counters and the status report. The node-count fingerprints of the search catch most faults
// of probing and storing besides.
#include <gtest/gtest.h>

#include <cstdint>

#include "search/hash_pawn.h"
#include "search/hash_report.h"
#include "search/hash_transposition.h"
#include "search/position_type.h"

namespace {

constexpr std::uint64_t KEY = 0x123456789ABCDEF0ULL;
constexpr Move MOVE_A = MakeMoveWord(E2, E4, PAWN);
constexpr Move MOVE_B = MakeMoveWord(G1, F3, KNIGHT);

// Keys of one bucket: the same low word under the smallest mask, different high words.
constexpr std::uint64_t SameBucket(std::uint32_t n) { return (std::uint64_t{n} << 32) | 7; }

struct Answer {
  int kind;
  Move move;
  int type;
  int flags;
};

Answer ProbeAt(TranspositionTable& table, std::uint64_t key, int ply, int distance, int beta) {
  Answer answer{0, 0, -1, -1};
  answer.kind = table.Probe(key, ply, distance, beta, answer.move, answer.type, answer.flags);
  return answer;
}

int KindAt(TranspositionTable& table, std::uint64_t key, int distance, int beta) {
  return ProbeAt(table, key, 0, distance, beta).kind;
}

TranspositionEntry Lower(std::uint64_t key, int value, int distance, Move move = MOVE_A) {
  return MakeBoundEntry(key, move, 1, 0, distance, value, true);
}
TranspositionEntry Upper(std::uint64_t key, int value, int distance, Move move = MOVE_A) {
  return MakeBoundEntry(key, move, 1, 0, distance, value, false);
}

bool Holds(TranspositionTable& table, std::uint64_t key, int distance = 0) {
  return KindAt(table, key, distance, 0) != HASH_MISS;
}

}  // namespace

// A size is rounded down to a power of two of buckets, 0 means the minimum, and an impossible
// size is refused and changes nothing, not even the contents; Resize and Clear empty the table.
TEST(TranspositionTable, SizesRefusalsAndEmptying) {
  TranspositionTable table;
  EXPECT_EQ(table.TotalSlots(), 512u);  // the constructor's 12288 bytes
  EXPECT_TRUE(table.Resize(40000));
  EXPECT_EQ(table.MemoryUsage(), 24576u);
  EXPECT_EQ(table.FreeSlots(), 1024u);
  table.Store(Lower(KEY, 50, 128));
  EXPECT_FALSE(table.Resize(std::uint64_t{1} << 40));
  EXPECT_FALSE(table.Resize(~std::uint64_t{0}));
  EXPECT_EQ(table.TotalSlots(), 1024u);
  EXPECT_EQ(KindAt(table, KEY, 128, 50), HASH_AT_LEAST_BETA);
  table.Clear();
  EXPECT_EQ(table.generation, 1u);
  EXPECT_FALSE(Holds(table, KEY));
  table.Store(Lower(KEY, 50, 128));
  EXPECT_TRUE(table.Resize(0));
  EXPECT_EQ(table.TotalSlots(), 512u);
  EXPECT_EQ(table.FreeSlots(), 512u);
}

TEST(TranspositionTable, ABoundAnswersOnlyAtItsDistanceAndOnItsSide) {
  TranspositionTable table;
  table.Store(MakeBoundEntry(KEY, MOVE_A, 5, 17, 256, 40, true));
  const Answer found = ProbeAt(table, KEY, 0, 256, 40);
  EXPECT_EQ(found.kind, HASH_AT_LEAST_BETA);
  EXPECT_EQ(found.move, MOVE_A);
  EXPECT_EQ(found.type, 5);
  EXPECT_EQ(found.flags, 17);
  EXPECT_EQ(KindAt(table, KEY, 100, -300), HASH_AT_LEAST_BETA);
  EXPECT_EQ(KindAt(table, KEY, 256, 41), HASH_UNDECIDED);  // no upper bound to say less
  EXPECT_EQ(KindAt(table, KEY, 320, 0), HASH_UNDECIDED);   // too shallow
  EXPECT_EQ(KindAt(table, KEY ^ 1, 0, 0), HASH_MISS);

  // Lower 100 at 320 and upper 300 at 128, written last as an upper bound: asked first.
  TranspositionEntry entry = Upper(KEY + 2, 300, 128);
  entry.lower = 100;
  entry.lower_distance = 320;
  table.Store(entry);
  EXPECT_EQ(KindAt(table, KEY + 2, 256, 200), HASH_UNDECIDED);
  EXPECT_EQ(KindAt(table, KEY + 2, 128, 301), HASH_BELOW_BETA);
  EXPECT_EQ(KindAt(table, KEY + 2, 256, 100), HASH_AT_LEAST_BETA);
}

TEST(TranspositionTable, APlaceholderNeverDecides) {
  TranspositionTable table;
  table.Store(MakePlaceholder(KEY, MOVE_B, 2, true, false, true));
  for (int beta : {-32767, -31767, -500, 0, 1, 500, 31767, 32767}) {
    for (int distance : {-32766, -64, 0, 64, 3200}) {
      const Answer answer = ProbeAt(table, KEY, 3, distance, beta);
      EXPECT_EQ(answer.kind, HASH_UNDECIDED) << beta << " " << distance;
      EXPECT_EQ(answer.move, MOVE_B);
      EXPECT_EQ(answer.flags, 8 + 1 + 2);
      EXPECT_EQ(answer.type, 2);
    }
  }
  EXPECT_EQ(MakePlaceholder(KEY, MOVE_B, 2, false, true, false).node_flags(), 4);
}

TEST(TranspositionTable, AMateScoreKeepsItsDistanceFromTheNodeAtAnotherPly) {
  // Found at ply 5: mate at ply 9 from the root, so 4 plies from the node.
  TranspositionTable table;
  table.Store(Lower(KEY, ToNodeRelative(MATE - 9, 5), 640));
  // The same position reached at ply 3 is mated 4 plies on, at ply 7.
  EXPECT_EQ(ProbeAt(table, KEY, 3, 640, MATE - 7).kind, HASH_AT_LEAST_BETA);
  EXPECT_EQ(ProbeAt(table, KEY, 3, 640, MATE - 6).kind, HASH_UNDECIDED);

  // Mated at ply 10, found at ply 6; reached at ply 2 it is mated at ply 6.
  table.Store(Upper(KEY + 1, ToNodeRelative(-MATE + 10, 6), 64));
  EXPECT_EQ(ProbeAt(table, KEY + 1, 2, 64, -MATE + 7).kind, HASH_BELOW_BETA);
  EXPECT_EQ(ProbeAt(table, KEY + 1, 2, 64, -MATE + 6).kind, HASH_UNDECIDED);
  EXPECT_EQ(ToRootRelative(ToNodeRelative(31766, 9), 9), 31766);  // ordinary scores stay
}

TEST(TranspositionTable, SlotZeroKeepsTheDeepestEntryOfTheSearchAndOldEntriesGoFirst) {
  TranspositionTable table;
  const std::uint64_t deep = SameBucket(1), shallow = SameBucket(2), newer = SameBucket(3);
  table.Store(Lower(deep, 0, 640));
  table.Store(Lower(shallow, 0, 64));  // slot 1: slot 0 is deeper
  table.Store(Lower(newer, 0, 128));   // slot 1 again: the shallow entry is lost
  EXPECT_FALSE(Holds(table, shallow));
  EXPECT_TRUE(Holds(table, deep));
  EXPECT_TRUE(Holds(table, newer));

  // In a new search the bucket holds nothing current: the deep old entry is replaced first.
  table.NewSearch();
  const std::uint64_t fresh = SameBucket(4);
  table.Store(Lower(fresh, 0, 0));
  EXPECT_TRUE(Holds(table, fresh));
  EXPECT_TRUE(Holds(table, deep));  // pushed aside to slot 1
  EXPECT_FALSE(Holds(table, newer));

  // Generations wrap to 1, never 0. An entry written at generation 1 long ago counts as current
  // after the wrap: slot 0 keeps it and the newcomers take turns in slot 1.
  table.generation = LAST_GENERATION;
  table.NewSearch();
  EXPECT_EQ(table.generation, 1u);
  table.Store(Lower(SameBucket(6), 0, 640));
  table.generation = LAST_GENERATION;
  table.NewSearch();
  table.Store(Lower(SameBucket(7), 0, 64));
  table.Store(Lower(SameBucket(8), 0, 64));
  EXPECT_TRUE(Holds(table, SameBucket(6)));
  EXPECT_FALSE(Holds(table, SameBucket(7)));
  EXPECT_TRUE(Holds(table, SameBucket(8)));
}

TEST(PawnHashTableDeathTest, AnEntryIsGoodOnlyForItsStructureAndType) {
  constexpr Bitboard WHITE_PAWNS = 0x000000000800F700ULL;  // a2-c2, e2-h2, d4
  constexpr Bitboard BLACK_PAWNS = 0x00EF001000000000ULL;  // a7-d7, f7-h7, e5
  const auto entry_of = [](int type) {
    PawnHashEntry entry{};
    entry.key = KEY;
    entry.position_type = std::uint32_t(type);
    entry.passed = SquareBit(D4) | SquareBit(E5);
    entry.pawn_ending = -37;
    return entry;
  };
  PawnHashTable table;
  table.Store(entry_of(MIDDLEGAME));
  const PawnHashEntry* found = table.Probe(KEY, MIDDLEGAME, WHITE_PAWNS, BLACK_PAWNS);
  ASSERT_NE(found, nullptr);
  EXPECT_EQ(found->pawn_ending, -37);
  EXPECT_EQ(table.Probe(KEY, OPENING, WHITE_PAWNS, BLACK_PAWNS), nullptr);
  EXPECT_EQ(table.Probe(KEY ^ 0x100000000ULL, MIDDLEGAME, WHITE_PAWNS, BLACK_PAWNS), nullptr);
  // Another type of the same structure gets an entry of its own.
  table.Store(entry_of(ENDGAME_ROOKS));
  EXPECT_NE(table.Probe(KEY, ENDGAME_ROOKS, WHITE_PAWNS, BLACK_PAWNS), nullptr);
  EXPECT_EQ(table.FreeSlots(), table.TotalSlots() - 2);
  // Sets that are not the pawns on the board mean a collision: a miss.
  EXPECT_EQ(table.Probe(KEY, MIDDLEGAME, WHITE_PAWNS & ~SquareBit(D4), BLACK_PAWNS), nullptr);
  EXPECT_EQ(table.hits, 2u);
  EXPECT_DEATH(table.Store(entry_of(ENDGAME_NO_PAWNS_LEFT)), "");  // no pawns, no entry
}

TEST(HashReport, CountersCoverOneSearchAndTheStatusShowsTheHundredths) {
  TranspositionTable table;  // 512 slots
  table.Store(Lower(KEY, 0, 0));
  Move move;
  int distance;
  ProbeAt(table, KEY + 1, 0, 0, 0);
  table.ProbeMove(KEY, move, distance);
  EXPECT_EQ(table.probes, 2u);
  EXPECT_EQ(table.hits, 1u);
  table.NewSearch();
  EXPECT_EQ(table.probes, 0u);
  EXPECT_TRUE(Holds(table, KEY));  // the contents stay

  for (std::uint64_t key = 2; key <= 26; ++key) table.Store(MakePlaceholder(key, 0, 0, 0, 0, 0));
  // 10000 * 26 / 512 = 507 hundredths.
  EXPECT_EQ(TableStatusText("transposition table", table, true),
            "transposition table: 12.00 kilobyte\n"
            "#total slots:    512\n"
            "#free  slots:    486\n"
            "fill percentage: 5.7%\n\n");
  EXPECT_EQ(TableStatusText("pawn hashtable", PawnHashTable(), false),
            "pawn hashtable: 7.00 kilobyte\n");
}
