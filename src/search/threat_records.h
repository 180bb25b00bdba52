// The per-ply records of the two threat detectors: a run of queen checks that may end in a
// perpetual, and a pin that has just arisen.
#pragma once

#include <cstdint>

#include "chess/basic.h"

struct PerpetualRecord {
  std::int16_t check_count;  // queen checks in a row by the checking side up to this ply
  std::uint16_t flag;        // 1: a perpetual check threat was found at this ply
  std::int16_t king_square;  // of the checked king
  std::int16_t material;
  Bitboard blocked;  // own pieces of the checked side next to its king
};

struct PinRecord {
  std::int16_t pinned_square;  // negative: no pin
  std::int16_t pinner_square;
  std::int32_t pinning_side;
};

inline constexpr PinRecord NO_PIN = {-1, -2, -1};
