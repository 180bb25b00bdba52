// The handlers that answer from a generic bitbase: the direct one for a material stored as it
// stands, the mirrored one for the colour-swapped material, which reads the same array.
#pragma once

#include "bitbases/bit_array.h"
#include "bitbases/generic_bitbase_index.h"
#include "bitbases/generic_bitbases.h"
#include "bitbases/probe_generic_bitbases.h"
#include "chess/board.h"

namespace BraskBitbases {

// Entries of a generic bitbase, in the colours of the file's material.
constexpr int ENTRY_DRAW = 0;
constexpr int ENTRY_BLACK_WINS = 1;
constexpr int ENTRY_UNKNOWN = 2;
constexpr int ENTRY_WHITE_WINS = 3;

template <int PIECES, int PAWNS, bool MIRRORED>
int GenericHandler(void* data, const Board& board, const PositionList& list, int* score) {
  PositionList swapped;
  const int* squares = list.squares;
  if constexpr (MIRRORED) {
    BuildList(board, swapped, true);
    squares = swapped.squares;
  }
  const int mask = FileCoordinatesMask(squares[0], PAWNS > 0);
  int file_squares[PIECES];
  for (int i = 0; i < PIECES; ++i) file_squares[i] = squares[i] ^ mask;
  const int side = int(board.side_on_move) ^ int(MIRRORED);

  const BitArray& array = *static_cast<const BitArray*>(data);
  const int entry = array.Get2(GenericIndex<PIECES, PAWNS>(file_squares, side));
  if (entry == ENTRY_UNKNOWN) return BITBASE_NOT_FOUND;
  if (entry == ENTRY_DRAW) {
    *score = 0;
    return BITBASE_FOUND;
  }
  const int winner = (entry == ENTRY_WHITE_WINS ? WHITE : BLACK) ^ int(MIRRORED);
  *score = winner == int(board.side_on_move) ? GENERIC_WIN_SCORE : -GENERIC_WIN_SCORE;
  return BITBASE_FOUND;
}

}  // namespace BraskBitbases
