#include "evaluation/pawn_races.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "bitbases/special_bitbases.h"
#include "evaluation/ending_test_support.h"
#include "evaluation/passed_pawn_quick.h"
#include "support/board_from_fen.h"

namespace {

using EndingTests::ColourFlipped;
using EndingTests::PreparedState;

// The state with the frontmost passers marked, as the endings have it before their races.
int QuickTerm(EvaluationState& evaluation, const Board& board) {
  PreparedState(evaluation, board);
  return PassedPawnQuickTerm(evaluation, board);
}

TEST(PassedPawnQuickTerm, HandWorkedValues) {
  const struct {
    const char* fen;
    int value;
  } cases[] = {
      // e2: 7 * 30 / 8 = 26; kings: own to pawn 1 (+4), enemy to pawn 6 (+6), own to e8 7 (-6),
      // enemy on e8 (-5).
      {"4k3/8/8/8/8/8/4P3/4K3 w - - 0 1", 26 + 4 + 6 - 6 - 5},
      // b6: 9 * 115 / 8 = 129; own rook behind +12, enemy rook ahead -4 and in front of the pawn
      // -4 * 40 / 8; kings: own to pawn 5 (-3), enemy 5 (+3), own to b8 7 (-6), enemy 5 (+12).
      {"6k1/1r6/1P6/8/8/8/8/1R4K1 w - - 0 1", 129 + 12 - 4 - 20 - 3 + 3 - 6 + 12},
      // e5 with the path free: 7 * 85 / 8 + 6; kings: 4 (-2), 4 (-0), 7 (-6), 4 (+5).
      {"8/8/8/k3P3/8/8/8/K7 w - - 0 1", 74 + 6 - 2 - 0 - 6 + 5},
  };
  for (const auto& c : cases) {
    const Board board = BoardFromFen(c.fen);
    EvaluationState evaluation;
    EXPECT_EQ(QuickTerm(evaluation, board), c.value) << c.fen;
    EvaluationState flipped;
    EXPECT_EQ(QuickTerm(flipped, ColourFlipped(board)), -c.value) << c.fen;
  }
}

TEST(PassedPawnQuickTerm, OnlyTheFrontPasserOfAFileCounts) {
  const Board board = BoardFromFen("4k3/8/8/4P3/8/4P3/6p1/4K3 w - - 0 1");
  EvaluationState evaluation;
  QuickTerm(evaluation, board);
  EXPECT_EQ(evaluation.pawns[WHITE].frontmost_passed, SquareBit(E5));
  EXPECT_EQ(evaluation.pawns[WHITE].passed_rank[4], 4);
  EXPECT_EQ(evaluation.pawns[BLACK].frontmost_passed, SquareBit(G2));
  EXPECT_EQ(evaluation.pawns[BLACK].passed_rank[6], 1);  // the board's rank, not Black's
}

TEST(BarePawnsTerm, APasserOutsideTheSquareWinsTheRace) {
  const struct {
    const char* fen;
    int value;
    PawnRaceMode mode;
  } cases[] = {
      // h4 against the king on a6: outside the square whoever moves.
      {"8/8/k7/8/7P/8/8/1K4N1 w - - 0 1", 720, NO_RACE},
      {"8/8/k7/8/7P/8/8/1K4N1 b - - 0 1", 640, NO_RACE},
      // With Black on move the king on c6 reaches the square of the h4 pawn.
      {"8/8/2k5/8/7P/8/8/1K4N1 w - - 0 1", 720, NO_RACE},
      // Both have passers and White's is caught: the pieces decide later.
      {"8/8/8/4k3/7P/p7/8/1K4N1 w - - 0 1", 0, WHITE_RACE},
      // Both sides with pieces: no race.
      {"8/8/k5n1/8/7P/8/8/1K4N1 w - - 0 1", 0, NO_RACE},
  };
  for (const auto& c : cases) {
    const Board board = BoardFromFen(c.fen);
    EvaluationState evaluation;
    QuickTerm(evaluation, board);
    PawnRaceMode mode = NO_RACE;
    EXPECT_EQ(BarePawnsTerm(evaluation, board, mode), c.value) << c.fen;
    EXPECT_EQ(mode, c.mode) << c.fen;

    const Board flipped = ColourFlipped(board);
    EvaluationState mirror;
    QuickTerm(mirror, flipped);
    EXPECT_EQ(BarePawnsTerm(mirror, flipped, mode), -c.value) << c.fen;
    EXPECT_EQ(mode, c.mode == WHITE_RACE ? BLACK_RACE : c.mode) << c.fen;
  }
}

TEST(SinglePawnsTerm, WonPawnsByRankAndNeverMoreThanASureWin) {
  // King e6, pawn e5 against the king on e8 is won whoever moves: rank 4 is worth 225.
  const Board one = BoardFromFen("4k3/8/4K3/4P3/8/8/8/8 w - - 0 1");
  EvaluationState evaluation;
  QuickTerm(evaluation, one);
  EXPECT_EQ(SinglePawnsTerm(evaluation, one, WHITE), 225);
  EvaluationState mirror;
  QuickTerm(mirror, ColourFlipped(one));
  EXPECT_EQ(SinglePawnsTerm(mirror, ColourFlipped(one), BLACK), 225);
  // A second winning pawn makes 450, which is capped.
  const Board two = BoardFromFen("4k3/8/4K3/P3P3/8/8/8/8 w - - 0 1");
  QuickTerm(evaluation, two);
  EXPECT_EQ(SinglePawnsTerm(evaluation, two, WHITE), 400);
}

TEST(PawnRaceTerm, RunnersCountDoubleAndPassersOnBothSidesNeedTheFileTable) {
  const Board runner = BoardFromFen("8/8/k7/8/7P/8/8/1K6 w - - 0 1");
  EvaluationState evaluation;
  QuickTerm(evaluation, runner);
  EXPECT_EQ(PawnRaceTerm(evaluation, runner), 2 * 720);
  EvaluationState mirror;
  QuickTerm(mirror, ColourFlipped(runner));
  EXPECT_EQ(PawnRaceTerm(mirror, ColourFlipped(runner)), -2 * 720);

  const Board both = BoardFromFen("8/8/k7/8/7P/p7/8/1K6 w - - 0 1");
  QuickTerm(evaluation, both);
  if (BraskBitbases::two_pawns_data == nullptr) {
    EXPECT_EQ(PawnRaceTerm(evaluation, both), 0);
  }

  const Board none = BoardFromFen("8/8/k7/p7/P7/8/8/1K6 w - - 0 1");
  QuickTerm(evaluation, none);
  EXPECT_EQ(PawnRaceTerm(evaluation, none), 0);
}

// A file table of one verdict throughout, in place of the real one for as long as a test runs.
class UniformTwoPawnsTable {
 public:
  explicit UniformTwoPawnsTable(std::uint8_t byte) : bytes_(1179648, byte) {
    saved_ = BraskBitbases::two_pawns_data;
    BraskBitbases::two_pawns_data = bytes_.data();
  }
  ~UniformTwoPawnsTable() { BraskBitbases::two_pawns_data = saved_; }

 private:
  std::vector<std::uint8_t> bytes_;
  const std::uint8_t* saved_;
};

TEST(PawnRaceTerm, PassersOnBothSidesAreDecidedByTheFileTableForTheSideOnMove) {
  const Board board = BoardFromFen("8/8/k7/8/7P/p7/8/1K6 w - - 0 1");
  const struct {
    std::uint8_t byte;  // four entries of 3 (the side on move wins) or 1 (it loses)
    int white_on_move;
  } cases[] = {{0xFF, 150}, {0x55, -150}};
  for (const auto& c : cases) {
    UniformTwoPawnsTable table(c.byte);
    for (const Board& position : {board, ColourFlipped(board)}) {
      EvaluationState evaluation;
      QuickTerm(evaluation, position);
      const int expected = position.side_on_move == WHITE ? c.white_on_move : -c.white_on_move;
      EXPECT_EQ(PawnRaceTerm(evaluation, position), expected);
    }
  }
}

}  // namespace
