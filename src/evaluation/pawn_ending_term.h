// The pawn structure as the endings weigh it: the stored ending score of the structure and the
// majorities seen from the kings. Built with the rest of the pawn structure.
#pragma once

#include "chess/board.h"
#include "evaluation/evaluation_state.h"

// From White's view; builds the ending score of the pawn entry on a miss of the pawn hash.
int PawnEndingTerm(EvaluationState& evaluation, const Board& board);
