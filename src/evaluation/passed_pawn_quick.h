// The passed pawns of the endings, valued with the pieces and kings around them. Fills the
// frontmost passed pawn of each file and its rank, which the races and the other ending terms
// read.
#pragma once

#include "chess/board.h"
#include "evaluation/evaluation_state.h"

// From White's view.
int PassedPawnQuickTerm(EvaluationState& evaluation, const Board& board);
