// The pawn structure: what the evaluation knows about the pawns before it looks at a piece, and
// the pawn terms. Everything that depends on the pawns alone is kept in the pawn hash table, per
// structure and position type; the terms that also depend on pieces and kings are computed anew.
#pragma once

#include "chess/board.h"
#include "evaluation/evaluation_state.h"
#include "evaluation/score_pair.h"

// Reads the pawn hash entry of the structure and type, or lists the pawns and finds the passed
// ones. Nothing for positions without pawns.
void PreparePawns(EvaluationState& evaluation, const Board& board, int position_type);

// Must come first among the pawn terms: it also marks the frontmost passed pawn of each file.
ScorePair PassedPawnTerm(EvaluationState& evaluation);

// The pawn lists where a hash hit left them empty, and the files without pawns.
void PrepareFileData(EvaluationState& evaluation, const Board& board);

// The sets that depend on the pieces too, and on a miss everything that goes into the entry.
void PrepareStructure(EvaluationState& evaluation, const Board& board);

// The structure of the opening and middlegame, with the square tables of the type.
ScorePair PawnStructureTerm(EvaluationState& evaluation, const Board& board, int position_type);

// The structure in every other type with pawns, from White's view.
int PawnEndingTerm(EvaluationState& evaluation, const Board& board);
