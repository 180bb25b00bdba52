// The evaluators of the endings. Each answers from the side on move's view and may end early
// against `beta`, setting `lazy`, in which case its answer is only `beta` or `beta - 1`.
#pragma once

#include "chess/board.h"
#include "evaluation/evaluation_state.h"

int EvaluateEnding(EvaluationState& evaluation, const Board& board, int beta, bool& lazy);
int EvaluateRookEnding(EvaluationState& evaluation, const Board& board, int beta, bool& lazy);
int EvaluateQueenEnding(EvaluationState& evaluation, const Board& board, int beta, bool& lazy);
int EvaluatePawnEnding(EvaluationState& evaluation, const Board& board, int beta, bool& lazy);

// Endings where no pawn is left, or the side far behind has none; no hash table is used.
int EvaluateNoPawns(EvaluationState& evaluation, const Board& board);
