// Castling, the moves of knights, bishops, rooks and queens, and king moves. Private to the move
// generator.
#pragma once

#include "chess/move_generation.h"

namespace MoveGeneration {

template <int US>
bool Generator<US>::CastlingPathAttacked(int square) const {
  // The pawn test is a single AND, so it goes before the full attack query.
  return (BoardTables.PawnAttacks[US][square] & enemy.pawns) != 0 ||
         board.IsAttacked(square, enemy);
}

template <int US>
void Generator<US>::Castling() {
  constexpr int HOME = S::KING_HOME;
  const int rights = board.Castling();
  const Bitboard enemy_king = SquareBit(ek);
  // After castling the rook stands next to the king's old square: it checks along the rank
  // through that (then empty) square, or along its new file.
  const Bitboard rank_from_home = board.RankAttacksFrom(HOME);
  // GEN_ALL_MOVES means every legal move, whatever the other bits say.
  const bool all_castling = Selects(GEN_CASTLING | GEN_ALL_MOVES);

  if ((rights & S::SHORT_RIGHT) != 0 &&
      (board.occupied & (SquareBit(HOME + 1) | SquareBit(HOME + 2))) == 0 &&
      !CastlingPathAttacked(HOME + 1) && !CastlingPathAttacked(HOME + 2)) {
    const bool check = ((rank_from_home | board.FileAttacksFrom(HOME + 1)) & enemy_king) != 0;
    if (all_castling || (check && Selects(GEN_DIRECT_CHECKS)))
      *out++ = check ? S::SHORT_CASTLE_CHECK : S::SHORT_CASTLE;
  }
  // The b-square only has to be empty: the king does not cross it.
  if ((rights & S::LONG_RIGHT) != 0 &&
      (board.occupied & (SquareBit(HOME - 1) | SquareBit(HOME - 2) | SquareBit(HOME - 3))) == 0 &&
      !CastlingPathAttacked(HOME - 1) && !CastlingPathAttacked(HOME - 2)) {
    const bool check = ((rank_from_home | board.FileAttacksFrom(HOME - 1)) & enemy_king) != 0;
    if (all_castling || (check && Selects(GEN_DIRECT_CHECKS)))
      *out++ = check ? S::LONG_CASTLE_CHECK : S::LONG_CASTLE;
  }
}

template <int US>
template <int TYPE>
Bitboard Generator<US>::AttacksOf(int square) const {
  if constexpr (TYPE == KNIGHT) return BoardTables.KnightAttacks[square];
  if constexpr (TYPE == BISHOP) return board.BishopAttacksFrom(square);
  if constexpr (TYPE == ROOK) return board.RookAttacksFrom(square);
  if constexpr (TYPE == QUEEN) return board.QueenAttacksFrom(square);
}

// The squares a piece may go to under the mask, given its direct-check and discovered-check
// squares.
template <int US>
template <int TYPE>
Bitboard Generator<US>::AllowedTargets(Bitboard direct, Bitboard discovered,
                                       bool is_discoverer) const {
  if (Selects(GEN_ALL_MOVES)) return targets;  // in check the mask has this bit too
  if constexpr (TYPE == KNIGHT) {
    // A discovering knight checks wherever it goes.
    if (is_discoverer && Selects(GEN_DOUBLE_CHECKS) && Selects(GEN_DISCOVERED_CHECKS))
      return ~Bitboard{0};
    if ((is_discoverer && Selects(GEN_DOUBLE_CHECKS)) || Selects(GEN_DIRECT_CHECKS))
      return targets | direct;
    return targets;
  } else {
    if (Selects(GEN_DISCOVERED_CHECKS))
      return targets | discovered | (Selects(GEN_DIRECT_CHECKS) ? direct : 0);
    if (Selects(GEN_DOUBLE_CHECKS)) return targets | (discovered & direct);
    return targets;
  }
}

template <int US>
template <int TYPE>
void Generator<US>::PieceMoves(Bitboard pieces) {
  Bitboard direct;
  if constexpr (TYPE == KNIGHT) direct = BoardTables.KnightAttacks[ek];
  if constexpr (TYPE == BISHOP) direct = bishop_from_ek;
  if constexpr (TYPE == ROOK) direct = rook_from_ek;
  if constexpr (TYPE == QUEEN) direct = bishop_from_ek | rook_from_ek;

  while (pieces != 0) {
    const int from = FindNextBit(pieces);
    const Bitboard from_bit = SquareBit(from);
    pieces ^= from_bit;

    Bitboard moves = AttacksOf<TYPE>(from) & ~own.all;
    if ((pinned & from_bit) != 0) {
      if constexpr (TYPE == KNIGHT) continue;
      // A pinned slider keeps to the line of its pin; a bishop pinned on a rank or file (or a
      // rook on a diagonal) has nothing in common with that line and so no move at all.
      moves &= board.LineAttacksFrom(from, BoardTables.Direction[k][from]);
    }
    const bool is_discoverer = (discoverers & from_bit) != 0;
    Bitboard discovered = 0;
    if (is_discoverer) {
      discovered = moves;
      if constexpr (TYPE != KNIGHT)
        discovered &= ~LineThrough(from, BoardTables.Direction[ek][from]);
    }
    moves &= AllowedTargets<TYPE>(direct, discovered, is_discoverer);

    // A local write pointer: the member would be reloaded after every store.
    Move* write = out;
    const Move base = MakeMoveWord(from, 0, TYPE);
    while (moves != 0) {
      const int to = FindNextBit(moves);
      moves ^= SquareBit(to);
      *write++ = base | Move(to) << 6 | Move(CapturedOn(to)) << 15 |
                 FlagIf(direct, to, DIRECT_CHECK_BIT) | FlagIf(discovered, to, DISCOVERED_CHECK_BIT);
    }
    out = write;
  }
}

template <int US>
void Generator<US>::KingMoves() {
  Bitboard moves = BoardTables.KingAttacks[k] & ~BoardTables.KingAttacks[ek] & ~own.all;
  // The king uncovers a check by stepping off the line between the enemy king and the slider
  // behind it.
  const Bitboard discovered =
      (discoverers & SquareBit(k)) != 0 ? moves & ~LineThrough(k, BoardTables.Direction[k][ek])
                                        : 0;
  if (!in_check) moves &= targets | (Selects(GEN_DISCOVERED_CHECKS) ? discovered : 0);
  moves &= ~behind_king;

  const Move base = MakeMoveWord(k, 0, KING);
  while (moves != 0) {
    const int to = FindNextBit(moves);
    moves ^= SquareBit(to);
    if ((BoardTables.PawnAttacks[US][to] & enemy.pawns) != 0 || board.IsAttacked(to, enemy))
      continue;
    *out++ = base | Move(to) << 6 | Move(CapturedOn(to)) << 15 |
             FlagIf(discovered, to, DISCOVERED_CHECK_BIT);
  }
}

}  // namespace MoveGeneration
