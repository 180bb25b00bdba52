// A table of values by square, written as White sees the board from its side: rank 8 first, so
// that the source reads like a diagram.
#pragma once

#include "chess/basic.h"

struct SquareTable {
  int diagram[64];

  // The value for White on `square`.
  constexpr int operator[](int square) const { return diagram[MirrorRanks(square)]; }
  // Black reads White's table mirrored.
  constexpr int For(int colour, int square) const {
    return (*this)[colour == WHITE ? square : MirrorRanks(square)];
  }
};
