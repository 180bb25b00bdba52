// Tests of single move words: whether a word taken from a hash table may be played here, with the
// exact check bits the generator would have given it.
#include <vector>

#include "chess/board.h"
#include "chess/move_generator.h"
#include "shell/checked_assert.h"

namespace {
constexpr Move UNUSED_BITS = ~((Move{1} << 23) - 1);

struct CastlingRule {
  Move plain, checking;
  int right, rook_from;
  Bitboard empty, safe;  // squares that must be empty, and the king's path that must be safe
};

constexpr CastlingRule CastlingRules[4] = {
    {WHITE_SHORT_CASTLE, WHITE_SHORT_CASTLE_CHECK, WHITE_SHORT, H1,
     SquareBit(F1) | SquareBit(G1), SquareBit(F1) | SquareBit(G1)},
    {WHITE_LONG_CASTLE, WHITE_LONG_CASTLE_CHECK, WHITE_LONG, A1,
     SquareBit(B1) | SquareBit(C1) | SquareBit(D1), SquareBit(C1) | SquareBit(D1)},
    {BLACK_SHORT_CASTLE, BLACK_SHORT_CASTLE_CHECK, BLACK_SHORT, H8,
     SquareBit(F8) | SquareBit(G8), SquareBit(F8) | SquareBit(G8)},
    {BLACK_LONG_CASTLE, BLACK_LONG_CASTLE_CHECK, BLACK_LONG, A8,
     SquareBit(B8) | SquareBit(C8) | SquareBit(D8), SquareBit(C8) | SquareBit(D8)},
};
}  // namespace

bool Board::IsMovePseudoLegal(Move move) const {
  CHECKED_ASSERT(move != INVALID, "IsMovePseudoLegal: move == INVALID test is necessary!");
  const int from = From(move), to = To(move), type = MovedType(move);
  const int captured = CapturedType(move), promoted = PromotionType(move);
  const int side = int(side_on_move);
  const int sign = side == WHITE ? 1 : -1;

  if (move & UNUSED_BITS) return false;
  if (type < PAWN || type > KING || captured == KING || captured == 7) return false;
  if (squares[from] != sign * type) return false;
  const bool to_last_rank = Rank(to) == (side == WHITE ? 7 : 0);
  if (type == PAWN ? (to_last_rank != (promoted != 0)) : promoted != 0) return false;
  if (promoted == PAWN || promoted > QUEEN) return false;

  if (type == PAWN) {
    const int forward = side == WHITE ? 8 : -8;
    if (to == from + forward) {
      if (captured || squares[to] != NO_PIECE) return false;
    } else if (to == from + 2 * forward) {
      if (captured || Rank(from) != (side == WHITE ? 1 : 6)) return false;
      if (squares[to] != NO_PIECE || squares[from + forward] != NO_PIECE) return false;
    } else {
      if (!(BoardTables.PawnAttacks[side][from] & SquareBit(to)) || !captured) return false;
      if (captured == PAWN && to == EnPassant() && EnPassant() != 0) return IsEnPassantLegal(move);
      if (squares[to] != -sign * captured) return false;
    }
  } else if (type == KING && (to - from == 2 || from - to == 2)) {
    return IsCastlingPseudoLegal(move);
  } else {
    if (squares[to] != (captured ? -sign * captured : NO_PIECE)) return false;
    const Bitboard reach = type == KNIGHT ? BoardTables.KnightAttacks[from]
                           : type == KING ? BoardTables.KingAttacks[from]
                           : type == BISHOP ? BoardTables.BishopRays[from]
                           : type == ROOK   ? BoardTables.RookRays[from]
                                            : BoardTables.QueenRays[from];
    if (!(reach & SquareBit(to)) || from == to) return false;
    if (type >= BISHOP && type <= QUEEN && (BoardTables.Between[from][to] & occupied)) return false;
  }
  return GivesDirectCheck(move) == GivesDirectCheckFromHere(move) &&
         GivesDiscoveredCheck(move) == GivesDiscoveredCheckFromHere(move);
}

// Castling words are checked in full, right and path included: a word from a hash table may come
// from a position where castling was allowed.
bool Board::IsCastlingPseudoLegal(Move move) const {
  for (const CastlingRule& rule : CastlingRules) {
    if ((move & ~DIRECT_CHECK_BIT) != rule.plain) continue;
    if (!(Castling() & rule.right) || InCheck()) return false;
    if (occupied & rule.empty) return false;
    Bitboard path = rule.safe;
    while (path) {
      const int square = FindNextBit(path);
      path ^= SquareBit(square);
      if ((BoardTables.PawnAttacks[side_on_move][square] & Enemy().pawns) ||
          IsAttacked(square, Enemy()))
        return false;
    }
    return GivesDirectCheck(move) == GivesDirectCheckFromHere(move) &&
           !GivesDiscoveredCheck(move);
  }
  return false;
}

bool Board::GivesDirectCheckFromHere(Move move) const {
  const int from = From(move), to = To(move), type = MovedType(move);
  const int enemy_king = int(Enemy().king_square);
  if (type == KING) {
    if (to - from != 2 && from - to != 2) return false;
    // The rook lands beside the king's start square and sees along the rank the king has left.
    const int rook_to = to > from ? from + 1 : from - 1;
    return (RankAttacksFrom(from) | FileAttacksFrom(rook_to)) & SquareBit(enemy_king);
  }
  const int checker = PromotionType(move) ? PromotionType(move) : type;
  Bitboard attacks;
  switch (checker) {
    case PAWN: attacks = BoardTables.PawnAttacks[side_on_move ^ 1][enemy_king]; break;
    case KNIGHT: attacks = BoardTables.KnightAttacks[enemy_king]; break;
    case BISHOP: attacks = BishopAttacksFrom(enemy_king); break;
    case ROOK: attacks = RookAttacksFrom(enemy_king); break;
    default: attacks = QueenAttacksFrom(enemy_king); break;
  }
  if (attacks & SquareBit(to)) return true;
  // A promoting pawn no longer blocks the line from the king through its old square.
  return PromotionType(move) && (attacks & SquareBit(from)) &&
         BoardTables.Direction[enemy_king][from] == BoardTables.Direction[from][to];
}

bool Board::GivesDiscoveredCheckFromHere(Move move) const {
  const int from = From(move), to = To(move);
  const int enemy_king = int(Enemy().king_square);
  const int direction = BoardTables.Direction[enemy_king][from];
  if (direction == 0 || direction == BoardTables.Direction[enemy_king][to]) return false;
  const Bitboard attacks = LineAttacksFrom(from, direction);
  return (attacks & SquareBit(enemy_king)) && (attacks & Own().Sliders(direction));
}

// Both pawns of an en-passant capture leave the rank at once, which no pin test sees: the king is
// exposed when the nearer pawn sees the king and the farther one sees an enemy rook or queen.
bool Board::TwoPawnsOnRankExpose(int from, int cap, int king, const PieceSet& slider_side) const {
  const auto& distance = BoardTables.ManhattanDistance[king];
  const bool from_nearer = distance[from] < distance[cap];
  const int nearer = from_nearer ? from : cap, farther = from_nearer ? cap : from;
  return (RankAttacksFrom(nearer) & SquareBit(king)) &&
         (RankAttacksFrom(farther) & (slider_side.rooks | slider_side.queens));
}

bool Board::IsEnPassantLegal(Move move) const {
  const int from = From(move), to = To(move);
  const int side = int(side_on_move);
  const int cap = side == WHITE ? to - 8 : to + 8;
  const int king = int(Own().king_square), enemy_king = int(Enemy().king_square);
  const auto& direction = BoardTables.Direction;

  // In check, only the checking pawn itself may be taken, and it must be the only checker.
  if (InCheck() && (AttackersTo(king) & Enemy().all) != SquareBit(cap)) return false;
  if (File(cap) != File(king) && IsPinnedTo(cap, king, Enemy())) return false;
  if (direction[from][king] != 0) {
    if (Rank(cap) == Rank(king) && TwoPawnsOnRankExpose(from, cap, king, Enemy())) return false;
    if (direction[from][to] != direction[from][king] && direction[from][to] != direction[king][from] &&
        IsPinnedTo(from, king, Enemy()))
      return false;
  }

  const bool direct = BoardTables.PawnAttacks[side][to] & SquareBit(enemy_king);
  if (direct != GivesDirectCheck(move)) return false;
  bool discovered;
  if (File(cap) != File(enemy_king) && IsPinnedTo(cap, enemy_king, Own())) {
    discovered = true;
  } else if (Rank(from) == Rank(enemy_king)) {
    discovered = TwoPawnsOnRankExpose(from, cap, enemy_king, Own());
  } else {
    const int line = direction[from][enemy_king];
    discovered = line != 0 && line != direction[from][to] && line != OppositeDirection[direction[from][to]] &&
                 IsPinnedTo(from, enemy_king, Own());
  }
  return discovered == GivesDiscoveredCheck(move);
}

bool Board::VerifyMove(Move move) const {
  Move buffer[MOVE_BUFFER_SIZE];
  buffer[MAX_MOVES] = INVALID;
  const Move* end = GenerateMoves(buffer, *this, GEN_EVERY_MOVE);
  for (const Move* m = buffer; m != end; ++m)
    if (*m == move) return true;
  return false;
}

bool Board::LeavesKingInCheck(Move move) const {
  Board copy(*this);
  copy.MakeMove(move);
  return copy.IsOpponentInCheck();
}
