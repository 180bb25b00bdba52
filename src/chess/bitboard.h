// Bit operations on bitboards. They are table look-ups by 16-bit chunks with plain shifts, so
// they need no special processor instruction.
#pragma once

#include "chess/board_tables.h"

inline int PopCount(Bitboard x) {
  int count = 0;
  for (int shift = 0; shift < 64; shift += 16) {
    unsigned chunk = unsigned(x >> shift) & 0xFFFF;
    count += chunk == 0xFFFF ? 16 : BoardTables.BitTable[chunk] >> 4;
  }
  return count;
}

// For words with few bits; the same look-up.
inline int PopCountSparse(Bitboard x) { return PopCount(x); }

// Index of the highest set bit; 0 for an empty board, so callers test for emptiness first.
// Every loop over the squares of a bitboard takes this bit and clears it, so squares are always
// visited from high to low: that fixes the order of generated moves and of evaluation terms.
int FindHighestBit(Bitboard x);

inline int FindNextBit(Bitboard x) { return FindHighestBit(x); }

// x & -x isolates the lowest bit.
inline int FindLowestBit(Bitboard x) { return FindHighestBit(x & (0 - x)); }
