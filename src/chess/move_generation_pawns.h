// Pawn moves, taken in bulk by shifting whole sets of pawns: pushes, double steps, the captures of
// each direction, en passant, and the promotions they lead to. Private to the move generator.
#pragma once

#include "chess/move_generation.h"

namespace MoveGeneration {

// Not in check and without GEN_ALL_MOVES, a pawn move is written only for a promotion or for a
// check that the mask asks for.
template <int US>
Bitboard Generator<US>::AllowedPawnTargets(Bitboard direct, Bitboard discovered) const {
  if (Selects(GEN_ALL_MOVES)) return in_check ? targets : ~Bitboard{0};
  Bitboard allowed = Selects(PROMOTION_BITS) ? S::LAST_RANK : 0;
  if (Selects(GEN_DISCOVERED_CHECKS))
    allowed |= discovered | (Selects(GEN_DIRECT_CHECKS) ? direct : 0);
  else if (Selects(GEN_DOUBLE_CHECKS))
    allowed |= discovered & direct;
  return allowed;
}

template <int US>
void Generator<US>::PawnPushes() {
  // A pinned pawn may only push along its pin, which is then the king's file.
  const Bitboard pawns = own.pawns & ~(pinned & ~FileMask(File(k)));
  const Bitboard empty = ~board.occupied;
  Bitboard single = Forward<US>(pawns) & empty;
  Bitboard twice = Forward<US>(single & S::THIRD_RANK) & empty;

  // A discovering pawn off the enemy king's file leaves the line with every push. Each shift is
  // matched against its own kind of push: the square two ahead of a discovering pawn may be the
  // single-push target of another pawn, whose move discovers nothing.
  const Bitboard leaving = discoverers & own.pawns & ~FileMask(File(ek));
  const Bitboard discovered = (Forward<US>(leaving) & single) |
                              (Forward<US>(Forward<US>(leaving)) & twice);
  const Bitboard direct = BoardTables.PawnAttacks[S::THEM][ek];
  const Bitboard allowed = AllowedPawnTargets(direct, discovered);
  single &= allowed;
  twice &= allowed;

  while (single != 0) {
    const int to = FindNextBit(single);
    single ^= SquareBit(to);
    const int from = to - S::PUSH;
    const Move base = MakeMoveWord(from, to, PAWN) | FlagIf(discovered, to, DISCOVERED_CHECK_BIT);
    if ((S::LAST_RANK & SquareBit(to)) != 0)
      Promotions(from, to, base, mask);
    else
      *out++ = base | FlagIf(direct, to, DIRECT_CHECK_BIT);
  }
  while (twice != 0) {
    const int to = FindNextBit(twice);
    twice ^= SquareBit(to);
    *out++ = MakeMoveWord(to - 2 * S::PUSH, to, PAWN) | FlagIf(direct, to, DIRECT_CHECK_BIT) |
             FlagIf(discovered, to, DISCOVERED_CHECK_BIT);
  }
}

template <int US>
template <int DIRECTION>
void Generator<US>::PawnCaptures() {
  // A pinned pawn may only capture along its pin: the king's diagonal of this direction's kind.
  const Bitboard pin_line = LineThrough(k, DIRECTION);
  const Bitboard pawns = own.pawns & ~(pinned & ~pin_line);
  // A discovering pawn leaves its line unless it captures along the enemy king's diagonal.
  const Bitboard leaving = discoverers & own.pawns & ~LineThrough(ek, DIRECTION);
  const Bitboard discovered = Shift<DIRECTION>(leaving);
  const Bitboard direct = BoardTables.PawnAttacks[S::THEM][ek];
  const Bitboard allowed = Selects(GEN_CAPTURES | GEN_ALL_MOVES) && !in_check
                               ? ~Bitboard{0}
                               : AllowedPawnTargets(direct, discovered);
  Bitboard captures = Shift<DIRECTION>(pawns) & enemy.all & allowed;

  constexpr int delta = DirectionDelta[DIRECTION];
  while (captures != 0) {
    const int to = FindNextBit(captures);
    captures ^= SquareBit(to);
    const int from = to - delta;
    const Move base = MakeMoveWord(from, to, PAWN, CapturedOn(to)) |
                      FlagIf(discovered, to, DISCOVERED_CHECK_BIT);
    if ((S::LAST_RANK & SquareBit(to)) != 0)
      Promotions(from, to, base, mask | GEN_QUEEN_PROMOTIONS);
    else
      *out++ = base | FlagIf(direct, to, DIRECT_CHECK_BIT);
  }
}

// Both pawns of an en-passant capture leave the rank at once, which no pin test sees: the rank
// opens between the king and a rook or queen if the nearer pawn sees the king and the farther one
// sees such a slider.
template <int US>
bool Generator<US>::TwoPawnsUncoverRank(int from, int cap, int king,
                                        const PieceSet& slider_side) const {
  const bool from_is_nearer =
      BoardTables.ManhattanDistance[from][king] < BoardTables.ManhattanDistance[cap][king];
  const int nearer = from_is_nearer ? from : cap;
  const int farther = from_is_nearer ? cap : from;
  return (board.RankAttacksFrom(nearer) & SquareBit(king)) != 0 &&
         (board.RankAttacksFrom(farther) & (slider_side.rooks | slider_side.queens)) != 0;
}

template <int US>
void Generator<US>::EnPassant() {
  const int e = board.EnPassant();
  if (e == 0) return;
  Bitboard capturers = BoardTables.PawnAttacks[S::THEM][e] & own.pawns;
  if (capturers == 0) return;
  const int cap = e - S::PUSH;
  const Bitboard cap_bit = SquareBit(cap);

  // In check only the capture of the checking pawn helps: the last move was that pawn's double
  // step, so no other check can be blocked on the square it jumped over.
  if (in_check && checker != cap_bit) return;
  // Off the king's file, the captured pawn may be the only thing between the king and a slider.
  // On that file the capturing pawn takes its place on the line.
  if (File(cap) != File(k) && board.IsPinnedTo(cap, k, enemy)) return;
  const bool uncovers_through_cap = File(cap) != File(ek) && board.IsPinnedTo(cap, ek, own);

  while (capturers != 0) {
    const int from = FindNextBit(capturers);
    capturers ^= SquareBit(from);
    const int to_king = BoardTables.Direction[from][k];
    if (to_king != 0) {
      if (Rank(cap) == Rank(k) && TwoPawnsUncoverRank(from, cap, k, enemy)) continue;
      const int step = BoardTables.Direction[from][e];
      if (step != to_king && step != BoardTables.Direction[k][from] &&
          board.IsPinnedTo(from, k, enemy))
        continue;
    }
    const bool direct = (BoardTables.PawnAttacks[US][e] & SquareBit(ek)) != 0;
    bool discovered = uncovers_through_cap;
    if (!discovered && Rank(from) == Rank(ek))
      discovered = TwoPawnsUncoverRank(from, cap, ek, own);
    if (!discovered && (discoverers & SquareBit(from)) != 0) {
      const int line = BoardTables.Direction[ek][from];
      const int step = BoardTables.Direction[from][e];
      discovered = step != line && step != OppositeDirection[line];
    }
    if (!Selects(GEN_CAPTURES | GEN_ALL_MOVES)) {
      const int needed = direct && discovered ? GEN_DOUBLE_CHECKS
                         : direct             ? GEN_DIRECT_CHECKS
                         : discovered         ? GEN_DISCOVERED_CHECKS
                                              : 0;
      if (!Selects(needed)) continue;
    }
    *out++ = MakeMoveWord(from, e, PAWN, PAWN) | (direct ? DIRECT_CHECK_BIT : 0) |
             (discovered ? DISCOVERED_CHECK_BIT : 0);
  }
}

// Writes the promotions of one pawn move, queen, rook, bishop, knight. The mask decides which
// pieces; each gets the direct-check bit if it attacks the enemy king from the new square.
template <int US>
void Generator<US>::Promotions(int from, int to, Move base, int promotion_mask) {
  // The new piece may check through the square the pawn has just left, if the line from the king
  // runs on through it to the new square; otherwise the present attacks tell.
  const Bitboard queen_from_ek = bishop_from_ek | rook_from_ek;
  int line_square = -1;
  if ((queen_from_ek & SquareBit(to)) != 0)
    line_square = to;
  else if ((queen_from_ek & SquareBit(from)) != 0 &&
           BoardTables.Direction[ek][from] == BoardTables.Direction[from][to])
    line_square = from;

  bool checks[KING] = {};  // indexed by promotion type
  if (line_square >= 0) {
    checks[QUEEN] = true;
    checks[ROOK] = (rook_from_ek & SquareBit(line_square)) != 0;
    checks[BISHOP] = (bishop_from_ek & SquareBit(line_square)) != 0;
  } else {
    checks[KNIGHT] = (BoardTables.KnightAttacks[ek] & SquareBit(to)) != 0;
  }

  const bool every_piece = (promotion_mask & (GEN_ALL_MOVES | GEN_UNDERPROMOTIONS)) != 0;
  const bool queen = (promotion_mask & GEN_QUEEN_PROMOTIONS) != 0;
  const bool checking = (promotion_mask & GEN_DIRECT_CHECKS) != 0 ||
                        ((promotion_mask & GEN_DOUBLE_CHECKS) != 0 &&
                         (base & DISCOVERED_CHECK_BIT) != 0);
  for (int piece = QUEEN; piece >= KNIGHT; --piece) {
    if (every_piece || (piece == QUEEN && queen) || (checking && checks[piece]))
      *out++ = base | Move(piece) << 18 | (checks[piece] ? DIRECT_CHECK_BIT : 0);
  }
}

}  // namespace MoveGeneration
