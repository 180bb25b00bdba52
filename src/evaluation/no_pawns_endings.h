// Endings without pawns, or where the side far behind has none: mating knowledge. The weaker king
// is driven to the rim, the stronger comes near, and king, bishop and knight mate in the corner of
// the bishop's colour.
#pragma once

#include "chess/board.h"

// The bare or weaker king on this table is worse off the lower the value: high in the centre.
int CornerValue(int square);

// King, bishop and knight against king, for the winner.
int BishopKnightMate(const Board& board, int winner);
