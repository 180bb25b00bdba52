// Knights and bishops in the endings, and the ending of bishop and pawns against the bare king,
// which the wrong bishop can't win with rook pawns alone. Terms are from White's view.
#pragma once

#include "chess/board.h"
#include "evaluation/evaluation_state.h"

// Answers only for a bishop with pawns against the bare king; `white_view` is then the whole
// evaluation.
bool BishopAndPawnsEnding(const Board& board, int& white_view);

// Both colours; grow `attacked[]`.
int EndingKnightsTerm(EvaluationState& evaluation, const Board& board);
int EndingBishopsTerm(EvaluationState& evaluation, const Board& board, bool& opposite_bishops);
