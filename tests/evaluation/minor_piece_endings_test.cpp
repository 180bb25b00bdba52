#include "evaluation/minor_piece_endings.h"

#include <gtest/gtest.h>

#include "evaluation/ending_test_support.h"
#include "evaluation/material.h"
#include "support/board_from_fen.h"

namespace {

using EndingTests::ColourFlipped;
using EndingTests::PreparedState;

TEST(BishopAndPawnsEnding, TheWrongBishopWithRookPawnsOnly) {
  const struct {
    const char* fen;
    int value;
  } cases[] = {
      // The light bishop with an a-pawn on rank index 3: 835 + 55.
      {"8/8/8/8/P1B5/8/8/4K2k w - - 0 1", 835 + 55},
      // The dark bishop can't drive the king from a8; near the corner it is a draw.
      {"8/1k6/8/8/P2B4/8/8/4K3 w - - 0 1", 0},
      {"k7/8/8/8/P2B4/P7/8/4K3 b - - 0 1", 0},
      // Far from the corner the pawn may yet run: 315 + Loser[7] + Winner[7] + 55.
      {"8/8/8/8/P2B4/8/8/4K2k w - - 0 1", 315 + 90 - 30 + 55},
      // Pawns on two files win with either bishop: 835 + 55 + 55.
      {"8/8/8/8/PP1B4/8/8/4K2k w - - 0 1", 835 + 55 + 55},
  };
  for (const auto& c : cases) {
    int value = -1;
    ASSERT_TRUE(BishopAndPawnsEnding(BoardFromFen(c.fen), value)) << c.fen;
    EXPECT_EQ(value, c.value) << c.fen;
    ASSERT_TRUE(BishopAndPawnsEnding(ColourFlipped(BoardFromFen(c.fen)), value)) << c.fen;
    EXPECT_EQ(value, -c.value) << c.fen;
  }
  int value = 0;
  for (const char* other : {"8/p7/8/8/P2B4/8/8/4K2k w - - 0 1",    // both sides have pawns
                            "8/8/8/8/P2N4/8/8/4K2k w - - 0 1",     // a knight
                            "8/8/8/8/3B4/8/8/4K2k w - - 0 1"})     // no pawn
    EXPECT_FALSE(BishopAndPawnsEnding(BoardFromFen(other), value)) << other;
}

TEST(EndingKnightsTerm, SquareAndPawnsAndDistanceFromThem) {
  const struct {
    const char* fen;
    int value;
  } cases[] = {
      // d4 28, four pawns 6 * 2 - 30, pawns on both wings -12.
      {"4k3/p6p/8/8/3N4/8/P6P/4K3 w - - 0 1", 28 - 18 - 12},
      // b4 16, two pawns 6 - 30, pawns only on the h-file far from a knight on the b-file -8.
      {"4k3/7p/8/8/1N6/8/7P/4K3 w - - 0 1", 16 - 24 - 8},
      // The same knight with pawns near it.
      {"4k3/p7/8/8/1N6/8/P7/4K3 w - - 0 1", 16 - 24},
  };
  for (const auto& c : cases) {
    const Board board = BoardFromFen(c.fen);
    EvaluationState evaluation;
    PreparedState(evaluation, board);
    EXPECT_EQ(EndingKnightsTerm(evaluation, board), c.value) << c.fen;
    EXPECT_NE(evaluation.attacked[WHITE] & SquareBit(C6), 0u) << "attacks of the knight";
    const Board flipped = ColourFlipped(board);
    PreparedState(evaluation, flipped);
    EXPECT_EQ(EndingKnightsTerm(evaluation, flipped), -c.value) << c.fen;
  }
}

TEST(EndingBishopsTerm, SquareMobilityAndTrappedBishops) {
  const struct {
    const char* fen;
    int value;
  } cases[] = {
      // d4 12; ten squares 2 * 10 - 15; centre d4 e5 2 * 2; ring f6 c3 c5 e3 (3 * 4) >> 1.
      {"k7/8/8/8/3B4/8/8/7K w - - 0 1", 12 + 5 + 4 + 6},
      // a7 0; no square off the rim -45; trapped by b6, shut in by c7 -180 (or -100 without c7).
      {"7k/B1p5/1p6/1P6/8/8/8/7K w - - 0 1", 0 - 45 - 180},
      {"7k/B7/1p6/1P6/8/8/8/7K w - - 0 1", 0 - 45 - 100},
  };
  for (const auto& c : cases) {
    const Board board = BoardFromFen(c.fen);
    EvaluationState evaluation;
    PreparedState(evaluation, board);
    bool opposite = true;
    EXPECT_EQ(EndingBishopsTerm(evaluation, board, opposite), c.value) << c.fen;
    EXPECT_FALSE(opposite);
    const Board flipped = ColourFlipped(board);
    PreparedState(evaluation, flipped);
    EXPECT_EQ(EndingBishopsTerm(evaluation, flipped, opposite), -c.value) << c.fen;
  }
}

TEST(EndingBishopsTerm, OppositeBishopsOnlyWithOneBishopColourEach) {
  const struct {
    const char* fen;
    bool opposite;
  } cases[] = {
      {"4k3/8/3b4/8/8/4B3/8/4K3 w - - 0 1", false},  // both dark
      {"4k3/8/2b5/8/8/4B3/8/4K3 w - - 0 1", true},
      {"4k3/8/2b5/8/8/4B3/8/3BK3 w - - 0 1", false},  // White has the pair
      {"4k3/8/2n5/8/8/4B3/8/4K3 w - - 0 1", false},
  };
  for (const auto& c : cases) {
    const Board board = BoardFromFen(c.fen);
    EvaluationState evaluation;
    PreparedState(evaluation, board);
    evaluation.has_bishop_pair[WHITE] = HasBishopPair(board.white);
    bool opposite = !c.opposite;
    EndingBishopsTerm(evaluation, board, opposite);
    EXPECT_EQ(opposite, c.opposite) << c.fen;
  }
}

}  // namespace
