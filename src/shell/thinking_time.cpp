#include "shell/thinking_time.h"

#include <algorithm>
#include <cstdint>

namespace {

// Without a move limit the time is planned as if 30 moves were left.
constexpr std::int64_t ASSUMED_MOVES_LEFT = 30;
// Kept back per move to come, for the overhead of the front end and the moves themselves.
constexpr std::int64_t RESERVE_PER_MOVE_MS = 3000;

// 15% of the clock stays in reserve. The product goes through single precision on purpose, so
// that the limits are the same on every platform for every clock value: e.g. 6990513 ms gives
// 1048577, where double precision alone would give 1048576.
std::int64_t Reserve(std::int32_t ms) {
  return static_cast<std::int64_t>(static_cast<float>(ms * 0.15));
}

}  // namespace

void ThinkingTime(const Clock& clock, int& max_time_limit, int& variable_time_limit) {
  // Only the low 32 bits count, as a signed number, which keeps every limit in the range of int.
  const std::int64_t ms = static_cast<std::int32_t>(static_cast<std::uint32_t>(clock.ms_left));
  if (ms < 1) {
    max_time_limit = variable_time_limit = MIN_THINKING_TIME_MS;
    return;
  }
  const std::int64_t moves = clock.HasMoveLimit() ? clock.moves_left : ASSUMED_MOVES_LEFT;
  std::int64_t hard = std::max<std::int64_t>(
      ms - Reserve(static_cast<std::int32_t>(ms)) - RESERVE_PER_MOVE_MS * moves,
      MIN_THINKING_TIME_MS);
  if (clock.HasMoveLimit()) hard = std::max(hard, ms / moves);
  max_time_limit = static_cast<int>(hard);
  variable_time_limit =
      static_cast<int>(std::max<std::int64_t>(ms / (2 * moves + 2), MIN_THINKING_TIME_MS));
}
