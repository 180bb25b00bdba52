// What goes into the pawn hash entry: the score of the pawn structure alone, as a pair with the
// king-safety units of the pawns for the opening and middlegame, and as one number for the
// endings.
#pragma once

#include "chess/board.h"
#include "evaluation/evaluation_state.h"
#include "evaluation/pawn_tables.h"

// Fills pawn_positional, pawn_reckless, pawn_units, obstructed and unreachable_centre.
void ConstructPawnEntry(EvaluationState& evaluation, const Board& board,
                        const PawnSquareTable& positional_table,
                        const PawnSquareTable& reckless_table);

// Fills pawn_ending and obstructed.
void ConstructPawnEntryEnding(EvaluationState& evaluation, const Board& board);
