#include "search/hash_transposition.h"

#include <gtest/gtest.h>

#include <cstdint>

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

TranspositionEntry Lower(std::uint64_t key, int value, int distance, Move move = MOVE_A) {
  return MakeBoundEntry(key, move, 1, 0, distance, value, true);
}
TranspositionEntry Upper(std::uint64_t key, int value, int distance, Move move = MOVE_A) {
  return MakeBoundEntry(key, move, 1, 0, distance, value, false);
}

bool Holds(TranspositionTable& table, std::uint64_t key) {
  return ProbeAt(table, key, 0, 0, 0).kind != HASH_MISS;
}

}  // namespace

TEST(TranspositionTable, SizesRoundDownToPowersOfTwoAboveTheMinimum) {
  TranspositionTable table;
  EXPECT_EQ(table.TotalSlots(), 512u);  // the constructor's 12288 bytes
  EXPECT_TRUE(table.Resize(0));
  EXPECT_EQ(table.TotalSlots(), 512u);
  EXPECT_TRUE(table.Resize(40000));
  EXPECT_EQ(table.MemoryUsage(), 24576u);
  EXPECT_TRUE(table.Resize(std::uint64_t{32} << 20));
  EXPECT_EQ(table.TotalSlots(), 2u * 524288u);
  EXPECT_EQ(table.MemoryUsage(), std::uint64_t{24} << 20);
  EXPECT_EQ(table.FreeSlots(), table.TotalSlots());
}

TEST(TranspositionTable, AnImpossibleSizeIsRefusedButResizeAndClearEmptyTheTable) {
  TranspositionTable table;
  table.Resize(0);
  table.NewSearch();
  table.Store(Lower(KEY, 50, 128));
  EXPECT_FALSE(table.Resize(std::uint64_t{1} << 40));
  EXPECT_FALSE(table.Resize(~std::uint64_t{0}));
  EXPECT_EQ(table.TotalSlots(), 512u);
  EXPECT_EQ(ProbeAt(table, KEY, 0, 128, 50).kind, HASH_AT_LEAST_BETA);
  EXPECT_EQ(table.FreeSlots(), table.TotalSlots() - 1);
  table.Clear();
  EXPECT_EQ(table.generation, 1u);
  EXPECT_EQ(ProbeAt(table, KEY, 0, 0, 0).kind, HASH_MISS);
  table.Store(Lower(KEY, 50, 128));
  table.Resize(0);
  EXPECT_EQ(table.FreeSlots(), table.TotalSlots());
}

TEST(TranspositionTable, ABoundAnswersOnlyAtItsDistanceAndOnItsSide) {
  TranspositionTable table;
  table.Store(MakeBoundEntry(KEY, MOVE_A, 5, 17, 256, 40, true));
  const Answer found = ProbeAt(table, KEY, 0, 256, 40);
  EXPECT_EQ(found.kind, HASH_AT_LEAST_BETA);
  EXPECT_EQ(found.move, MOVE_A);
  EXPECT_EQ(found.type, 5);
  EXPECT_EQ(found.flags, 17);
  EXPECT_EQ(ProbeAt(table, KEY, 0, 100, -300).kind, HASH_AT_LEAST_BETA);
  EXPECT_EQ(ProbeAt(table, KEY, 0, 256, 41).kind, HASH_UNDECIDED);  // no upper bound to say less
  EXPECT_EQ(ProbeAt(table, KEY, 0, 320, 0).kind, HASH_UNDECIDED);   // too shallow
  EXPECT_EQ(ProbeAt(table, KEY ^ 1, 0, 0, 0).kind, HASH_MISS);

  table.Store(Upper(KEY + 1, -20, 128));
  EXPECT_EQ(ProbeAt(table, KEY + 1, 0, 128, -19).kind, HASH_BELOW_BETA);
  EXPECT_EQ(ProbeAt(table, KEY + 1, 0, 128, -20).kind, HASH_UNDECIDED);
}

TEST(TranspositionTable, TheBoundStoredLastIsAskedFirst) {
  // lower 100 at 320, upper 300 at 128, written last as an upper bound.
  TranspositionTable table;
  TranspositionEntry entry = Upper(KEY, 300, 128);
  entry.lower = 100;
  entry.lower_distance = 320;
  table.Store(entry);
  EXPECT_EQ(ProbeAt(table, KEY, 0, 256, 200).kind, HASH_UNDECIDED);
  EXPECT_EQ(ProbeAt(table, KEY, 0, 128, 301).kind, HASH_BELOW_BETA);
  EXPECT_EQ(ProbeAt(table, KEY, 0, 256, 100).kind, HASH_AT_LEAST_BETA);
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
  const int root_score = MATE - 9;
  table.Store(Lower(KEY, ToNodeRelative(root_score, 5), 640));
  // The same position reached at ply 3 is mated 4 plies on, at ply 7.
  EXPECT_EQ(ProbeAt(table, KEY, 3, 640, MATE - 7).kind, HASH_AT_LEAST_BETA);
  EXPECT_EQ(ProbeAt(table, KEY, 3, 640, MATE - 6).kind, HASH_UNDECIDED);

  // Mated at ply 10, found at ply 6; reached at ply 2 it is mated at ply 6.
  table.Store(Upper(KEY + 1, ToNodeRelative(-MATE + 10, 6), 64));
  EXPECT_EQ(ProbeAt(table, KEY + 1, 2, 64, -MATE + 7).kind, HASH_BELOW_BETA);
  EXPECT_EQ(ProbeAt(table, KEY + 1, 2, 64, -MATE + 6).kind, HASH_UNDECIDED);
  EXPECT_EQ(ToRootRelative(ToNodeRelative(31766, 9), 9), 31766);  // ordinary scores stay
}

TEST(TranspositionTable, AShallowerResultKeepsTheDeeperBoundAndTheMove) {
  TranspositionTable table;
  table.Store(Lower(KEY, 100, 512, MOVE_A));
  table.NewSearch();
  table.Store(Upper(KEY, 300, 64, MOVE_B));
  Move move = 0;
  int distance = 0;
  ASSERT_TRUE(table.ProbeMove(KEY, move, distance));
  EXPECT_EQ(move, MOVE_A);
  EXPECT_EQ(distance, 512);
  EXPECT_EQ(ProbeAt(table, KEY, 0, 512, 100).kind, HASH_AT_LEAST_BETA);
  EXPECT_EQ(ProbeAt(table, KEY, 0, 64, 301).kind, HASH_BELOW_BETA);  // the new bound merged in
  // The entry is current again, so two newcomers to its bucket share slot 1 and leave it alone;
  // an entry of an earlier search would have been pushed aside and then lost.
  const std::uint64_t low_word = KEY & 0xFFFFFFFF;
  table.Store(Lower((std::uint64_t{1} << 32) | low_word, 0, 0));
  table.Store(Lower((std::uint64_t{2} << 32) | low_word, 0, 0));
  EXPECT_TRUE(Holds(table, KEY));
}

TEST(TranspositionTable, ADeeperResultTakesOverAndKeepsTheOldBoundsThatStillFit) {
  TranspositionTable table;
  table.Store(Upper(KEY, 300, 128, MOVE_A));
  table.Store(Lower(KEY, 100, 256, MOVE_B));
  EXPECT_EQ(ProbeAt(table, KEY, 0, 256, 100).move, MOVE_B);
  EXPECT_EQ(ProbeAt(table, KEY, 0, 128, 301).kind, HASH_BELOW_BETA);  // the old upper bound
  table.Store(Upper(KEY, 200, 256, MOVE_B));
  EXPECT_EQ(ProbeAt(table, KEY, 0, 256, 201).kind, HASH_BELOW_BETA);
  // Each new upper bound keeps the proved lower bound.
  table.Store(Upper(KEY, 150, 320, MOVE_B));
  EXPECT_EQ(ProbeAt(table, KEY, 0, 256, 150).kind, HASH_UNDECIDED);
  EXPECT_EQ(ProbeAt(table, KEY, 0, 256, 100).kind, HASH_AT_LEAST_BETA);
  EXPECT_EQ(ProbeAt(table, KEY, 0, 320, 151).kind, HASH_BELOW_BETA);
}

TEST(TranspositionTable, SlotZeroKeepsTheDeepestEntryOfTheSearchAndOldEntriesGoFirst) {
  TranspositionTable table;
  table.Resize(0);
  const std::uint64_t deep = SameBucket(1), shallow = SameBucket(2), newer = SameBucket(3);
  table.Store(Lower(deep, 0, 640));
  table.Store(Lower(shallow, 0, 64));  // slot 1: slot 0 is deeper
  table.Store(Lower(newer, 0, 128));   // slot 1 again: the shallow entry is lost
  EXPECT_EQ(ProbeAt(table, shallow, 0, 0, 0).kind, HASH_MISS);
  EXPECT_NE(ProbeAt(table, deep, 0, 0, 0).kind, HASH_MISS);
  EXPECT_NE(ProbeAt(table, newer, 0, 0, 0).kind, HASH_MISS);

  // In a new search the bucket holds nothing current: the deep old entry is replaced first.
  table.NewSearch();
  const std::uint64_t fresh = SameBucket(4), fresher = SameBucket(5);
  table.Store(Lower(fresh, 0, 0));
  EXPECT_NE(ProbeAt(table, fresh, 0, 0, 0).kind, HASH_MISS);
  EXPECT_NE(ProbeAt(table, deep, 0, 0, 0).kind, HASH_MISS);  // pushed aside to slot 1
  EXPECT_EQ(ProbeAt(table, newer, 0, 0, 0).kind, HASH_MISS);
  // A shallower entry of this search still gets in, at slot 1.
  table.Store(Lower(fresher, 0, -64));
  EXPECT_NE(ProbeAt(table, fresh, 0, 0, 0).kind, HASH_MISS);
  EXPECT_NE(ProbeAt(table, fresher, 0, -64, 0).kind, HASH_MISS);
  EXPECT_EQ(ProbeAt(table, deep, 0, 0, 0).kind, HASH_MISS);
  // A deeper one takes slot 0 and pushes the other current entry to slot 1.
  table.Store(Lower(deep, 0, 640));
  EXPECT_NE(ProbeAt(table, deep, 0, 0, 0).kind, HASH_MISS);
  EXPECT_NE(ProbeAt(table, fresh, 0, 0, 0).kind, HASH_MISS);
  EXPECT_EQ(ProbeAt(table, fresher, 0, -64, 0).kind, HASH_MISS);
}

TEST(TranspositionTable, GenerationsWrapToOneAndNeverReachZero) {
  TranspositionTable table;
  table.generation = LAST_GENERATION;
  table.NewSearch();
  EXPECT_EQ(table.generation, 1u);
  // An entry written at generation 1 long ago counts as current after the wrap: slot 0 keeps it
  // and the newcomers take turns in slot 1.
  table.Store(Lower(SameBucket(1), 0, 640));
  table.generation = LAST_GENERATION;
  table.NewSearch();
  table.Store(Lower(SameBucket(2), 0, 64));
  table.Store(Lower(SameBucket(3), 0, 64));
  EXPECT_TRUE(Holds(table, SameBucket(1)));
  EXPECT_FALSE(Holds(table, SameBucket(2)));
  EXPECT_TRUE(Holds(table, SameBucket(3)));
}

TEST(TranspositionTable, CountersCoverOneSearch) {
  TranspositionTable table;
  table.Store(Lower(KEY, 0, 0));
  Move move;
  int distance;
  ProbeAt(table, KEY, 0, 0, 0);
  ProbeAt(table, KEY + 1, 0, 0, 0);
  table.ProbeMove(KEY, move, distance);
  table.ProbeMove(KEY + 1, move, distance);
  EXPECT_EQ(table.probes, 4u);
  EXPECT_EQ(table.hits, 2u);
  EXPECT_DOUBLE_EQ(table.HitRatio(), 0.5);
  table.NewSearch();
  EXPECT_EQ(table.probes, 0u);
  EXPECT_EQ(table.hits, 0u);
  EXPECT_DOUBLE_EQ(table.HitRatio(), 0.0);
  EXPECT_NE(ProbeAt(table, KEY, 0, 0, 0).kind, HASH_MISS);  // the contents stay
}
