#include "evaluation/ending_frame.h"

#include <gtest/gtest.h>

#include "evaluation/ending_evaluators.h"
#include "evaluation/ending_test_support.h"
#include "evaluation/evaluate.h"
#include "search/position_type.h"
#include "support/board_from_fen.h"

namespace {

using EndingTests::ColourFlipped;

TEST(EndingFrame, BoundKeepsTheSideThatCannotMateAtTheDrawValueAtBest) {
  const struct {
    const char* fen;
    MaterialBound bound;
  } cases[] = {
      {"4k3/8/8/8/8/8/P7/4K3 w - - 0 1", BLACK_CANNOT_WIN},
      {"4k3/p7/8/8/8/8/8/4KN2 w - - 0 1", WHITE_CANNOT_WIN},  // the piece without a pawn
      {"4k3/p7/8/8/8/8/P7/4KN2 w - - 0 1", BOTH_CAN_WIN},
      {"4kn2/8/8/8/8/8/8/4KN2 w - - 0 1", WHITE_CANNOT_WIN},
      // Mating material: a pawn, a major piece, three minors, or two with a bishop among them.
      {"4k3/8/8/8/8/8/8/3NKN2 w - - 0 1", WHITE_CANNOT_WIN},  // two knights can't
      {"4k3/8/8/8/8/8/8/3BKN2 w - - 0 1", BLACK_CANNOT_WIN},
      {"3nkn2/8/8/8/8/8/8/3BKN2 w - - 0 1", BLACK_CANNOT_WIN},
      {"3bkn2/8/8/8/8/8/8/3NKN2 w - - 0 1", WHITE_CANNOT_WIN},
      {"3bkn2/8/8/8/8/8/8/2NNKN2 w - - 0 1", BOTH_CAN_WIN},
      {"3bkn2/8/8/8/8/8/8/4K2R w - - 0 1", BOTH_CAN_WIN},
  };
  for (const auto& c : cases) EXPECT_EQ(FindMaterialBound(BoardFromFen(c.fen)), c.bound) << c.fen;

  EXPECT_EQ(ApplyBound(-300, BLACK_CANNOT_WIN, 20), 20);
  EXPECT_EQ(ApplyBound(300, BLACK_CANNOT_WIN, 20), 300);
  EXPECT_EQ(ApplyBound(300, WHITE_CANNOT_WIN, -20), -20);
  EXPECT_EQ(ApplyBound(-300, WHITE_CANNOT_WIN, -20), -300);
  EXPECT_EQ(ApplyBound(300, BOTH_CAN_WIN, 0), 300);
}

TEST(EndingFrame, AKnightAgainstPawnsIsNeverBetterThanTheDrawValue) {
  for (const char* fen : {"4k3/pp6/8/8/8/8/8/3NK3 w - - 0 1", "4k3/8/8/8/8/8/1p6/3NK3 b - - 0 1"}) {
    Board board = BoardFromFen(fen);
    for (int draw_value : {0, 35}) {
      EndingTests::ClearHashTables();
      EvaluationState evaluation;
      evaluation.settings->draw_value = std::int16_t(draw_value);
      const int value = EvaluateExact(evaluation, board, ClassifyPosition(board, UNCLASSIFIED));
      EXPECT_LE(ForSideOnMove(board, value), draw_value) << fen;
    }
  }
}

TEST(EndingFrame, LazyExitFromJustBeyondTheMargin) {
  const struct {
    int estimate, beta, margin;
    bool lazy;
    int result;
  } cases[] = {
      {0, 700, 700, false, 0},   {0, 701, 700, true, 700},      {0, -700, 700, false, 0},
      {0, -701, 700, true, -701}, {100, 3100, 3000, false, 0}, {100, 3101, 3000, true, 3100},
      {100, -2901, 3000, true, -2901},
  };
  for (const auto& c : cases) {
    int result = 0;
    EXPECT_EQ(EndingLazyExit(c.estimate, c.beta, c.margin, result), c.lazy) << c.beta;
    EXPECT_EQ(result, c.result) << c.beta;
  }
}

// Far from beta the evaluators answer with a bound at once; near it they count everything.
TEST(EndingFrame, EvaluatorsAnswerLazilyOnlyFarFromBeta) {
  using Evaluator = int (*)(EvaluationState&, const Board&, int, bool&);
  const struct {
    const char* fen;
    Evaluator evaluate;
    int far;
  } cases[] = {
      {"8/5pk1/6p1/8/3N4/6P1/5PK1/8 w - - 0 1", EvaluateEnding, 2000},
      {"8/5pk1/6p1/8/3R4/6P1/5PK1/1r6 b - - 0 1", EvaluateRookEnding, 2000},
      {"6k1/5p2/6p1/8/1q6/6P1/4QPK1/8 w - - 0 1", EvaluateQueenEnding, 2000},
      {"8/5pk1/6p1/8/8/6P1/5PK1/8 w - - 0 1", EvaluatePawnEnding, 5000},
  };
  for (const auto& c : cases) {
    const Board board = BoardFromFen(c.fen);
    EvaluationState evaluation;
    for (int beta : {c.far, -c.far}) {
      EndingTests::PreparedState(evaluation, board);
      bool lazy = false;
      const int result = c.evaluate(evaluation, board, beta, lazy);
      EXPECT_TRUE(lazy) << c.fen;
      EXPECT_EQ(result, beta > 0 ? beta - 1 : beta) << c.fen;
    }
    EndingTests::PreparedState(evaluation, board);
    bool lazy = false;
    c.evaluate(evaluation, board, 0, lazy);
    EXPECT_FALSE(lazy) << c.fen;
  }
}

TEST(EndingFrame, ScalingByPawnsAndOppositeBishops) {
  const Board two_pawns = BoardFromFen("4k3/8/8/8/8/8/PP6/4KR2 w - - 0 1");
  // max(5 * 300 / 8, 300 - 50) and max(5 * 1000 / 8, 1000 - 50)
  EXPECT_EQ(ScaleEnding(300, two_pawns, false), 250);
  EXPECT_EQ(ScaleEnding(1000, two_pawns, false), 950);
  const Board no_pawns = BoardFromFen("4k3/8/8/8/8/8/8/4KR2 w - - 0 1");
  EXPECT_EQ(ScaleEnding(30, no_pawns, false), 7);  // max(2 * 30 / 8, 30 - 50)

  // Only the bishops, White's light and Black's dark, and one black pawn on the light squares:
  // t = max(6 * 400 / 8, 350) = 350, u = 4 * (350 * 6 / 8) / 8 = 131, max(131, 350 - 250).
  const Board bishops = BoardFromFen("3b2k1/p6p/8/8/8/8/PPP1B3/6K1 w - - 0 1");
  EXPECT_EQ(ScaleEnding(400, bishops, true), 131);
  EXPECT_EQ(ScaleEnding(-400, ColourFlipped(bishops), true), -131);
  // A big lead keeps all but 250.
  EXPECT_EQ(ScaleEnding(2000, bishops, true), 1950 - 250);
  // With a rook each the pawns on the bishop's colour don't count: max(350 * 6 / 8, 100).
  const Board rooks = BoardFromFen("3b2k1/p6p/8/8/8/8/PPP1B3/R5Kr w - - 0 1");
  EXPECT_EQ(ScaleEnding(400, rooks, true), 262);
}

TEST(EndingFrame, KingTerm) {
  // White's two rooks weigh 10: the black king stays home (KingMiddle e8 = 8), the white one
  // comes out (2 * KingCentre e1 = 24); two majors against a king without defenders: 20 + 10.
  EXPECT_EQ(EndingKingTerm(BoardFromFen("4k3/8/8/8/8/8/8/RR2K3 w - - 0 1")), 24 - 8 + 30);
  // A queen and two defenders: 100 - KingCover[2]; Black's rook alone is no attack.
  EXPECT_EQ(EndingKingTerm(BoardFromFen("4k3/3pp3/8/8/8/8/8/3QK2r w - - 0 1")),
            2 * 12 - 8 + 100 - 30);
}

}  // namespace
