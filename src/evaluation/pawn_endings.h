// Endings of kings and pawns alone: every pawn term weighs threefold, and the kings race on the
// board for the squares that each reaches first.
#pragma once

#include "chess/board.h"
#include "evaluation/evaluation_state.h"

struct KingRegions {
  Bitboard region[2];  // by colour: the squares that king gets to first
};

// Needs the frontmost passed pawns. Ends because the regions only grow.
KingRegions KingRaceRegions(const EvaluationState& evaluation, const Board& board);
