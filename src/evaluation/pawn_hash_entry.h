// Between the pawn information of an evaluation and the entry that the pawn hash table keeps.
#pragma once

#include <cstdint>

#include "chess/board.h"
#include "evaluation/evaluation_state.h"
#include "search/hash_pawn.h"

// Packs what the pawn evaluation found: the long form with the scores and units for the opening
// and middlegame, the short form with the ending score for the other types.
PawnHashEntry BuildPawnEntry(const EvaluationState& evaluation, std::uint64_t pawn_key,
                             int position_type);

// Splits an entry into the two colours by their pawns on the board and fills the state.
void ReadPawnEntry(const PawnHashEntry& entry, const Board& board, EvaluationState& evaluation);
