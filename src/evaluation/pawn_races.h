// Races of passed pawns against kings: a pawn the enemy king can't catch, king and pawn against
// king from the built-in table, and king and pawn against king and pawn from the file table.
// Every term is from White's view.
#pragma once

#include "chess/board.h"
#include "evaluation/evaluation_state.h"

// What the bare-pawns term leaves to be decided once the pieces have been looked at.
enum PawnRaceMode {
  NO_RACE = 0,
  WHITE_RACE = 1,  // White's passers are caught, Black's may run: see WhiteWinsRaceTerm
  BLACK_RACE = 2,
};

// Single pawns and races where one side has no piece left. Needs the frontmost passed pawns.
int BarePawnsTerm(const EvaluationState& evaluation, const Board& board, PawnRaceMode& mode);

// King and pawn against king, for each frontmost passed pawn of `colour` that the table doesn't
// call a draw; positive for either colour, at most a sure win.
int SinglePawnsTerm(const EvaluationState& evaluation, const Board& board, int colour);

// Whether king and pawn against king is a draw, straight from the built-in table.
bool IsSinglePawnDraw(const Board& board, int pawn_colour, int pawn);

// For a mode left open by BarePawnsTerm: the side without pieces wins only if none of the enemy's
// passers can run past the pieces.
int WhiteWinsRaceTerm(const EvaluationState& evaluation, const Board& board);
int BlackWinsRaceTerm(const EvaluationState& evaluation, const Board& board);

// The race of the pawn endings; needs the frontmost passed pawns.
int PawnRaceTerm(const EvaluationState& evaluation, const Board& board);
