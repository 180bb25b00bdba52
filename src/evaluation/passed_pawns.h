// Passed pawns: their value by rank and file, pairs of them side by side, and the rooks and
// blockers around them.
#pragma once

#include "chess/board.h"
#include "evaluation/evaluation_state.h"
#include "evaluation/score_pair.h"

// Calls `visit(file_a, file_b)` for each pair of neighbouring files with a frontmost passed pawn
// of the colour, walking from the a-file; a file joins at most one pair, so three passed pawns
// side by side make one pair.
template <typename Visit>
void ForEachAdjacentPassers(const PawnBlock& block, Visit visit) {
  for (int file = 1; file < 8;) {
    if (block.passed_rank[file] == 0) {
      file += 2;
    } else if (block.passed_rank[file - 1] != 0) {
      visit(file - 1, file);
      file += 2;
    } else {
      file += 1;
    }
  }
}

// The rank of a frontmost passed pawn on the file, counted from its own side.
inline int PassedRankFromOwnSide(const PawnBlock& block, int colour, int file) {
  return colour == WHITE ? block.passed_rank[file] : 7 - block.passed_rank[file];
}

// From White's view; the units go to zone_units.
ScorePair PassedPawnPiecesTerm(EvaluationState& evaluation, const Board& board);
