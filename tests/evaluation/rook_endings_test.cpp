#include "evaluation/rook_endings.h"

#include <gtest/gtest.h>

#include "evaluation/ending_test_support.h"
#include "evaluation/pawn_structure.h"
#include "support/board_from_fen.h"

namespace {

using EndingTests::ColourFlipped;
using EndingTests::PreparedState;

TEST(RookEndingKnowledge, RookAndPawnAgainstRook) {
  const struct {
    const char* fen;
    int value;
  } cases[] = {
      // The defending king on the queening square.
      {"4k3/8/8/8/4P3/8/r7/4K2R w - - 0 1", 10},
      // Lucena, the defender cut off three files, his rook beside the pawn: 350 + 4 * 3 - |0 - 24|.
      {"3K4/3P2k1/8/8/8/8/4r3/5R2 w - - 0 1", 350 + 12 - 24},
      // Cut off four files with the pawn on e6: 8 * 4 + 250.
      {"k6r/8/4P3/8/6K1/8/8/2R5 w - - 0 1", 8 * 4 + 250},
      // Both kings at the pawn: 15 - Distance(e5, a8) + 4 * 3, the strong king in front: + 60.
      {"r7/4k3/8/4K3/4P3/8/8/7R w - - 0 1", 15 - 4 + 12 + 60},
      // Defender away: 15 - 7 + 20 + 32 * (0 + 5 - 6) + 45; strong king cut off: - 8 * 3 - 16.
      {"2r4k/8/4P3/8/8/8/1R6/1K6 w - - 0 1", 28 + 13 - 24 - 16},
      // The defender's king behind the pawn (up = 4 - 2): 15 - 7 + 16 - 19 + 8 * 2.
      {"r7/8/8/4P3/8/4k3/7R/7K w - - 0 1", 5 + 16},
  };
  for (const auto& c : cases) {
    int value = -1;
    ASSERT_TRUE(RookEndingKnowledge(BoardFromFen(c.fen), value)) << c.fen;
    EXPECT_EQ(value, c.value) << c.fen;
    ASSERT_TRUE(RookEndingKnowledge(ColourFlipped(BoardFromFen(c.fen)), value)) << c.fen;
    EXPECT_EQ(value, -c.value) << c.fen;
  }
  int value = 0;
  for (const char* other : {"4k3/p7/8/8/4P3/8/r7/4K2R w - - 0 1",   // two pawns
                            "4k3/8/8/8/4P3/8/rr6/4K2R w - - 0 1"})  // two rooks against one
    EXPECT_FALSE(RookEndingKnowledge(BoardFromFen(other), value)) << other;
}

TEST(EndingRookTerm, SeventhRankAndConnectedRooks) {
  const struct {
    const char* fen;
    int value;
  } cases[] = {
      // Own pawns keep file terms out; 85 - 12 each; e7 connected on the 7th + 25 + 50; b7 + 50.
      {"6k1/1R2R3/8/8/8/8/1P2P3/4K3 w - - 0 1", 73 + 25 + 50 + 73 + 50},
      // 85 - 24 each; e7 attacks h7 before the rook on h8, defended, but rooks doubled: + 30.
      {"6kr/1R2R2p/6p1/8/8/8/1P2P3/4K3 w - - 0 1", 61 + 25 + 50 + 30 + 61 + 50},
      // Connected elsewhere: + 4, and + 12 against a lone queen.
      {"6k1/8/8/8/8/8/1P2P3/1R2R1K1 w - - 0 1", 73 + 4 + 73},
      {"4qk2/8/8/8/8/8/1P2P3/1R2R1K1 w - - 0 1", 73 + 12 + 73},
  };
  for (const auto& c : cases) {
    const Board board = BoardFromFen(c.fen);
    EvaluationState evaluation;
    PreparedState(evaluation, board);
    EXPECT_EQ(EndingRookTerm(evaluation, board, WHITE), c.value) << c.fen;
    const Board flipped = ColourFlipped(board);
    PreparedState(evaluation, flipped);
    EXPECT_EQ(EndingRookTerm(evaluation, flipped, BLACK), c.value) << c.fen;
  }
}

TEST(EvaluateRookEnding, LoosePawnsInSightOfBothRooks) {
  const struct {
    const char* fen;
    int value;
  } cases[] = {
      {"6k1/8/8/8/r3P3/8/8/4R1K1 w - - 0 1", -30},    // e4 on the lines of both rooks
      {"6k1/8/8/8/r3P3/5K2/8/4R3 w - - 0 1", 0},      // next to its king
      {"6k1/8/8/8/r2NP3/8/8/4R1K1 w - - 0 1", 0},     // the knight shields it
      {"4k3/1r4p1/8/6R1/r3P3/8/8/4R1K1 w - - 0 1", 0},  // one loose pawn each
      {"6k1/8/8/8/r3P3/3P4/8/4R1K1 w - - 0 1", 0},     // defended by a pawn
  };
  for (const auto& c : cases) {
    const Board board = BoardFromFen(c.fen);
    for (const Board& position : {board, ColourFlipped(board)}) {
      EvaluationState evaluation;
      PreparedState(evaluation, position);
      PrepareFileData(evaluation, position);
      PrepareStructure(evaluation, position);
      const int sign = position.side_on_move == board.side_on_move ? 1 : -1;
      EXPECT_EQ(LoosePawnsTerm(evaluation, position), sign * c.value) << c.fen;
    }
  }
}

TEST(EndingRookTerm, OpenAndHalfOpenFiles) {
  // 85 - 12 * 3 each; a-file open 14 + 12 (the only one); h half open 9; Black's h7 isolated + 4.
  const Board board = BoardFromFen("6k1/7p/8/8/8/8/1PPPPPP1/R5KR w - - 0 1");
  for (const Board& position : {board, ColourFlipped(board)}) {
    const int colour = position.white.rooks != 0 ? WHITE : BLACK;
    EvaluationState evaluation;
    PreparedState(evaluation, position);
    PrepareFileData(evaluation, position);
    PrepareStructure(evaluation, position);
    EXPECT_EQ(EndingRookTerm(evaluation, position, colour), (49 + 14 + 12) + (49 + 9) + 4);
  }
}

}  // namespace
