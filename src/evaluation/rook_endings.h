// Rooks in the endings: the rook term of every ending with rooks, and the knowledge of rook and
// pawn against rook. Terms are from White's view.
#pragma once

#include "chess/board.h"
#include "evaluation/evaluation_state.h"

// For the rooks of one colour, positive for that colour; grows `attacked[colour]`.
int EndingRookTerm(EvaluationState& evaluation, const Board& board, int colour);

// Answers only for rook and pawn against rook; `white_view` is then the whole evaluation.
bool RookEndingKnowledge(const Board& board, int& white_view);

// Loose pawns that both rooks see: the defender's rook gets at them first.
int LoosePawnsTerm(const EvaluationState& evaluation, const Board& board);
