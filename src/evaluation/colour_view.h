// The terms of one colour are written once, as White sees the board. A view turns squares and
// sets of the board into that frame and back (for Black the ranks are mirrored; mirroring twice
// gives the square back, so one function serves both ways) and hands out the colour's units.
#pragma once

#include <initializer_list>

#include "chess/basic.h"
#include "chess/bitboard.h"
#include "chess/board.h"
#include "evaluation/evaluation_state.h"

// The set with its ranks mirrored: the eight bytes of the word in reverse order, swapped in
// pairs, then pairs of pairs, then halves.
constexpr Bitboard MirrorRanksOfSet(Bitboard set) {
  set = ((set >> 8) & 0x00FF00FF00FF00FFULL) | ((set & 0x00FF00FF00FF00FFULL) << 8);
  set = ((set >> 16) & 0x0000FFFF0000FFFFULL) | ((set & 0x0000FFFF0000FFFFULL) << 16);
  return (set >> 32) | (set << 32);
}

constexpr Bitboard SquareSet(std::initializer_list<int> squares) {
  Bitboard set = 0;
  for (int square : squares) set |= SquareBit(square);
  return set;
}

// Takes the highest square out of the set and gives it: every walk over pieces goes from the
// highest square down.
inline int PopHighest(Bitboard& set) {
  const int square = FindHighestBit(set);
  set ^= SquareBit(square);
  return square;
}

// The whole files that hold a square of the set: folding the ranks onto the first gathers the
// files in one byte, and multiplying that byte by the a-file copies it to every rank.
constexpr Bitboard OccupiedFiles(Bitboard set) {
  set |= set >> 32;
  set |= set >> 16;
  set |= set >> 8;
  return (set & RANK_1) * FILE_A;
}

// The castling rights that a colour still holds on the board.
inline int CastlingRightsOf(const Board& board, int colour) {
  return board.Castling() & (colour == WHITE ? WHITE_SHORT | WHITE_LONG : BLACK_SHORT | BLACK_LONG);
}

struct ColourView {
  ColourView(EvaluationState& evaluation, const Board& board, int colour)
      : colour(colour),
        enemy(colour ^ 1),
        own(board.Pieces(colour)),
        other(board.Pieces(colour ^ 1)),
        units(evaluation.zone_units[colour]),
        enemy_units(evaluation.zone_units[colour ^ 1]) {}

  // A square of White's frame on the board, or a square of the board in White's frame.
  int Square(int square) const { return colour == WHITE ? square : square ^ 56; }
  Bitboard Set(Bitboard set) const { return colour == WHITE ? set : MirrorRanksOfSet(set); }
  // The rank counted from the colour's own side: 0 is its first rank.
  int RankOf(int square) const { return Rank(Square(square)); }
  // One rank further from the own side.
  int Ahead(int square) const { return colour == WHITE ? square + 8 : square - 8; }
  int Behind(int square) const { return colour == WHITE ? square - 8 : square + 8; }
  bool Holds(Bitboard set, int white_square) const {
    return (set & SquareBit(Square(white_square))) != 0;
  }
  // For White the value, for Black its negation: endgame_trend counts from White's view.
  int Signed(int value) const { return colour == WHITE ? value : -value; }
  int CastlingRights(const Board& board) const { return CastlingRightsOf(board, colour); }

  int colour;
  int enemy;
  const PieceSet& own;
  const PieceSet& other;
  ZoneUnits* units;
  ZoneUnits* enemy_units;
};
