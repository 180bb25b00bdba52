#include "chess/bitboard.h"

int FindHighestBit(Bitboard x) {
  if (x >> 48) return (BoardTables.BitTable[x >> 48] & 15) + 48;
  if (x >> 32) return (BoardTables.BitTable[x >> 32] & 15) + 32;
  if (x >> 16) return (BoardTables.BitTable[x >> 16] & 15) + 16;
  return BoardTables.BitTable[x] & 15;
}
