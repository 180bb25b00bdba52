#include "search/position_type.h"

#include <algorithm>

#include "chess/bitboard.h"
#include "chess/square_colours.h"

namespace {

constexpr int MANY_PIECES_WEIGHT = 21;

// The first-rank squares of a colour's knights and bishops before they have moved.
constexpr Bitboard HomeKnightSquares(int colour) {
  return colour == WHITE ? SquareBit(B1) | SquareBit(G1) : SquareBit(B8) | SquareBit(G8);
}
constexpr Bitboard HomeBishopSquares(int colour) {
  return colour == WHITE ? SquareBit(C1) | SquareBit(F1) : SquareBit(C8) | SquareBit(F8);
}
constexpr int CastlingRightsOf(int colour) {
  return colour == WHITE ? WHITE_SHORT | WHITE_LONG : BLACK_SHORT | BLACK_LONG;
}

struct Development {
  bool done;  // nothing left at home, castling given up or done
  bool half;  // the knights out, and the bishops out but for one where castling is already over
};

Development DevelopmentOf(const Board& board, int colour) {
  const PieceSet& side = board.Pieces(colour);
  const bool knights_home = (side.knights & HomeKnightSquares(colour)) != 0;
  const bool rights = (board.Castling() & CastlingRightsOf(colour)) != 0;
  const int bishops_home = PopCount(side.bishops & HomeBishopSquares(colour));
  return {!knights_home && !rights && bishops_home == 0,
          !knights_home && (rights ? bishops_home == 0 : bishops_home < 2)};
}

PositionType ClassifyManyPieces(const Board& board, int previous_type) {
  if (previous_type == MIDDLEGAME) return MIDDLEGAME;
  const Development white = DevelopmentOf(board, WHITE);
  const Development black = DevelopmentOf(board, BLACK);
  if (white.done || black.done) return MIDDLEGAME;
  if (!white.half && !black.half) return OPENING;
  const bool pawns_traded = PopCount(board.white.pawns) < 7 && PopCount(board.black.pawns) < 7;
  return pawns_traded ? MIDDLEGAME : OPENING;
}

// Both bishops on one square colour: no bishop on a light square, or none on a dark one.
bool BishopsOnSameColour(const Board& board) {
  const Bitboard bishops = board.white.bishops | board.black.bishops;
  return (bishops & LIGHT_SQUARES) == 0 || (bishops & ~LIGHT_SQUARES) == 0;
}

constexpr PositionType NO_ANSWER = UNCLASSIFIED;
constexpr PositionType UNBALANCED = PositionType(-1);  // skip the equal-pieces test

// The endings that a small total of piece points identifies; NO_ANSWER where it does not.
PositionType ClassifyByTotal(const Board& board) {
  const PieceSet& w = board.white;
  const PieceSet& b = board.black;
  switch (board.total_piece_points) {
    case 0:
      return ENDGAME_PAWNS;
    case 3:
      if ((!w.pawns && w.knights) || (!b.pawns && b.knights)) return ENDGAME_KNIGHT_PAWNS;
      if ((!w.pawns && w.bishops) || (!b.pawns && b.bishops)) return ENDGAME_BISHOP_PAWNS;
      return NO_ANSWER;
    case 5:
      if ((!w.pawns && w.rooks) || (!b.pawns && b.rooks)) return ENDGAME_ROOK_PAWNS;
      return NO_ANSWER;
    case 6:
      if (w.knights && b.knights) return ENDGAME_KNIGHTS;
      if (w.bishops && b.bishops)
        return BishopsOnSameColour(board) ? ENDGAME_SAME_BISHOPS : ENDGAME_OPPOSITE_BISHOPS;
      if ((w.knights && b.bishops) || (w.bishops && b.knights)) return ENDGAME_KNIGHT_BISHOP;
      return NO_ANSWER;
    case 8:
      if ((w.major_count == 1 && b.minor_points == 3) ||
          (b.major_count == 1 && w.minor_points == 3))
        return ENDGAME_ROOK_MINOR;
      return NO_ANSWER;
    case 9:
      if ((!w.pawns && w.queens) || (!b.pawns && b.queens)) return ENDGAME_QUEEN_PAWNS;
      return NO_ANSWER;
    case 10:
    case 20:
      if (w.rooks && b.rooks) return w.major_count == b.major_count ? ENDGAME_ROOKS : UNBALANCED;
      return NO_ANSWER;
    case 14:
      if ((w.queens && b.rooks) || (w.rooks && b.queens)) return ENDGAME_QUEEN_ROOK;
      return NO_ANSWER;
    case 18:
      if (w.queens && b.queens) return ENDGAME_QUEENS;
      return NO_ANSWER;
    default:
      return NO_ANSWER;
  }
}

// An ending with unequal pieces: without pawns, the side at least 5 points behind has no hope of
// its own, which is what the type of endings without pawns is about.
PositionType ClassifyUnbalanced(const Board& board) {
  const int d = SideWeight(board.white) - SideWeight(board.black);
  if (!board.white.pawns) return d < -4 ? ENDGAME_NO_PAWNS_LEFT : ENDGAME_OTHER;
  if (!board.black.pawns) return d >= 5 ? ENDGAME_NO_PAWNS_LEFT : ENDGAME_OTHER;
  return ENDGAME_OTHER;
}

}  // namespace

int MaterialWeight(const Board& board) {
  const bool queens = (board.white.queens | board.black.queens) != 0;
  return std::max(SideWeight(board.white), SideWeight(board.black)) + (queens ? 3 : 0);
}

PositionType ClassifyPosition(const Board& board, int previous_type) {
  if (!board.white.pawns && !board.black.pawns) return ENDGAME_NO_PAWNS_LEFT;
  if (MaterialWeight(board) > MANY_PIECES_WEIGHT) return ClassifyManyPieces(board, previous_type);

  PositionType type = board.total_piece_points < 21 ? ClassifyByTotal(board) : NO_ANSWER;
  if (type == UNBALANCED) return ClassifyUnbalanced(board);
  if (type != NO_ANSWER) return type;
  if (board.white.major_count == board.black.major_count &&
      board.white.minor_points == board.black.minor_points)
    return ENDGAME_EQUAL_PIECES;
  return ClassifyUnbalanced(board);
}
