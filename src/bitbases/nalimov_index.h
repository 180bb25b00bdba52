// The place of a position in a Nalimov table file: one index function per table and side on move.
#pragma once

#include <cstdint>

namespace NalimovTablebases {

// A position reaches the index as one list per colour: three slots each for pawns, knights,
// bishops, rooks and queens, lowest square first within a type, and the king in the last slot.
constexpr int SQUARE_LIST_SIZE = 16;
constexpr int KING_SLOT = 15;
constexpr int FirstSlot(int piece_type) { return 3 * (piece_type - 1); }

constexpr int NO_EN_PASSANT = 64;

// Answered for positions that have no place in the table (kings too close, a piece where the
// format gives it no number), so that a caller's bounds test rejects them.
constexpr std::uint64_t NO_INDEX = ~std::uint64_t{0};

// first, second: the lists of White and Black in the stored table's colours; invert says that the
// colours of the real position were swapped to get there.
using IndexFunction = std::uint64_t (*)(const int* first, const int* second, int ep_square,
                                        bool invert);

// id 1..110 as in the descriptor list; side 0 White on move, 1 Black.
IndexFunction GetIndexFunction(int id, int side);

}  // namespace NalimovTablebases
