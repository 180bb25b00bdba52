// What kind of game is on the board: the opening or middlegame with many pieces, or one of the
// kinds of ending. The evaluation picks its evaluator by it, the pawn hash keeps entries apart by
// it, and the search tunes itself by it.
#pragma once

#include "chess/board.h"

enum PositionType : int {
  OPENING = 0,
  MIDDLEGAME = 1,
  ENDGAME_EQUAL_PIECES = 2,
  ENDGAME_ROOKS = 3,
  ENDGAME_QUEENS = 4,
  ENDGAME_KNIGHTS = 5,
  ENDGAME_KNIGHT_BISHOP = 6,
  ENDGAME_SAME_BISHOPS = 7,
  ENDGAME_OPPOSITE_BISHOPS = 8,
  ENDGAME_ROOK_MINOR = 9,
  ENDGAME_QUEEN_ROOK = 10,
  ENDGAME_KNIGHT_PAWNS = 11,
  ENDGAME_BISHOP_PAWNS = 12,
  ENDGAME_ROOK_PAWNS = 13,
  ENDGAME_QUEEN_PAWNS = 14,
  ENDGAME_PAWNS = 15,
  ENDGAME_NO_PAWNS_LEFT = 16,
  ENDGAME_OTHER = 17,
  UNCLASSIFIED = 18,  // only as the previous type of a first classification
};

constexpr int POSITION_TYPE_COUNT = 18;

// The types 3 to 16, as a mask of `1 << type`.
constexpr unsigned SIMPLE_ENDGAMES = 0x1FFF8;
constexpr bool IsSimpleEndgame(int type) { return (SIMPLE_ENDGAMES >> type) & 1; }

// A side's material in the measure of the classification: 5 per major count, 1 per minor point.
constexpr int SideWeight(const PieceSet& side) { return 5 * side.major_count + side.minor_points; }

// The larger side weight, plus 3 with any queen on the board. Above 21 the game is not an ending
// yet; the evaluation's endgame factor is a function of the same number.
int MaterialWeight(const Board& board);

// `previous_type` only keeps a game with many pieces from going back from middlegame to opening.
PositionType ClassifyPosition(const Board& board, int previous_type);
