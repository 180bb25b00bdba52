#include "evaluation/pawn_endings.h"

#include <gtest/gtest.h>

#include "chess/bitboard.h"
#include "evaluation/ending_test_support.h"
#include "evaluation/passed_pawn_quick.h"
#include "support/board_from_fen.h"

namespace {

using EndingTests::ColourFlipped;
using EndingTests::PreparedState;

KingRegions Regions(const Board& board) {
  EvaluationState evaluation;
  PreparedState(evaluation, board);
  PassedPawnQuickTerm(evaluation, board);
  return KingRaceRegions(evaluation, board);
}

TEST(KingRaceRegions, EachKingHasItsOwnSquaresAndTheColoursMirror) {
  for (const char* fen :
       {"4k3/8/8/8/8/8/8/4K3 w - - 0 1", "8/5pk1/6p1/8/8/1P4P1/5PK1/8 b - - 0 1",
        "8/8/2k5/8/2P5/8/5K2/8 w - - 0 1", "8/pp4k1/8/8/8/8/PPP3K1/8 w - - 0 1"}) {
    const Board board = BoardFromFen(fen);
    const KingRegions regions = Regions(board);
    EXPECT_NE(regions.region[WHITE] & SquareBit(int(board.white.king_square)), 0u) << fen;
    EXPECT_NE(regions.region[BLACK] & SquareBit(int(board.black.king_square)), 0u) << fen;
    EXPECT_EQ(regions.region[WHITE] & regions.region[BLACK], 0u) << fen;
    EXPECT_EQ(regions.region[WHITE] & board.white.pawns, 0u) << fen;

    const KingRegions flipped = Regions(ColourFlipped(board));
    EXPECT_EQ(PopCount(flipped.region[BLACK]), PopCount(regions.region[WHITE])) << fen;
    EXPECT_EQ(PopCount(flipped.region[WHITE]), PopCount(regions.region[BLACK])) << fen;
  }
}

TEST(KingRaceRegions, AKingThatMustCatchAPasserStaysInItsSquare) {
  // The a5 pawn's square is a5-d8; the king on h8 is outside it and can go nowhere.
  const KingRegions regions = Regions(BoardFromFen("7k/8/8/P7/8/8/8/K7 w - - 0 1"));
  EXPECT_EQ(regions.region[BLACK], SquareBit(H8));
  // Inside the square it may move within it only.
  const KingRegions inside = Regions(BoardFromFen("3k4/8/8/P7/8/8/8/7K w - - 0 1"));
  const Bitboard square_of_a5 = 0x0F0F0F0F00000000ULL;
  EXPECT_EQ(inside.region[BLACK] & ~square_of_a5, 0u);
  EXPECT_NE(inside.region[BLACK] & SquareBit(C6), 0u);
}

}  // namespace
