// The safety of the kings in the opening and middlegame: the shelter of each king, the attack and
// defence units that decide the blend, and the balance of the wings.
#pragma once

#include "chess/board.h"
#include "evaluation/evaluation_state.h"
#include "evaluation/score_pair.h"

// Also sets king_attack[] and king_defence[].
ScorePair KingSafetyTerm(EvaluationState& evaluation, const Board& board);
ScorePair ZoneBalanceTerm(EvaluationState& evaluation, const Board& board);
