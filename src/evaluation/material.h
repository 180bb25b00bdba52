// Material beyond the piece values that the board counts: whole pieces up or down, pieces against
// pawns, and the bishop pair.
#pragma once

#include "chess/board.h"
#include "evaluation/score_pair.h"

// The imbalance of major pieces and minor points, from White's view.
ScorePair MaterialImbalance(const Board& board);

// Bishops on both square colours.
bool HasBishopPair(const PieceSet& side);

constexpr ScorePair BISHOP_PAIR_BONUS{50, 50};
