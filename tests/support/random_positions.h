// Positions from random legal play, for tests that need many varied positions: openings,
// middlegames and the endings that random captures soon lead to. The same seed gives the same
// positions.
#pragma once

#include <cstdint>
#include <vector>

#include "chess/board.h"

// About `count` positions, from random games out of a few varied starting positions.
std::vector<Board> RandomPositions(int count, std::uint32_t seed);

// The same position with the colours exchanged: ranks mirrored, every piece of the other colour,
// the other side on move, castling rights and the en-passant square mirrored.
Board ColourFlipped(const Board& board);
