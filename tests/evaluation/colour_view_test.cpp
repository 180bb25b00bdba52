#include "evaluation/colour_view.h"

#include <gtest/gtest.h>

TEST(ColourView, SetsMirroredByRankAndFilesOfASet) {
  const struct {
    Bitboard set;
    Bitboard mirrored;
    Bitboard files;
  } cases[] = {
      {0, 0, 0},
      {SquareBit(A1), SquareBit(A8), FILE_A},
      {SquareBit(C2) | SquareBit(H7), SquareBit(C7) | SquareBit(H2), FileMask(2) | FileMask(7)},
      {RANK_1, RankMask(7), ~Bitboard{0}},
      {FileMask(3), FileMask(3), FileMask(3)},
      {0x0123456789ABCDEFULL, 0xEFCDAB8967452301ULL, 0xEFEFEFEFEFEFEFEFULL},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(MirrorRanksOfSet(c.set), c.mirrored);
    EXPECT_EQ(MirrorRanksOfSet(c.mirrored), c.set);
    EXPECT_EQ(OccupiedFiles(c.set), c.files);
  }
}
