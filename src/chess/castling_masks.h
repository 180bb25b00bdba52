// Castling rights depend on kings and rooks standing at home: any move from or to one of those
// squares (a move away, or a capture there) takes the rights that depend on it.
#pragma once

#include "chess/basic.h"

struct CastlingMaskTable {
  int kept[64];  // the rights that survive a move touching the square
};

constexpr CastlingMaskTable MakeCastlingMasks() {
  CastlingMaskTable table{};
  for (int square = 0; square < 64; ++square) table.kept[square] = ALL_CASTLING;
  table.kept[E1] &= ~(WHITE_SHORT | WHITE_LONG);
  table.kept[H1] &= ~WHITE_SHORT;
  table.kept[A1] &= ~WHITE_LONG;
  table.kept[E8] &= ~(BLACK_SHORT | BLACK_LONG);
  table.kept[H8] &= ~BLACK_SHORT;
  table.kept[A8] &= ~BLACK_LONG;
  return table;
}

constexpr CastlingMaskTable CastlingMasks = MakeCastlingMasks();
