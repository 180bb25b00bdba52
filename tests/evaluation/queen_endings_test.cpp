#include "evaluation/queen_endings.h"

#include <gtest/gtest.h>

#include "evaluation/ending_frame.h"
#include "evaluation/ending_test_support.h"
#include "evaluation/passed_pawn_quick.h"
#include "support/board_from_fen.h"

namespace {

using EndingTests::ColourFlipped;
using EndingTests::PreparedState;

TEST(EndingQueenTerm, PlaceChecksPinsAndTheSeventh) {
  const struct {
    const char* fen;
    int value;
  } cases[] = {
      // d4 7, Manhattan distances 4 and 5 to the kings.
      {"4k3/8/8/8/3Q4/8/8/4K3 w - - 0 1", 7 - 2 * 9},
      // d1 -2; the knight on d4 is pinned to the queen by the rook: -30; distances 1 and 8.
      {"3rk3/8/8/8/3N4/8/8/3QK3 w - - 0 1", -2 - 30 - 2 * 9},
      // a7 -3, distances 10 and 7, on the seventh with the king on the eighth: + 55.
      {"6k1/Q7/8/8/8/8/8/4K3 w - - 0 1", -3 - 2 * 17 + 55},
      // Four knights against the queen, all on the a- and b-files: e2 1, distances 1 and 9. The
      // safe checks from e8, e5, b2, h5 and h2: 4 * 5 + 33 with White on move, 2 * 5 + 16
      // without.
      {"7k/8/8/8/8/n7/n3Q3/nn2K3 w - - 0 1", 1 - 2 * 10 + 53},
      {"7k/8/8/8/8/n7/n3Q3/nn2K3 b - - 0 1", 1 - 2 * 10 + 26},
  };
  for (const auto& c : cases) {
    const Board board = BoardFromFen(c.fen);
    EvaluationState evaluation;
    PreparedState(evaluation, board);
    EXPECT_EQ(EndingQueenTerm(evaluation, board, WHITE, WhiteMaterial(board)), c.value) << c.fen;
    EXPECT_NE(evaluation.attacked[WHITE], 0u);
    const Board flipped = ColourFlipped(board);
    PreparedState(evaluation, flipped);
    EXPECT_EQ(EndingQueenTerm(evaluation, flipped, BLACK, WhiteMaterial(flipped)), c.value)
        << c.fen;
  }
}

TEST(QueenEnding, HalfTheQueensPlaceAndTheMostAdvancedPassers) {
  // EndingQueen2 d4 14 / 2 against a8 -14 / 2; White's passer on e6 75 against Black's none 45.
  const Board board = BoardFromFen("q3k3/8/4P3/8/3Q4/8/8/4K3 w - - 0 1");
  EvaluationState evaluation;
  PreparedState(evaluation, board);
  PassedPawnQuickTerm(evaluation, board);
  EXPECT_EQ(QueenEndingPlacement(evaluation, board), 7 + 7 + 75 + 45);
}

TEST(QueenEnding, ChecksShrinkTheLossOfTheSideOnMove) {
  const struct {
    const char* fen;
    int scaled;
  } cases[] = {
      // Checks from a1 and e1; the white queen guards f1 next to its king: 5 * -200 = -1000, and
      // two shelter pawns off the rook file: 8 * (-1000 / 8) / 8.
      {"6k1/8/8/q7/8/3Q4/5PPP/6K1 b - - 0 1", -125},
      // The queen on b3 guards nothing near the king: 3 * -200, 8 * (-600 / 8) / 8.
      {"6k1/8/8/q7/8/1Q6/5PPP/6K1 b - - 0 1", -75},
      // No check at all from h4: the score stands.
      {"6k1/8/8/8/7q/3Q4/5PPP/6K1 b - - 0 1", -200},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(ScaleByChecks(BoardFromFen(c.fen), -200), c.scaled) << c.fen;
    EXPECT_EQ(ScaleByChecks(ColourFlipped(BoardFromFen(c.fen)), -200), c.scaled) << c.fen;
  }
}

}  // namespace
