// The shelter of a king: its pawns, the pieces beside them, open files and storming enemy pawns,
// judged on the king's square or on a square it can still castle to. Each call also sets the
// king's attack and defence units (from the wing units of both sides), the missing pawns in front
// and the two curves of the units; a caller that compares squares saves and restores them.
#pragma once

#include <cstdint>

#include "chess/board.h"
#include "evaluation/evaluation_state.h"
#include "evaluation/score_pair.h"

// Positive is good for the king's side.
ScorePair KingShelter(EvaluationState& evaluation, const Board& board, int square, int colour);

// The shelter with the files beside it blended in for a king on the c- or f-file of its home
// ranks; the units are those of the last square looked at.
ScorePair ShelterAt(EvaluationState& evaluation, const Board& board, int square, int colour);

// A king in the corner: a loose pawn it can take, or a back rank that heavy pieces watch.
ScorePair CornerTerm(EvaluationState& evaluation, const Board& board, int colour);

// The six numbers that a shelter leaves for one king.
struct ShelterFields {
  std::int16_t king_attack;
  std::int16_t king_defence;
  std::int16_t missing_front;
  std::int16_t missing_second;
  double defence_curve;
  double attack_curve;

  static ShelterFields Of(const EvaluationState& evaluation, int colour);
  void RestoreTo(EvaluationState& evaluation, int colour) const;
};
