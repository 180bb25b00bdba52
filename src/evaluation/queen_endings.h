// Queens in the endings: the queen term of every ending with queens, and the ending of a queen
// each, where checks decide more than material. Terms are from White's view.
#pragma once

#include "chess/board.h"
#include "evaluation/evaluation_state.h"

// For the queens of one colour, positive for that colour; grows `attacked[colour]`.
// `white_material` is the material from White's view.
int EndingQueenTerm(EvaluationState& evaluation, const Board& board, int colour,
                    int white_material);

// Half of each queen's place, and the most advanced passer of each side: the queen ending's own
// correction, from White's view.
int QueenEndingPlacement(const EvaluationState& evaluation, const Board& board);

// The checks that the side on move, standing worse by `v` (negative), can give against the
// enemy king: with them a loss shrinks towards a perpetual. `v` comes back if there are none.
int ScaleByChecks(const Board& board, int v);
