// The state of one call of the move generator: the colour's constants, what is worked out once
// before any move is written (pins, discovering pieces, check squares, evasion targets), and the
// order in which the kinds of moves are written. Private to the generator; the moves of the
// pieces and of the pawns live in move_generation_pieces.h and move_generation_pawns.h.
#pragma once

#include "chess/board.h"
#include "chess/move_generator.h"

namespace MoveGeneration {

// The colour-dependent constants, so that each colour gets its own code with the shifts as
// immediates rather than a run-time parameter.
template <int US>
struct Side;

template <>
struct Side<WHITE> {
  static constexpr int THEM = BLACK;
  static constexpr int PUSH = 8;  // square delta of a single step
  static constexpr Bitboard THIRD_RANK = RankMask(2);
  static constexpr Bitboard LAST_RANK = RankMask(7);
  static constexpr int KING_HOME = E1;
  static constexpr int SHORT_RIGHT = WHITE_SHORT;
  static constexpr int LONG_RIGHT = WHITE_LONG;
  static constexpr Move SHORT_CASTLE = WHITE_SHORT_CASTLE;
  static constexpr Move SHORT_CASTLE_CHECK = WHITE_SHORT_CASTLE_CHECK;
  static constexpr Move LONG_CASTLE = WHITE_LONG_CASTLE;
  static constexpr Move LONG_CASTLE_CHECK = WHITE_LONG_CASTLE_CHECK;
  // The two capture directions in the order of generation: towards the a-file first.
  static constexpr int CAPTURE_DIRECTION[2] = {NORTH_WEST, NORTH_EAST};
  // A mailbox holds Black's pieces negated; this sign turns an enemy code into its type.
  static constexpr int ENEMY_SIGN = -1;
};

template <>
struct Side<BLACK> {
  static constexpr int THEM = WHITE;
  static constexpr int PUSH = -8;
  static constexpr Bitboard THIRD_RANK = RankMask(5);
  static constexpr Bitboard LAST_RANK = RankMask(0);
  static constexpr int KING_HOME = E8;
  static constexpr int SHORT_RIGHT = BLACK_SHORT;
  static constexpr int LONG_RIGHT = BLACK_LONG;
  static constexpr Move SHORT_CASTLE = BLACK_SHORT_CASTLE;
  static constexpr Move SHORT_CASTLE_CHECK = BLACK_SHORT_CASTLE_CHECK;
  static constexpr Move LONG_CASTLE = BLACK_LONG_CASTLE;
  static constexpr Move LONG_CASTLE_CHECK = BLACK_LONG_CASTLE_CHECK;
  static constexpr int CAPTURE_DIRECTION[2] = {SOUTH_WEST, SOUTH_EAST};
  static constexpr int ENEMY_SIGN = 1;
};

// The mask bits under which each kind of pawn move is looked at, at all.
constexpr int PUSH_BITS = GEN_ALL_MOVES | GEN_UNDERPROMOTIONS | GEN_QUEEN_PROMOTIONS | GEN_ALL_CHECKS;
constexpr int CAPTURE_BITS = GEN_ALL_MOVES | GEN_QUEEN_PROMOTIONS | GEN_ALL_CHECKS | GEN_CAPTURES;
// The bits that let a pawn move reach the last rank when the mask selects.
constexpr int PROMOTION_BITS = GEN_UNDERPROMOTIONS | GEN_QUEEN_PROMOTIONS | GEN_ALL_CHECKS;

// Shifts a whole set of squares one step in a direction; squares that would wrap around the
// board's edge are dropped first.
template <int DIRECTION>
constexpr Bitboard Shift(Bitboard squares) {
  constexpr Bitboard NOT_FILE_A = ~FileMask(0);
  constexpr Bitboard NOT_FILE_H = ~FileMask(7);
  if constexpr (DIRECTION == NORTH) return squares << 8;
  if constexpr (DIRECTION == SOUTH) return squares >> 8;
  if constexpr (DIRECTION == NORTH_WEST) return (squares & NOT_FILE_A) << 7;
  if constexpr (DIRECTION == NORTH_EAST) return (squares & NOT_FILE_H) << 9;
  if constexpr (DIRECTION == SOUTH_WEST) return (squares & NOT_FILE_A) >> 9;
  if constexpr (DIRECTION == SOUTH_EAST) return (squares & NOT_FILE_H) >> 7;
}

template <int US>
constexpr Bitboard Forward(Bitboard squares) {
  return Shift<US == WHITE ? NORTH : SOUTH>(squares);
}

// Every square of the whole line (both ways) through a square, the square itself excluded.
inline Bitboard LineThrough(int square, int direction) {
  return BoardTables.Ray[direction - 1][square] |
         BoardTables.Ray[OppositeDirection[direction] - 1][square];
}

// The flag if the square is in the set, else 0: the check bits of a word without a branch (the
// flags are single bits, so the product is a shift).
inline Move FlagIf(Bitboard squares, int square, Move flag) {
  return Move((squares >> square) & 1) * flag;
}

template <int US>
class Generator {
 public:
  Generator(const Board& board, int mask, Move* out);
  Move* Run();

 private:
  using S = Side<US>;

  // Pieces (move_generation_pieces.h).
  void Castling();
  bool CastlingPathAttacked(int square) const;
  template <int TYPE>
  void PieceMoves(Bitboard pieces);
  template <int TYPE>
  Bitboard AttacksOf(int square) const;
  template <int TYPE>
  Bitboard AllowedTargets(Bitboard direct, Bitboard discovered, bool is_discoverer) const;
  void KingMoves();

  // Pawns (move_generation_pawns.h).
  Bitboard AllowedPawnTargets(Bitboard direct, Bitboard discovered) const;
  void PawnPushes();
  template <int DIRECTION>
  void PawnCaptures();
  void EnPassant();
  void Promotions(int from, int to, Move base, int mask);

  void PrepareEvasions();
  bool Selects(int bits) const { return (mask & bits) != 0; }
  // The type of the piece on a target square; targets never hold own pieces.
  int CapturedOn(int square) const { return S::ENEMY_SIGN * board.squares[square]; }

  const Board& board;
  const PieceSet& own;
  const PieceSet& enemy;
  int mask;
  Move* out;
  int k;   // own king
  int ek;  // enemy king
  bool in_check;
  bool double_check = false;
  Bitboard behind_king = 0;         // next to the king on a checking slider's line, beyond it
  Bitboard checker = 0;             // the (highest) checking piece
  Bitboard bishop_from_ek;          // a bishop (or queen) moving here gives direct check
  Bitboard rook_from_ek;            // a rook (or queen) moving here gives direct check
  Bitboard discoverers;             // own pieces whose departure can uncover the enemy king
  Bitboard pinned = 0;              // own pieces pinned to the own king
  Bitboard targets;                 // squares the pieces may go to, by mask or by the check
};

template <int US>
Generator<US>::Generator(const Board& board_, int mask_, Move* out_)
    : board(board_),
      own(board_.Pieces(US)),
      enemy(board_.Pieces(S::THEM)),
      mask(mask_),
      out(out_),
      k(int(own.king_square)),
      ek(int(enemy.king_square)),
      in_check(board_.InCheck()),
      bishop_from_ek(board_.BishopAttacksFrom(ek)),
      rook_from_ek(board_.RookAttacksFrom(ek)) {
  // Only sliders that stand on a line with the king can pin or discover; passing just those lets
  // the pin search give up at once in the many positions where there are none.
  const Bitboard own_sliders = ((own.bishops | own.queens) & BoardTables.BishopRays[ek]) |
                               ((own.rooks | own.queens) & BoardTables.RookRays[ek]);
  discoverers = board.FindPinned((bishop_from_ek | rook_from_ek) & own.all, own, ek, own_sliders);

  if (in_check) {
    // An evasion must deal with every check, whatever was asked for.
    mask = GEN_EVERY_MOVE;
    PrepareEvasions();
  } else {
    targets = Selects(GEN_ALL_MOVES) ? ~own.all : Selects(GEN_CAPTURES) ? enemy.all : 0;
  }
  if (double_check) return;  // only the king moves: pins do not matter
  const Bitboard enemy_sliders = ((enemy.bishops | enemy.queens) & BoardTables.BishopRays[k]) |
                                 ((enemy.rooks | enemy.queens) & BoardTables.RookRays[k]);
  pinned = board.FindPinned(board.QueenAttacksFrom(k) & own.all, enemy, k, enemy_sliders);
}

// A single check is met by taking the checker or, for a slider, by blocking its line (Between is
// empty for a knight, a pawn, and any checker next to the king). Against more checks only the
// king can move. A position read from a file may have three checkers, so all are looked at.
template <int US>
void Generator<US>::PrepareEvasions() {
  const Bitboard attackers = board.AttackersTo(k) & enemy.all;
  const int first = FindNextBit(attackers);
  checker = SquareBit(first);
  double_check = attackers != checker;
  targets = double_check ? 0 : checker | BoardTables.Between[first][k];
  // The king still stands on k and hides the square behind it from a checking slider; a pawn's
  // diagonal ends at the king, so the king may step on along it.
  Bitboard sliders = attackers & (enemy.bishops | enemy.rooks | enemy.queens);
  while (sliders != 0) {
    const int slider = FindNextBit(sliders);
    sliders ^= SquareBit(slider);
    const int direction = BoardTables.Direction[slider][k];
    behind_king |= BoardTables.Ray[direction - 1][k] & BoardTables.KingAttacks[k];
  }
}

template <int US>
Move* Generator<US>::Run() {
  if (!in_check) Castling();
  if (!double_check) {
    PieceMoves<KNIGHT>(own.knights);
    PieceMoves<BISHOP>(own.bishops);
    PieceMoves<ROOK>(own.rooks);
    PieceMoves<QUEEN>(own.queens);
    if (Selects(PUSH_BITS)) PawnPushes();
    if (Selects(CAPTURE_BITS)) {
      PawnCaptures<S::CAPTURE_DIRECTION[0]>();
      PawnCaptures<S::CAPTURE_DIRECTION[1]>();
    }
    EnPassant();
  }
  KingMoves();
  return out;
}

}  // namespace MoveGeneration
