#include <gtest/gtest.h>

#include "bitbases/retrograde_solver.h"
#include "bitbases/single_pawn_bitbases_data.h"
#include "chess/basic.h"
#include "chess/bitboard.h"

using BraskBitbases::SinglePawnBitbases;

namespace {

constexpr int PAWN_SIDE_ON_MOVE = 0;
constexpr int BARE_KING_ON_MOVE = 1;

bool IsDraw(int side, int pawn, int king, int bare_king) {
  return (SinglePawnBitbases[side][pawn][king] & SquareBit(bare_king)) != 0;
}

}  // namespace

TEST(SinglePawnBitbases, HoldsExactlyTheDrawsOfTheLegalPositions) {
  int set_bits = 0;
  for (const auto& side : SinglePawnBitbases)
    for (const auto& pawn : side)
      for (Bitboard row : pawn) set_bits += PopCount(row);
  EXPECT_EQ(set_bits, 108788);
}

TEST(SinglePawnBitbases, RowsOfPawnsOnTheFirstAndLastRankAreEmpty) {
  for (int side = 0; side < 2; ++side)
    for (int pawn : {A1, B1, C1, D1, E1, F1, G1, H1, A8, B8, C8, D8, E8, F8, G8, H8})
      for (int king = 0; king < 64; ++king)
        EXPECT_EQ(SinglePawnBitbases[side][pawn][king], 0u) << side << " " << pawn << " " << king;
}

TEST(SinglePawnBitbases, KnownPositions) {
  struct Case {
    int king, pawn, bare_king, side;
    bool draw;
  };
  const Case cases[] = {
      {E5, E4, E7, PAWN_SIDE_ON_MOVE, true},   // opposition lost by the move
      {E5, E4, E7, BARE_KING_ON_MOVE, false},  // and won when the bare king must give way
      {E6, E5, E8, PAWN_SIDE_ON_MOVE, false},
      {E6, E5, E8, BARE_KING_ON_MOVE, false},
      {A6, A5, A8, PAWN_SIDE_ON_MOVE, true},  // the rook's pawn
      {A6, A5, A8, BARE_KING_ON_MOVE, true},
      {A1, E4, D5, BARE_KING_ON_MOVE, true},   // takes the undefended pawn
      {A1, H7, A3, PAWN_SIDE_ON_MOVE, false},  // promotes out of reach
  };
  for (const Case& c : cases)
    EXPECT_EQ(IsDraw(c.side, c.pawn, c.king, c.bare_king), c.draw)
        << "king " << c.king << " pawn " << c.pawn << " bare king " << c.bare_king << " side "
        << c.side;
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
