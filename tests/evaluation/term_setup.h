// Test set-up for running one evaluation term on its own: the state as the evaluation would have
// it when the term runs.
#pragma once

#include <initializer_list>
#include <ostream>
#include <string>

#include "chess/board.h"
#include "evaluation/evaluation_state.h"

// The set of the given squares.
constexpr Bitboard Bits(std::initializer_list<int> squares) {
  Bitboard set = 0;
  for (int square : squares) set |= SquareBit(square);
  return set;
}

// Pairs in test failures as (positional, reckless).
inline void PrintTo(const ScorePair& s, std::ostream* out) {
  *out << "(" << s.positional << ", " << s.reckless << ")";
}

// Clears the state and fills the bishop pairs, king zones, the pawn sets that the piece terms
// read (passed, pawn_attacks, defended, restrained, doubled, isolated) and `attacked` from kings
// and pawns, worked out plainly from the board, the file data as the evaluation prepares it, and
// the given openness. The endgame factor stays 0.
void PrepareForPieceTerms(EvaluationState& evaluation, const Board& board, int openness = 8);

// The state as the ending evaluators see it, from empty hash tables: pawns listed, passers found
// and the frontmost marked, file data and structure prepared.
void PrepareForEndingTerms(EvaluationState& evaluation, const Board& board);

// The zone units that are not zero, as "WC 8/-4" for White's centre attack 8 and defence -4.
std::string UnitsText(const ZoneUnits (&units)[2][3]);

// What a term leaves in the state besides its value, the parts that are not zero: the zone units,
// the king units as "Bking 13/-20" (Black's king, attack and defence), the missing shelter pawns
// as "Wgaps 1/3" (in front of White's king, on its second rank) and the trend as "trend 24".
std::string StateText(const EvaluationState& evaluation);
