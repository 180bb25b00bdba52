#include "evaluation/ending_evaluators.h"

// The knowledge of the endings is still to come; until then an ending is worth its material.

int EvaluateEnding(EvaluationState&, const Board& board, int, bool& lazy) {
  lazy = false;
  return board.Material();
}

int EvaluateRookEnding(EvaluationState&, const Board& board, int, bool& lazy) {
  lazy = false;
  return board.Material();
}

int EvaluateQueenEnding(EvaluationState&, const Board& board, int, bool& lazy) {
  lazy = false;
  return board.Material();
}

int EvaluatePawnEnding(EvaluationState&, const Board& board, int, bool& lazy) {
  lazy = false;
  return board.Material();
}

int EvaluateNoPawns(EvaluationState&, const Board& board) { return board.Material(); }
