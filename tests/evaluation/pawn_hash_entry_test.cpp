// The pawn hash entry keeps everything the pawn evaluation needs again: a hit must give what a
// fresh computation gives.
#include <gtest/gtest.h>

#include <random>

#include "evaluation/passed_pawns.h"
#include "evaluation/pawn_hash_entry.h"
#include "evaluation/pawn_structure.h"
#include "search/hash.h"
#include "search/position_type.h"
#include "support/random_positions.h"

namespace {

// Random pawns of both colours on distinct squares of the second to seventh rank, and sets of
// pawns, other sets, majorities, openness, scores and units that fit their fields.
struct RandomStructure {
  explicit RandomStructure(std::mt19937_64& random) {
    const Bitboard pawn_ranks = 0x00FFFFFFFFFFFF00ULL;
    const Bitboard pawns = random() & random() & pawn_ranks;
    const Bitboard white_half = random();
    board.white.pawns = pawns & white_half;
    board.black.pawns = pawns & ~white_half;
    for (int colour = WHITE; colour <= BLACK; ++colour) {
      const Bitboard own = board.Pieces(colour).pawns;
      PawnBlock& block = evaluation.pawns[colour];
      block.passed = own & random();
      block.passed_count = std::uint16_t(PopCount(block.passed));
      block.isolated = own & random();
      block.backward = own & random();
      block.backward_low = block.backward & random();
      block.obstructed = own & random();
      block.safe_advance = random();
      block.unreachable_centre = random() & (SquareBit(D4) | SquareBit(E4) | SquareBit(D5) |
                                             SquareBit(E5));
      for (int wing = 0; wing < 3; ++wing) {
        evaluation.pawn_scores.units[colour][wing] = {std::int16_t(int(random() % 1023) - 511),
                                                      std::int16_t(int(random() % 1023) - 511)};
      }
    }
    for (int wing = 0; wing < 2; ++wing) {
      PawnMajority& majority = evaluation.majority[wing];
      majority.kind = int(random() % 3);
      if (majority.kind == NO_MAJORITY) continue;
      majority.files = int(random() % 8);
      majority.opposing_pawns = int(random() % 8);
      const int edge = int(random() % 8);
      for (int file = 0; file < 8; ++file)
        if (wing == 0 ? file <= edge : file >= edge) majority.mask |= FileMask(file);
    }
    evaluation.openness = int(random() % 1024);
    evaluation.pawn_scores.positional = std::int16_t(random());
    evaluation.pawn_scores.reckless = std::int16_t(random());
    evaluation.pawn_scores.ending = std::int16_t(random());
  }
  Board board;
  EvaluationState evaluation;
};

void ExpectSameBlocks(const PawnBlock& read, const PawnBlock& written) {
  EXPECT_EQ(read.passed, written.passed);
  EXPECT_EQ(read.passed_count, written.passed_count);
  EXPECT_EQ(read.isolated, written.isolated);
  EXPECT_EQ(read.backward, written.backward);
  EXPECT_EQ(read.backward_low, written.backward_low);
  EXPECT_EQ(read.obstructed, written.obstructed);
  EXPECT_EQ(read.safe_advance, written.safe_advance);
  EXPECT_EQ(read.unreachable_centre, written.unreachable_centre);
}

void ExpectSameMajorities(const EvaluationState& read, const EvaluationState& written) {
  for (int wing = 0; wing < 2; ++wing) {
    EXPECT_EQ(read.majority[wing].kind, written.majority[wing].kind);
    EXPECT_EQ(read.majority[wing].files, written.majority[wing].files);
    EXPECT_EQ(read.majority[wing].opposing_pawns, written.majority[wing].opposing_pawns);
    EXPECT_EQ(read.majority[wing].mask, written.majority[wing].mask);
  }
  EXPECT_EQ(read.openness, written.openness);
}

void ExpectSameUnits(const ZoneUnits (&read)[2][3], const ZoneUnits (&written)[2][3]) {
  for (int colour = 0; colour < 2; ++colour)
    for (int wing = 0; wing < 3; ++wing) {
      EXPECT_EQ(read[colour][wing].attack, written[colour][wing].attack);
      EXPECT_EQ(read[colour][wing].defence, written[colour][wing].defence);
    }
}

}  // namespace

TEST(PawnHashEntry, EveryFieldSurvivesPackingAndUnpacking) {
  std::mt19937_64 random(20261123);
  for (int round = 0; round < 2000; ++round) {
    const RandomStructure structure(random);
    const int type = round % 2 == 0 ? int(random() % 2) : 2 + int(random() % 14);
    const PawnHashEntry entry = BuildPawnEntry(structure.evaluation, 0x1234, type);
    EvaluationState read;
    ReadPawnEntry(entry, structure.board, read);
    ASSERT_TRUE(read.pawn_entry_from_hash);
    for (int colour = WHITE; colour <= BLACK; ++colour)
      ExpectSameBlocks(read.pawns[colour], structure.evaluation.pawns[colour]);
    ExpectSameMajorities(read, structure.evaluation);
    if (type <= MIDDLEGAME) {
      EXPECT_EQ(read.pawn_scores.positional, structure.evaluation.pawn_scores.positional);
      EXPECT_EQ(read.pawn_scores.reckless, structure.evaluation.pawn_scores.reckless);
      ExpectSameUnits(read.pawn_scores.units, structure.evaluation.pawn_scores.units);
    } else {
      EXPECT_EQ(read.pawn_scores.ending, structure.evaluation.pawn_scores.ending);
    }
    if (HasFailure()) FAIL() << "round " << round;
  }
}

TEST(PawnHashEntry, TheUnitsWordsFollowTheFixedLayout) {
  EvaluationState evaluation;
  evaluation.pawn_scores.units[WHITE][0].attack = -1;
  evaluation.pawn_scores.units[WHITE][2].defence = 5;
  evaluation.pawn_scores.units[BLACK][1].attack = 2;
  evaluation.pawn_scores.units[BLACK][0].defence = -511;
  const PawnHashEntry entry = BuildPawnEntry(evaluation, 1, MIDDLEGAME);
  EXPECT_EQ(entry.units[0], 3u);          // White attack: wing 0 first, sign in bit 0
  EXPECT_EQ(entry.units[1], 10u << 20);   // White defence: wing 2 last
  EXPECT_EQ(entry.units[2], 4u << 10);    // Black attack
  EXPECT_EQ(entry.units[3], 1023u);       // Black defence
  // A wing without a majority packs to nothing, whatever its other fields say.
  const PawnMajority none[2] = {{NO_MAJORITY, 3, 2, FileMask(0)}, {}};
  EXPECT_EQ(PackCounts(none, 0), 0u);
}

// The pawn terms of a position, once computed afresh (and stored), once read from the table.
class PawnHashHit : public ::testing::Test {
 protected:
  void SetUp() override { PAWN_HASH_TABLE.Clear(); }
  void TearDown() override { PAWN_HASH_TABLE.Clear(); }

  struct Terms {
    ScorePair passed, structure;
    int ending = 0;
    EvaluationState evaluation;
  };

  static void Compute(const Board& board, int type, Terms& terms) {
    EvaluationState& evaluation = terms.evaluation;
    PreparePawns(evaluation, board, type);
    terms.passed = PassedPawnTerm(evaluation);
    PrepareFileData(evaluation, board);
    PrepareStructure(evaluation, board);
    if (type <= MIDDLEGAME) {
      terms.structure = PawnStructureTerm(evaluation, board, type);
    } else {
      terms.ending = PawnEndingTerm(evaluation, board);
    }
  }
};

TEST_F(PawnHashHit, GivesTheTermsOfAFreshComputation) {
  int hits = 0;
  for (const Board& board : RandomPositions(1500, 7)) {
    const int type = ClassifyPosition(board, UNCLASSIFIED);
    if (type == ENDGAME_NO_PAWNS_LEFT) continue;
    Terms fresh, again;
    PAWN_HASH_TABLE.Clear();
    Compute(board, type, fresh);
    ASSERT_FALSE(fresh.evaluation.pawn_entry_from_hash);
    PAWN_HASH_TABLE.Store(BuildPawnEntry(fresh.evaluation, board.PawnKey(), type));
    Compute(board, type, again);
    ASSERT_TRUE(again.evaluation.pawn_entry_from_hash);
    ++hits;
    EXPECT_EQ(again.passed, fresh.passed);
    EXPECT_EQ(again.structure, fresh.structure);
    EXPECT_EQ(again.ending, fresh.ending);
    EXPECT_EQ(again.evaluation.endgame_trend, fresh.evaluation.endgame_trend);
    ExpectSameUnits(again.evaluation.zone_units, fresh.evaluation.zone_units);
    ExpectSameMajorities(again.evaluation, fresh.evaluation);
    for (int colour = WHITE; colour <= BLACK; ++colour) {
      const PawnBlock& a = again.evaluation.pawns[colour];
      const PawnBlock& f = fresh.evaluation.pawns[colour];
      ExpectSameBlocks(a, f);
      EXPECT_EQ(a.pawn_count, f.pawn_count);  // the lists are filled where the hit left them
      EXPECT_EQ(a.frontmost_passed, f.frontmost_passed);
      EXPECT_EQ(a.controlled, f.controlled);
      EXPECT_EQ(a.doubled, f.doubled);
    }
    if (HasFailure()) FAIL() << "type " << type << ", position key " << board.Key();
  }
  EXPECT_GT(hits, 1000);
}
