// The terms of the pieces in the opening and middlegame. Each is from White's view for the
// colour given: the driver adds White's and subtracts Black's. They grow `attacked[]` and the
// zone units as they go.
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
ScorePair KnightMobilityTerm(EvaluationState& evaluation, const Board& board);
