// A pawn majority on one wing: more files with pawns of one side than the other side has pawns
// there to stop them.
#pragma once

#include <cstdint>

#include "chess/basic.h"

constexpr int NO_MAJORITY = 0;
constexpr int WHITE_MAJORITY = 1;
constexpr int BLACK_MAJORITY = 2;

struct PawnMajority {
  std::int32_t kind;            // NO_MAJORITY, WHITE_MAJORITY or BLACK_MAJORITY
  std::int32_t files;           // files on which the majority side has pawns
  std::int32_t opposing_pawns;  // the other side's pawns against them
  Bitboard mask;                // the files it covers, from the edge of its wing inwards
};
