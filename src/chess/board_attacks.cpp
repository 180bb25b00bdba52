// The attack queries of the board: who attacks a square, pins, and sliders behind a square.
#include "chess/board.h"

Bitboard Board::LineAttacksFrom(int square, int direction) const {
  switch (direction) {
    case WEST:
    case EAST:
      return RankAttacksFrom(square);
    case NORTH:
    case SOUTH:
      return FileAttacksFrom(square);
    case NORTH_WEST:
    case SOUTH_EAST:
      return H1A8AttacksFrom(square);
    case NORTH_EAST:
    case SOUTH_WEST:
      return A1H8AttacksFrom(square);
    default:
      return 0;
  }
}

Bitboard Board::AttackersTo(int square) const {
  const auto& t = BoardTables;
  Bitboard kings = SquareBit(int(white.king_square)) | SquareBit(int(black.king_square));
  return (t.PawnAttacks[BLACK][square] & white.pawns) | (t.PawnAttacks[WHITE][square] & black.pawns) |
         (t.KnightAttacks[square] & (white.knights | black.knights)) |
         (t.KingAttacks[square] & kings) |
         (BishopAttacksFrom(square) &
          (white.bishops | white.queens | black.bishops | black.queens)) |
         (RookAttacksFrom(square) & (white.rooks | white.queens | black.rooks | black.queens));
}

bool Board::IsAttacked(int square, const PieceSet& attacker) const {
  const auto& t = BoardTables;
  return (t.KnightAttacks[square] & attacker.knights) ||
         (t.KingAttacks[square] & SquareBit(int(attacker.king_square))) ||
         (BishopAttacksFrom(square) & (attacker.bishops | attacker.queens)) ||
         (RookAttacksFrom(square) & (attacker.rooks | attacker.queens));
}

// A candidate is pinned when the line from `square` through it continues to a slider of the
// line's kind: seen from the candidate, the line attack then reaches that slider.
Bitboard Board::FindPinned(Bitboard candidates, const PieceSet& slider_side, int square,
                           Bitboard slider_mask) const {
  const Bitboard sliders = (slider_side.bishops | slider_side.rooks | slider_side.queens) & slider_mask;
  if (!sliders) return 0;
  const Bitboard diagonal_sliders = (slider_side.bishops | slider_side.queens) & slider_mask;
  const Bitboard straight_sliders = (slider_side.rooks | slider_side.queens) & slider_mask;
  Bitboard pinned = 0;
  while (candidates) {
    const int candidate = FindNextBit(candidates);
    candidates ^= SquareBit(candidate);
    const int direction = BoardTables.Direction[square][candidate];
    const Bitboard line_sliders =
        IsDiagonalDirection(direction) ? diagonal_sliders : straight_sliders;
    if (LineAttacksFrom(candidate, direction) & line_sliders) pinned |= SquareBit(candidate);
  }
  return pinned;
}

Bitboard Board::FindPinnedOf(int square, Bitboard mask, const PieceSet& slider_side,
                             Bitboard slider_mask) const {
  return FindPinned(QueenAttacksFrom(square) & mask, slider_side, square, slider_mask);
}

bool Board::IsPinnedTo(int square, int king, const PieceSet& slider_side) const {
  const int direction = BoardTables.Direction[square][king];
  if (direction == 0) return false;
  const Bitboard attacks = LineAttacksFrom(square, direction);
  return (attacks & SquareBit(king)) && (attacks & slider_side.Sliders(direction));
}

// Rays of increasing square numbers meet their nearest piece at the lowest bit, the others at the
// highest.
Bitboard Board::SliderBehind(int square, int direction) const {
  if (direction < 1 || direction > 8) return 0;
  const Bitboard blockers = BoardTables.Ray[direction - 1][square] & occupied;
  if (!blockers) return 0;
  const int nearest = DirectionDelta[direction] > 0 ? FindLowestBit(blockers) : FindHighestBit(blockers);
  const int piece = squares[nearest];
  const int type = piece > 0 ? piece : -piece;
  const bool moves_along = type == QUEEN || (type == BISHOP && IsDiagonalDirection(direction)) ||
                           (type == ROOK && IsRankOrFileDirection(direction));
  return moves_along ? SquareBit(nearest) : 0;
}

bool Board::IsQueenAttackedByLesser() const {
  const PieceSet& own = Own();
  const PieceSet& enemy = Enemy();
  Bitboard queens = own.queens;
  while (queens) {
    const int queen = FindNextBit(queens);
    queens ^= SquareBit(queen);
    if ((BoardTables.PawnAttacks[side_on_move][queen] & enemy.pawns) ||
        (BoardTables.KnightAttacks[queen] & enemy.knights) ||
        (BishopAttacksFrom(queen) & enemy.bishops) || (RookAttacksFrom(queen) & enemy.rooks))
      return true;
  }
  return false;
}
