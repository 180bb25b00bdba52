// The terms of the pieces in the opening and middlegame. A term for one colour scores from that
// colour's side (positive is good for it): the driver adds White's and subtracts Black's. They
// grow `attacked[]`, the zone units and the endgame trend as they go.
#pragma once

#include "chess/board.h"
#include "evaluation/evaluation_state.h"
#include "evaluation/score_pair.h"

ScorePair KnightTerm(EvaluationState& evaluation, const Board& board, int colour, bool middlegame);
ScorePair BishopTerm(EvaluationState& evaluation, const Board& board, int colour);
ScorePair RookTerm(EvaluationState& evaluation, const Board& board, int colour);
ScorePair QueenTerm(EvaluationState& evaluation, const Board& board, int colour, bool middlegame);

// Both colours at once.
ScorePair DevelopmentTerm(EvaluationState& evaluation, const Board& board);
ScorePair OpeningFormationTerm(EvaluationState& evaluation, const Board& board);
ScorePair SpaceTerm(EvaluationState& evaluation, const Board& board);
// After the king safety: the knights' safe squares, against the enemy's attacks without queens.
ScorePair KnightMobilityTerm(EvaluationState& evaluation, const Board& board);
