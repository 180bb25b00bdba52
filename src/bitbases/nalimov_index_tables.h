// The tables behind the Nalimov index: where a piece may stand beside the enemy king, the numbers
// of the king pairs, and the running sums of the pair sizes. The file format fixes every value, so
// they are computed here at compile time from the rules that define them.
#pragma once

#include <array>
#include <cstdint>

#include "chess/basic.h"

namespace NalimovTablebases {

// Piece codes of the index. Code 0 is a white pawn counted while a bare black king is on move;
// it may stand on any pawn square but the king's own.
constexpr int BARE_KING_PAWN = 0;
constexpr int CODE_COUNT = 6;
// A second code of a set that holds only one piece.
constexpr int NO_CODE = 6;

constexpr std::uint8_t NOT_ALLOWED = 0xFF;
constexpr std::int16_t NO_PAIR = 4000;
constexpr int PAWNLESS_PAIRS = 462;
constexpr int PAWN_PAIRS = 1806;

constexpr bool IsPawnCode(int code) { return code <= PAWN; }
constexpr bool AreAdjacentOrEqual(int a, int b) {
  int df = File(a) - File(b), dr = Rank(a) - Rank(b);
  return df >= -1 && df <= 1 && dr >= -1 && dr <= 1;
}

// Whether a piece of the code standing on square would give check by contact to the king (or
// stand on it). Such squares get no number, which is what makes the tables dense.
constexpr bool TouchesKing(int code, int king, int square) {
  int df = File(square) - File(king), dr = Rank(square) - Rank(king);
  int adf = df < 0 ? -df : df, adr = dr < 0 ? -dr : dr;
  if (square == king) return true;
  switch (code) {
    case PAWN: return dr == -1 && adf == 1;
    case KNIGHT: return (adf == 1 && adr == 2) || (adf == 2 && adr == 1);
    case BISHOP: return adf == 1 && adr == 1;
    case ROOK: return adf + adr == 1;
    case QUEEN: return adf <= 1 && adr <= 1;
    default: return false;
  }
}

using SquareNumbers = std::array<std::array<std::uint8_t, 64>, 64>;  // [king][square]

struct FreeSquareTables {
  std::array<SquareNumbers, CODE_COUNT> square{};                 // [code][king][square]
  std::array<std::array<std::uint8_t, 64>, CODE_COUNT> count{};  // [code][king]
};

constexpr FreeSquareTables MakeFreeSquareTables() {
  FreeSquareTables tables{};
  for (int code = 0; code < CODE_COUNT; ++code)
    for (int king = 0; king < 64; ++king) {
      int first = IsPawnCode(code) ? A2 : A1, last = IsPawnCode(code) ? H7 : H8;
      std::uint8_t next = 0;
      for (int square = 0; square < 64; ++square) {
        bool allowed = square >= first && square <= last && !TouchesKing(code, king, square);
        tables.square[code][king][square] = allowed ? next++ : NOT_ALLOWED;
      }
      tables.count[code][king] = next;
    }
  return tables;
}

inline constexpr FreeSquareTables FreeSquareData = MakeFreeSquareTables();
inline constexpr const auto& FreeSquare = FreeSquareData.square;
inline constexpr const auto& FreeCount = FreeSquareData.count;

// ---------------------------------------------------------------------------------------------
// King pairs. The king on move stands in the a1-d1-d4 triangle (pawnless; on the diagonal the
// other king is kept on or below it) or on files a-d (with pawns).

using PairNumbers = std::array<std::array<std::int16_t, 64>, 64>;  // [k1][k2]

constexpr bool InTriangle(int square) {
  return File(square) <= 3 && Rank(square) <= File(square);
}

template <bool WITH_PAWNS>
constexpr PairNumbers MakeKingPairs() {
  PairNumbers pairs{};
  std::int16_t next = 0;
  for (int k1 = 0; k1 < 64; ++k1)
    for (int k2 = 0; k2 < 64; ++k2) {
      bool valid = !AreAdjacentOrEqual(k1, k2) &&
                   (WITH_PAWNS ? File(k1) <= 3
                               : InTriangle(k1) && (Rank(k1) != File(k1) || File(k2) >= Rank(k2)));
      pairs[k1][k2] = valid ? next++ : NO_PAIR;
    }
  return pairs;
}

inline constexpr PairNumbers KingPair = MakeKingPairs<false>();
inline constexpr PairNumbers KingPairPawn = MakeKingPairs<true>();

// ---------------------------------------------------------------------------------------------
// Cumulative sizes. A king pair leaves N(x) squares to a piece of code x; the pair's share of the
// index is the number of placements of the set S, and Cumulative sums the shares of all earlier
// pairs. Sets are [x][y] with x >= y, or [x][NO_CODE] for a single piece.

constexpr int SquaresLeft(int code, int k1, int k2) {
  return FreeCount[code][k2] - (FreeSquare[code][k2][k1] != NOT_ALLOWED);
}

constexpr std::int64_t PlacementCount(int x, int y, int k1, int k2) {
  std::int64_t nx = SquaresLeft(x, k1, k2);
  if (y == NO_CODE) return nx;
  if (x == y) return nx * (nx - 1) / 2;
  return nx * SquaresLeft(y, k1, k2);
}

template <int PAIRS>
using CumulativeSums = std::array<std::array<std::array<std::uint32_t, PAIRS + 1>, CODE_COUNT + 1>,
                                  CODE_COUNT>;  // [x][y][pair]; entry PAIRS holds the total

template <int PAIRS>
constexpr CumulativeSums<PAIRS> MakeCumulative(const PairNumbers& pairs) {
  CumulativeSums<PAIRS> sums{};
  for (int x = 0; x < CODE_COUNT; ++x)
    for (int y = 0; y <= CODE_COUNT; ++y) {
      if (y != NO_CODE && y > x) continue;
      std::int64_t total = 0;
      for (int k1 = 0; k1 < 64; ++k1)
        for (int k2 = 0; k2 < 64; ++k2)
          if (pairs[k1][k2] != NO_PAIR) {
            sums[x][y][pairs[k1][k2]] = std::uint32_t(total);
            total += PlacementCount(x, y, k1, k2);
          }
      sums[x][y][PAIRS] = std::uint32_t(total);
    }
  return sums;
}

inline constexpr CumulativeSums<PAWNLESS_PAIRS> Cumulative =
    MakeCumulative<PAWNLESS_PAIRS>(KingPair);
inline constexpr CumulativeSums<PAWN_PAIRS> CumulativePawn =
    MakeCumulative<PAWN_PAIRS>(KingPairPawn);

}  // namespace NalimovTablebases
