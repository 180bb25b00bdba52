#include <gtest/gtest.h>

#include "bitbases/retrograde_solver.h"
#include "bitbases/single_pawn_bitbases_data.h"
#include "chess/basic.h"
#include "chess/bitboard.h"

using BraskBitbases::SinglePawnBitbases;

namespace {

bool IsDraw(int side, int pawn, int king, int bare_king) {
  return (SinglePawnBitbases[side][pawn][king] & SquareBit(bare_king)) != 0;
}

}  // namespace

TEST(SinglePawnBitbases, HoldsExactlyTheDrawsOfTheLegalPositionsAndNoPawnOnAnEdgeRank) {
  int set_bits = 0;
  for (const auto& side : SinglePawnBitbases)
    for (const auto& pawn : side)
      for (Bitboard row : pawn) set_bits += PopCount(row);
  EXPECT_EQ(set_bits, 108788);
  for (int side = 0; side < 2; ++side)
    for (int pawn : {A1, B1, C1, D1, E1, F1, G1, H1, A8, B8, C8, D8, E8, F8, G8, H8})
      for (int king = 0; king < 64; ++king)
        EXPECT_EQ(SinglePawnBitbases[side][pawn][king], 0u) << side << " " << pawn << " " << king;
}

// The table is made from the rules alone; the tablebase solver reaches its results by another road
// (distance to mate over all material), so agreement on every position checks both.
TEST(SinglePawnBitbases, AgreesWithTheSolvedTablebaseOnEveryPosition) {
  NalimovTablebases::RetrogradeSolver solver;
  const NalimovTablebases::SolvedEndgame& kpk = solver.Solve("kpk");
  int compared = 0, mismatches = 0;
  for (int side = 0; side < 2; ++side)
    for (int pawn = A2; pawn <= H7; ++pawn)
      for (int king = 0; king < 64; ++king)
        for (int bare_king = 0; bare_king < 64; ++bare_king) {
          const int squares[3] = {king, bare_king, pawn};
          const NalimovTablebases::PlyResult result = kpk.At(squares, side);
          const bool draw = IsDraw(side, pawn, king, bare_king);
          if (result.IsIllegal()) {
            mismatches += draw;
            continue;
          }
          ++compared;
          mismatches += draw != result.IsDraw();
        }
  EXPECT_EQ(compared, 331352);
  EXPECT_EQ(mismatches, 0);
}

TEST(SinglePawnBitbases, AnswersTheTextbookPositions) {
  struct Case {
    int king, pawn, bare_king;
    bool draw_with_pawn_side_on_move, draw_with_bare_king_on_move;
  };
  const Case cases[] = {
      {E5, E4, E7, true, false},   // the opposition decides
      {E6, E5, E8, false, false},  // won whoever moves
      {A6, A5, A8, true, true},    // the rook's pawn
  };
  for (const Case& c : cases) {
    EXPECT_EQ(IsDraw(0, c.pawn, c.king, c.bare_king), c.draw_with_pawn_side_on_move) << c.pawn;
    EXPECT_EQ(IsDraw(1, c.pawn, c.king, c.bare_king), c.draw_with_bare_king_on_move) << c.pawn;
  }
}
