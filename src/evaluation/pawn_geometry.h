// Whole-board shifts seen from one colour's side, so that every pawn rule is written once and
// read for Black as its mirror image.
#pragma once

#include "chess/basic.h"
#include "chess/bitboard.h"

constexpr Bitboard FILE_H = FILE_A << 7;
constexpr Bitboard CENTRE_FILES = FileMask(2) | FileMask(3) | FileMask(4) | FileMask(5);
constexpr Bitboard CENTRE_SQUARES = SquareBit(D4) | SquareBit(E4) | SquareBit(D5) | SquareBit(E5);

// One rank towards the enemy, or back towards the own side.
constexpr Bitboard Forward(int colour, Bitboard set) {
  return colour == WHITE ? set << 8 : set >> 8;
}
constexpr Bitboard Backward(int colour, Bitboard set) {
  return colour == WHITE ? set >> 8 : set << 8;
}

// The squares attacked towards the a-file and towards the h-file by pawns of the colour on `set`.
constexpr Bitboard AttacksTowardsA(int colour, Bitboard set) {
  return Forward(colour, set & ~FILE_A) >> 1;
}
constexpr Bitboard AttacksTowardsH(int colour, Bitboard set) {
  return Forward(colour, set & ~FILE_H) << 1;
}
constexpr Bitboard PawnAttacksOf(int colour, Bitboard set) {
  return AttacksTowardsA(colour, set) | AttacksTowardsH(colour, set);
}

// Every square of every file that holds a bit of `set`.
constexpr Bitboard FilesOf(Bitboard set) {
  set |= set << 8;
  set |= set << 16;
  set |= set << 32;
  set |= set >> 8;
  set |= set >> 16;
  set |= set >> 32;
  return set;
}

// Every square behind the squares of `set`, seen from the colour: the rank of a square itself is
// not included.
constexpr Bitboard FillBehind(int colour, Bitboard set) {
  Bitboard fill = Backward(colour, set);
  if (colour == WHITE) {
    fill |= fill >> 8;
    fill |= fill >> 16;
    fill |= fill >> 32;
  } else {
    fill |= fill << 8;
    fill |= fill << 16;
    fill |= fill << 32;
  }
  return fill;
}

// `set` with the squares beside each of its squares on the rank.
constexpr Bitboard WithNeighbours(Bitboard set) {
  return set | ((set & ~FILE_A) >> 1) | ((set & ~FILE_H) << 1);
}

// The files beside those of `set`.
constexpr Bitboard NeighbourFilesOf(Bitboard set) {
  const Bitboard files = FilesOf(set);
  return ((files & ~FILE_A) >> 1) | ((files & ~FILE_H) << 1);
}

// Square and rank as the colour sees them: its first rank is 0.
constexpr int RelativeSquare(int colour, int square) {
  return colour == WHITE ? square : MirrorRanks(square);
}
constexpr int RelativeRank(int colour, int square) { return Rank(RelativeSquare(colour, square)); }

// White's terms count for White, Black's against.
constexpr int Sign(int colour) { return colour == WHITE ? 1 : -1; }

// The pawn of the colour nearest the enemy's side in `set`, which must not be empty.
inline int FrontmostOf(int colour, Bitboard set) {
  return colour == WHITE ? FindHighestBit(set) : FindLowestBit(set);
}
// The one nearest the colour's own side.
inline int RearmostOf(int colour, Bitboard set) {
  return colour == WHITE ? FindLowestBit(set) : FindHighestBit(set);
}

// The squares of the file strictly ahead of the square, seen from the colour.
constexpr Bitboard AheadOnFile(int colour, int square) {
  const Bitboard file = FileMask(File(square));
  return colour == WHITE ? file & ~((SquareBit(square) << 1) - 1) : file & (SquareBit(square) - 1);
}

// The board turned upside down: what Black sees is what White would see.
constexpr Bitboard MirrorRanksOf(Bitboard set) { return __builtin_bswap64(set); }

// A set as the colour sees it: unchanged for White, mirrored for Black.
constexpr Bitboard RelativeSet(int colour, Bitboard set) {
  return colour == WHITE ? set : MirrorRanksOf(set);
}
