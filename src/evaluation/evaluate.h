// The static score of a position, as a null-window search asks for it: is it at least beta?
#pragma once

#include "chess/board.h"
#include "evaluation/evaluation_state.h"

// At least `beta` exactly when the position is worth at least `beta` to the side on move; above
// that the result is exact or `beta`, below it exact or `beta - 1`.
int Evaluate(EvaluationState& evaluation, const Board& board, int beta, int position_type);

// The exact value, found by bisection with Evaluate.
int EvaluateExact(EvaluationState& evaluation, const Board& board, int position_type);

// The exact value with neutral settings, for the commands that show an evaluation.
int EvaluatePosition(const Board& board);
