// King and pawn against king, built into the program: a set bit is a draw.
// Index: [0 pawn side on move, 1 bare king on move][pawn][pawn side's king], bit: bare king; all
// squares rank-flipped when Black owns the pawn, so that the pawn always moves up.
#pragma once

#include "chess/basic.h"

namespace BraskBitbases {

extern const Bitboard SinglePawnBitbases[2][64][64];

}  // namespace BraskBitbases
