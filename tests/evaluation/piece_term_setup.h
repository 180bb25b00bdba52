// Test set-up for the piece and king terms: the parts of the evaluation state that the pawn
// structure provides, worked out plainly from the board, so that each term can be run on its own.
#pragma once

#include <ostream>

#include "chess/board.h"
#include "evaluation/evaluation_state.h"
#include "evaluation/score_pair.h"

// Pairs in test failures as (positional, reckless).
inline void PrintTo(const ScorePair& s, std::ostream* out) {
  *out << "(" << s.positional << ", " << s.reckless << ")";
}

// Clears the state and fills the bishop pairs, king zones, the pawn sets that the piece terms
// read (passed, pawn_attacks, defended, restrained, doubled, isolated), `attacked` from kings and
// pawns, the only open file, and the given openness. The endgame factor stays 0.
void PrepareForPieceTerms(EvaluationState& evaluation, const Board& board, int openness = 8);
