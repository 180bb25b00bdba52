// Exchange evaluation on one square, and the material a move threatens from its target square.
// Both look at the position before the move.
#pragma once

#include <cstdint>

#include "chess/board.h"

// What the side making the move gains by the exchange on its target square, in centipawns, when
// each side may stop capturing whenever that suits it.
std::int32_t StaticExchange(Move move, const Board& board);

// The best gain by a capture that the moved piece would threaten from its new square (0 if none).
std::int32_t ThreatAfterMove(Move move, const Board& board);
