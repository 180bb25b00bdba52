#include "evaluation/material.h"

#include "chess/square_colours.h"

namespace {

// A piece for pawns is worth having only with pawns left to carry the game.
ScorePair MinorPieceUp(const PieceSet& side_up, int sign) {
  return side_up.pawns ? ScorePair{sign * 160, sign * 160} : ScorePair{sign * -120, sign * -120};
}

}  // namespace

ScorePair MaterialImbalance(const Board& board) {
  const int dmajor = board.white.major_count - board.black.major_count;
  const int dminor = board.white.minor_points - board.black.minor_points;
  const int whole_pieces = 5 * dmajor + dminor;
  if (whole_pieces > 3) return {400, 180};
  if (whole_pieces < -3) return {-400, -180};
  if (dmajor == 0 && dminor == 3) return MinorPieceUp(board.white, 1);
  if (dmajor == 0 && dminor == -3) return MinorPieceUp(board.black, -1);
  if (dmajor == -1 && dminor == 6) return {130, 180};
  if (dmajor == 1 && dminor == -6) return {-130, -180};
  if (dmajor == -2 && dminor == 9) return {50, 100};
  if (dmajor == 2 && dminor == -9) return {-50, -100};
  return {};
}

bool HasBishopPair(const PieceSet& side) {
  return (side.bishops & LIGHT_SQUARES) != 0 && (side.bishops & DARK_SQUARES) != 0;
}
