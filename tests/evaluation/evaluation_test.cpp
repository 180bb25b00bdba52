#include "evaluation/evaluate.h"

#include <gtest/gtest.h>

#include "evaluation/blend.h"
#include "evaluation/many_pieces.h"
#include "evaluation/material.h"
#include "search/hash.h"
#include "search/position_type.h"
#include "support/board_from_fen.h"
#include "support/random_positions.h"
#include "support/test_positions.h"

namespace {

// Without Black's queen's rook: a whole rook up, with every other piece at home.
constexpr const char* ROOK_UP = "1nbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQk - 0 1";
// Without Black's queen's knight: a piece up, pawns on the board.
constexpr const char* KNIGHT_UP = "r1bqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1";

void ClearTables() {
  EVALUATION_HASH_TABLE.Clear();
  PAWN_HASH_TABLE.Clear();
  EVALUATION_HASH_TABLE.NewSearch();
  PAWN_HASH_TABLE.NewSearch();
}

class EvaluationTest : public ::testing::Test {
 protected:
  void SetUp() override { ClearTables(); }
};

}  // namespace

TEST(MaterialImbalance, WholePiecesPiecesForPawnsAndExchanges) {
  const struct {
    const char* fen;
    ScorePair expected;
  } cases[] = {
      {TestPositions::INITIAL, {0, 0}},
      {ROOK_UP, {400, 180}},
      {KNIGHT_UP, {160, 160}},
      {"4k3/8/8/8/8/8/8/4KN2 w - - 0 1", {-120, -120}},  // a knight without pawns
      {"4kn2/p7/8/8/8/8/8/4K3 w - - 0 1", {-160, -160}},
      {"4kn2/8/8/8/8/8/P7/4K3 w - - 0 1", {120, 120}},
      {"3rk3/8/8/8/8/8/8/2NBK3 w - - 0 1", {130, 180}},  // two minors for a rook
      {"3qk3/8/8/8/8/8/8/1NNBK3 w - - 0 1", {50, 100}},  // three minors for a queen
      {"3rk3/8/8/8/8/8/8/3NK3 w - - 0 1", {0, 0}},  // the exchange
  };
  for (const auto& c : cases)
    EXPECT_EQ(MaterialImbalance(BoardFromFen(c.fen)), c.expected) << c.fen;
  EXPECT_TRUE(HasBishopPair(BoardFromFen("4k3/8/8/8/8/8/8/2B1KB2 w - - 0 1").white));  // c1, f1
  EXPECT_FALSE(HasBishopPair(BoardFromFen("4k3/8/8/8/8/8/8/B1B1K3 w - - 0 1").white));
}

TEST(Blend, EndgameFactorAndCurves) {
  EXPECT_EQ(EndgameFactor(21), 0.0);
  EXPECT_EQ(EndgameFactor(22), 1.0);
  EXPECT_EQ(EndgameFactor(35), 0.0);  // the cubic is slightly negative there
  EXPECT_EQ(EndgameFactor(99), 0.0);
  EXPECT_GT(EndgameFactor(28), EndgameFactor(29));
  EXPECT_EQ(DefenceCurve(-10), 1.0);
  EXPECT_EQ(DefenceCurve(5), 0.0);
  EXPECT_EQ(AttackCurve(30), 1.0);
  EXPECT_EQ(AttackCurve(-5), 0.0);
}

TEST(Blend, TheWeightMovesFromThePositionalToTheRecklessHalf) {
  const Board board = BoardFromFen(TestPositions::INITIAL);
  EvaluationState evaluation;
  // Level material in the opening -3, both queens and 24 minor points +1, kings on the e-file
  // 5.6 and a danger of 1: weight -1.
  EXPECT_EQ(RecklessWeight(evaluation, board, false), -1);
  EXPECT_EQ(RecklessWeight(evaluation, board, true), 1);
  const ScorePair sum{160, 320};
  EXPECT_EQ(Blend(evaluation, board, sum, false), 160);
  evaluation.settings->personality = 5;  // weight 4
  EXPECT_EQ(Blend(evaluation, board, sum, false), (12 * 160 + 4 * 320) / 16);
  evaluation.openness = 15;  // weight 7
  EXPECT_EQ(Blend(evaluation, board, ScorePair{-161, 0}, false), (9 * -161) / 16);
  evaluation.settings->personality = 1000;
  evaluation.openness = 0;
  EXPECT_EQ(Blend(evaluation, board, sum, false), 320);
  evaluation.settings->personality = -1000;
  EXPECT_EQ(Blend(evaluation, board, sum, true), 160);
  // An attacked king pulls towards the reckless half, the danger stopping at 20.
  evaluation.settings->personality = 0;
  const int quiet = RecklessWeight(evaluation, board, true);
  evaluation.king_attack[WHITE] = 30;
  evaluation.king_defence[WHITE] = -10;
  EXPECT_EQ(RecklessWeight(evaluation, board, true), quiet - 1 + 14);
  evaluation.king_attack[BLACK] = 30;
  evaluation.king_defence[BLACK] = -10;
  EXPECT_EQ(RecklessWeight(evaluation, board, true), quiet - 1 + 20);
}

TEST(EndgameTrendTerm, HalfTheClampedMaterialWeighedByTheFactorFromWhitesView) {
  for (const auto& [fen, expected] :
       {std::pair{"4k3/pppp4/8/8/8/8/PPPPPPPP/3RK3 w - - 0 1", ScorePair{38, 4}},
        std::pair{"4k3/pppp4/8/8/8/8/PPPPPPPP/3RK3 b - - 0 1", ScorePair{38, 4}},
        std::pair{"3rk3/pppppppp/8/8/8/8/PPPP4/4K3 w - - 0 1", ScorePair{-38, -4}}}) {
    EvaluationState evaluation;
    evaluation.endgame_factor = 0.5;
    EXPECT_EQ(EndgameTrendTerm(evaluation, BoardFromFen(fen)), expected) << fen;
    EXPECT_EQ(std::abs(evaluation.endgame_trend), 75) << fen;
  }
}

TEST(LazyExit, BothHalvesFarFromBetaOnTheSameSide) {
  const Board white = BoardFromFen(TestPositions::INITIAL);
  int result = 0;
  EXPECT_FALSE(LazyExit(white, {0, 0}, 285, 285, result));
  EXPECT_TRUE(LazyExit(white, {0, 0}, 286, 285, result));
  EXPECT_EQ(result, 285);
  EXPECT_TRUE(LazyExit(white, {0, 0}, -286, 285, result));
  EXPECT_EQ(result, -286);
  EXPECT_FALSE(LazyExit(white, {0, 300}, 286, 285, result));   // the reckless half is near
  EXPECT_FALSE(LazyExit(white, {-600, 600}, 0, 285, result));  // on either side of beta
  const Board black = BoardFromFen("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR b KQkq - 0 1");
  EXPECT_TRUE(LazyExit(black, {400, 400}, -100, 285, result));  // White's plus is Black's minus
  EXPECT_EQ(result, -101);
}

const char* const POSITIONS[] = {
    TestPositions::INITIAL,   TestPositions::KIWIPETE, TestPositions::POSITION_3,
    TestPositions::POSITION_4, TestPositions::POSITION_5, TestPositions::POSITION_6,
    ROOK_UP,                  KNIGHT_UP,               "4k3/8/8/8/8/8/8/4KN2 w - - 0 1",
    "2nbk3/p7/8/8/8/8/8/3RK3 b - - 0 1", "4k3/8/8/8/8/8/8/3RK3 w - - 0 1"};

TEST_F(EvaluationTest, APositionAndItsMirrorAreWorthTheSameToTheSideOnMove) {
  for (const char* fen : POSITIONS) {
    const Board board = BoardFromFen(fen), flipped = ColourFlipped(board);
    EXPECT_EQ(EvaluatePosition(board), EvaluatePosition(flipped)) << fen;
    EXPECT_EQ(ClassifyPosition(board, UNCLASSIFIED), ClassifyPosition(flipped, UNCLASSIFIED))
        << fen;
  }
  EXPECT_GT(EvaluatePosition(BoardFromFen(ROOK_UP)), EvaluatePosition(BoardFromFen(KNIGHT_UP)));
  EXPECT_GT(EvaluatePosition(BoardFromFen(KNIGHT_UP)), 0);
}

// Whatever answers it (the lazy exit far from beta, the hash table on a second look, or the full
// evaluation), every answer is on the side of beta where the exact value lies, and in the form
// the null window allows: exact, beta, or beta - 1.
TEST_F(EvaluationTest, LazyAndHashedAnswersAgreeWithTheExactValue) {
  for (const char* fen : POSITIONS) {
    const Board board = BoardFromFen(fen);
    const int type = ClassifyPosition(board, UNCLASSIFIED);
    EvaluationState evaluation;
    ClearTables();
    const int exact = EvaluateExact(evaluation, board, type);
    for (int offset : {-2000, -400, -100, -1, 0, 1, 100, 400, 2000}) {
      const int beta = exact + offset;
      for (int look = 0; look < 2; ++look) {
        if (look == 0) ClearTables();
        const int value = Evaluate(evaluation, board, beta, type);
        EXPECT_EQ(value >= beta, exact >= beta) << fen << " beta " << beta << " look " << look;
        EXPECT_TRUE(value == exact || value == beta || value == beta - 1) << fen << " " << beta;
      }
    }
  }
}

TEST_F(EvaluationTest, TheSecondEvaluationIsAnsweredByTheHashTable) {
  EvaluationState evaluation;
  const Board board = BoardFromFen(TestPositions::POSITION_6);
  const int type = ClassifyPosition(board, UNCLASSIFIED);
  const int value = Evaluate(evaluation, board, 0, type);  // near beta: no lazy exit
  EVALUATION_HASH_TABLE.NewSearch();
  EXPECT_EQ(Evaluate(evaluation, board, value, type), value);
  EXPECT_EQ(Evaluate(evaluation, board, value + 1, type), value);
  EXPECT_EQ(EVALUATION_HASH_TABLE.hits, 2u);
  EXPECT_EQ(PAWN_HASH_TABLE.FreeSlots(), PAWN_HASH_TABLE.TotalSlots() - 1);
}

// Mate-range betas and lazy answers look at no table and store nothing.
TEST_F(EvaluationTest, OnlyAFullEvaluationNearBetaIsKept) {
  EvaluationState evaluation;
  const Board board = BoardFromFen(ROOK_UP);
  EXPECT_EQ(Evaluate(evaluation, board, 31767, OPENING), 31766);
  EXPECT_EQ(Evaluate(evaluation, board, 32767, OPENING), 32766);
  EXPECT_EQ(Evaluate(evaluation, board, -31767, OPENING), -31767);
  EXPECT_EQ(Evaluate(evaluation, board, 31766, OPENING), 31765);
  EXPECT_EQ(Evaluate(evaluation, board, 0, OPENING), 0);        // far above beta
  EXPECT_EQ(Evaluate(evaluation, board, 2000, OPENING), 1999);  // far below it
  EXPECT_EQ(EVALUATION_HASH_TABLE.FreeSlots(), EVALUATION_HASH_TABLE.TotalSlots());
  EXPECT_EQ(PAWN_HASH_TABLE.FreeSlots(), PAWN_HASH_TABLE.TotalSlots());
  Evaluate(evaluation, board, EvaluateExact(evaluation, board, OPENING), OPENING);
  EXPECT_EQ(EVALUATION_HASH_TABLE.FreeSlots(), EVALUATION_HASH_TABLE.TotalSlots() - 1);
  EXPECT_EQ(PAWN_HASH_TABLE.FreeSlots(), PAWN_HASH_TABLE.TotalSlots() - 1);
}

TEST_F(EvaluationTest, EndingsWithoutPawnsUseNoTable) {
  EvaluationState evaluation;
  const Board board = BoardFromFen("4k3/8/8/8/8/8/8/3RK3 w - - 0 1");
  EXPECT_GT(EvaluateExact(evaluation, board, ENDGAME_NO_PAWNS_LEFT), 0);
  EXPECT_EQ(EVALUATION_HASH_TABLE.probes, 0u);
  EXPECT_EQ(PAWN_HASH_TABLE.probes, 0u);
}
