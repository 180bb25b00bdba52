// The one probe of the bitbases that the search makes: every material that has a handler.
#pragma once

class Board;

namespace BraskBitbases {

// 0 when the position was answered, with `score` 0 for a draw, positive for a win of the side on
// move and negative for a loss, in the bitbases' scale; non-zero when no bitbase knows it.
int ProbeBitbases(const Board& board, int* score);

}  // namespace BraskBitbases
