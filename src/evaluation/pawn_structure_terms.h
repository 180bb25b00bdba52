// The pawn terms of the opening and middlegame that also depend on pieces, so no hash entry can
// keep them. All from White's view; their units go straight to zone_units.
#pragma once

#include "chess/board.h"
#include "evaluation/evaluation_state.h"
#include "evaluation/score_pair.h"

// Centre pawns at home behind a piece or pawn, and the c-pawn behind its own knight or bishop.
ScorePair BlockedCentreTerm(EvaluationState& evaluation, const Board& board);

// An isolated queen's pawn: strong with many pieces on the board, weak near the ending.
ScorePair IsolatedQueenPawnTerm(EvaluationState& evaluation, const Board& board);
