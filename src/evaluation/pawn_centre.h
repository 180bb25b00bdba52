// The centre in the opening and middlegame: fixed pawn formations that help or hamper the
// development, and who holds the four centre squares.
#pragma once

#include "chess/board.h"
#include "evaluation/evaluation_state.h"
#include "evaluation/pawn_score_sheet.h"

void CentreFormationTerm(const Board& board, PawnScoreSheet& sheet);

// Also fills unreachable_centre.
void CentreControlTerm(EvaluationState& evaluation, const Board& board, PawnScoreSheet& sheet);
