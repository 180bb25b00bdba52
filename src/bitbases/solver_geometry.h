// Attacks for the tablebase solver, which visits every position of an endgame and can afford
// neither the engine board's rotated boards and keys nor a loop over squares per slider. Rays
// stop at the first blocker: the lowest set bit for rays that run upward in square numbers, the
// highest for those that run downward.
#pragma once

#include <bit>
#include <cstdint>

#include "chess/basic.h"

namespace NalimovTablebases {

namespace SolverGeometry {

constexpr int RAY_COUNT = 8;
// The first four rays run upward in square numbers (north, east, north-east, north-west).
constexpr int RayFileStep[RAY_COUNT] = {0, 1, 1, -1, 0, -1, -1, 1};
constexpr int RayRankStep[RAY_COUNT] = {1, 0, 1, 1, -1, 0, -1, -1};
constexpr bool IsRookRay(int ray) { return RayFileStep[ray] == 0 || RayRankStep[ray] == 0; }

struct Tables {
  Bitboard ray[RAY_COUNT][64];
  Bitboard knight[64];
  Bitboard king[64];
  Bitboard pawn_attacks[2][64];  // the squares a pawn of the colour attacks
  Bitboard between[64][64];      // strictly between two squares on one line, else 0
  std::uint8_t line[64][64];     // 1 on a rank or file, 2 on a diagonal, 0 off any line
};

constexpr bool OnBoard(int file, int rank) {
  return file >= 0 && file < 8 && rank >= 0 && rank < 8;
}

constexpr Bitboard Leaps(int square, const int (&steps)[8][2]) {
  Bitboard leaps = 0;
  for (const auto& step : steps) {
    int file = File(square) + step[0], rank = Rank(square) + step[1];
    if (OnBoard(file, rank)) leaps |= SquareBit(MakeSquare(file, rank));
  }
  return leaps;
}

constexpr Tables MakeTables() {
  constexpr int knight_steps[8][2] = {{1, 2},   {2, 1},   {2, -1}, {1, -2},
                                      {-1, -2}, {-2, -1}, {-2, 1}, {-1, 2}};
  constexpr int king_steps[8][2] = {{1, 0}, {-1, 0}, {0, 1},  {0, -1},
                                    {1, 1}, {1, -1}, {-1, 1}, {-1, -1}};
  Tables t{};
  for (int square = 0; square < 64; ++square) {
    t.knight[square] = Leaps(square, knight_steps);
    t.king[square] = Leaps(square, king_steps);
    for (int colour : {WHITE, BLACK}) {
      int rank = Rank(square) + (colour == WHITE ? 1 : -1);
      for (int df : {-1, 1})
        if (OnBoard(File(square) + df, rank))
          t.pawn_attacks[colour][square] |= SquareBit(MakeSquare(File(square) + df, rank));
    }
    for (int ray = 0; ray < RAY_COUNT; ++ray) {
      Bitboard passed = 0;
      int file = File(square), rank = Rank(square);
      for (;;) {
        file += RayFileStep[ray], rank += RayRankStep[ray];
        if (!OnBoard(file, rank)) break;
        int to = MakeSquare(file, rank);
        t.ray[ray][square] |= SquareBit(to);
        t.between[square][to] = passed;
        t.line[square][to] = IsRookRay(ray) ? 1 : 2;
        passed |= SquareBit(to);
      }
    }
  }
  return t;
}

inline constexpr Tables TABLES = MakeTables();

inline Bitboard RayAttacks(int ray, int square, Bitboard occupied) {
  Bitboard attacks = TABLES.ray[ray][square];
  Bitboard blockers = attacks & occupied;
  if (blockers == 0) return attacks;
  int first = ray < 4 ? std::countr_zero(blockers) : 63 - std::countl_zero(blockers);
  return attacks ^ TABLES.ray[ray][first];
}

// The squares a piece (not a pawn) attacks from square.
inline Bitboard Attacks(int type, int square, Bitboard occupied) {
  switch (type) {
    case KNIGHT:
      return TABLES.knight[square];
    case KING:
      return TABLES.king[square];
    default:
      break;
  }
  Bitboard attacks = 0;
  for (int ray = 0; ray < RAY_COUNT; ++ray)
    if (type == QUEEN || (type == ROOK) == IsRookRay(ray))
      attacks |= RayAttacks(ray, square, occupied);
  return attacks;
}

// Whether a piece of type and colour on from attacks target, the board occupied as given.
inline bool Attacks(int type, int colour, int from, int target, Bitboard occupied) {
  switch (type) {
    case PAWN:
      return (TABLES.pawn_attacks[colour][from] & SquareBit(target)) != 0;
    case KNIGHT:
      return (TABLES.knight[from] & SquareBit(target)) != 0;
    case KING:
      return (TABLES.king[from] & SquareBit(target)) != 0;
    default:
      break;
  }
  int line = TABLES.line[from][target];
  bool along = type == QUEEN ? line != 0 : line == (type == ROOK ? 1 : 2);
  return along && (TABLES.between[from][target] & occupied) == 0;
}

}  // namespace SolverGeometry

}  // namespace NalimovTablebases
