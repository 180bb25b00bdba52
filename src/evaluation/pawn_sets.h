// The classified pawn sets of both colours: attacks, control, duos, doubled, isolated and
// backward pawns, the safe ways forward, and how open the position is.
#pragma once

#include "chess/board.h"
#include "evaluation/evaluation_state.h"

// Fills `squares` and `pawn_count` of both colours, lowest square first.
void ListPawns(EvaluationState& evaluation, const Board& board);

// The passed pawns and their number, of both colours.
void FindPassedPawns(EvaluationState& evaluation, const Board& board);

// The sets every evaluation needs, hash hit or not; they depend on the pieces too.
void PrepareDynamicSets(EvaluationState& evaluation, const Board& board);

// The sets that the pawn hash entry keeps: found only on a miss, after PrepareDynamicSets.
void PrepareStoredSets(EvaluationState& evaluation, const Board& board);

// 1 (closed) to 15 (open).
int Openness(const EvaluationState& evaluation, const Board& board);

// The distance in ranks from the pawn to the nearest square ahead on its file that holds an
// enemy pawn or a defended own pawn; 0 if there is none.
int Obstruction(const EvaluationState& evaluation, const Board& board, int colour, int square);

// Those of the four centre squares that hold no pawn and that no pawn of the colour can ever
// attack.
Bitboard UnreachableCentre(const EvaluationState& evaluation, const Board& board, int colour);
