// The evaluators of the two types with many pieces, the opening and the middlegame. Every term is
// a pair of scores, blended into one number at the end.
#pragma once

#include "chess/board.h"
#include "evaluation/evaluation_state.h"
#include "evaluation/score_pair.h"

int EvaluateOpening(EvaluationState& evaluation, const Board& board, int beta, bool& lazy);
int EvaluateMiddlegame(EvaluationState& evaluation, const Board& board, int beta, bool& lazy);

// The early answer against `beta` when the material and the cheap terms `s` lie more than
// `margin` away from it in both halves and on the same side: true and `result` set to `beta` or
// `beta - 1`.
bool LazyExit(const Board& board, ScorePair s, int beta, int margin, int& result);

// What a simplification would bring the side ahead in the middlegame, weighed by how near the
// ending is. Updates endgame_trend.
ScorePair EndgameTrendTerm(EvaluationState& evaluation, const Board& board);
