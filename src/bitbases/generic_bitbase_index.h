// The index of a position in a generic bitbase, for the nine size classes given by the number of
// pieces (kings included) and of pawns. Squares come in the order of PositionList.
//
// Symmetry: with pawns only the left-right mirror applies, chosen so that the first pawn stands on
// files a-d; without pawns the white king is brought into the quadrant a1-d4. No further
// reduction is made: like pieces are stored under both orders.
//
// Digits of the index, most significant first: the first piece (a pawn on a-d, ranks 2-7: 24
// values; a white king in its quadrant: 16), further pawns (48 each), further pieces but the last
// (64 each), and a low byte in which the last piece's square and the side on move make each
// position own two adjacent bits.
#pragma once

#include <cstdint>

#include "bitbases/special_bitbases.h"

namespace BraskBitbases {

constexpr int FIRST_PAWN_VALUES = 24;
constexpr int KING_QUADRANT_VALUES = 16;
constexpr int PAWN_VALUES = 48;
constexpr int SQUARE_VALUES = 64;
constexpr int LOW_BYTE_VALUES = 256;

constexpr int FILE_FLIP = 7;
constexpr int RANK_FLIP = 56;

constexpr bool IsSizeClass(int pieces, int pawns) {
  return pieces >= 3 && pieces <= 5 && pawns >= 0 && pawns <= pieces - 2;
}

// Bits of the array of a class: two per position.
constexpr std::uint32_t ClassBits(int pieces, int pawns) {
  std::uint64_t bits = pawns > 0 ? FIRST_PAWN_VALUES : KING_QUADRANT_VALUES;
  for (int i = 1; i < pieces - 1; ++i) bits *= i < pawns ? PAWN_VALUES : SQUARE_VALUES;
  return std::uint32_t(bits * LOW_BYTE_VALUES);
}

// The XOR that brings the squares into file coordinates, from the first square of the list.
constexpr int FileCoordinatesMask(int first_square, bool with_pawns) {
  int mask = (first_square & 4) ? FILE_FLIP : 0;
  if (!with_pawns && (first_square ^ mask) >= 32) mask ^= RANK_FLIP;
  return mask;
}

// squares: the list in file coordinates; side: the side on move in the same coordinates.
template <int PIECES, int PAWNS>
constexpr std::uint32_t GenericIndex(const int* squares, int side) {
  static_assert(IsSizeClass(PIECES, PAWNS));
  std::uint32_t index = PAWNS > 0 ? HelperFunctions::PawnIndex(squares[0])
                                  : HelperFunctions::CompactAntiMirroredSquare(squares[0]);
  for (int i = 1; i < PIECES - 1; ++i)
    index = i < PAWNS ? index * PAWN_VALUES + std::uint32_t(squares[i] - 8)
                      : index * SQUARE_VALUES + std::uint32_t(squares[i]);
  return index * LOW_BYTE_VALUES + std::uint32_t(side + 2 * squares[PIECES - 1]) * 2;
}

}  // namespace BraskBitbases
