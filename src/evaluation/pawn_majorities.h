// Pawn majorities on the wings: finding them, and what they are worth when the defending king is
// far away or the majority is the classic four against three.
#pragma once

#include "chess/board.h"
#include "evaluation/evaluation_state.h"
#include "evaluation/score_pair.h"

// Fills majority[] from the pawn counts by file.
void FindMajorities(EvaluationState& evaluation);

// The files a to d for the queenside (wing 0), e to h for the kingside (wing 1).
Bitboard HalfOfBoard(int wing);

// The defending king stands on the other half of the board.
bool DefendingKingIsFar(const Board& board, int wing, int majority_colour);

// The majority side's colour of a wing that has one.
inline int MajorityColour(const PawnMajority& majority) {
  return majority.kind == WHITE_MAJORITY ? WHITE : BLACK;
}

// From White's view; adds to endgame_trend and the zone units.
ScorePair MajorityKingTerm(EvaluationState& evaluation, const Board& board);
int MajorityKingEndingTerm(const EvaluationState& evaluation, const Board& board);
