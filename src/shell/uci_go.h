// What a UCI "go" asks for, and how much of the clock a search may use for it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "shell/engine_states.h"

struct UciGoParameters {
  // Indexed by colour. A time of NO_CLOCK means the front end sent none for that side.
  static constexpr std::int64_t NO_CLOCK = INT64_MIN;
  std::int64_t time_ms[2] = {NO_CLOCK, NO_CLOCK};
  std::int64_t increment_ms[2] = {0, 0};
  std::int32_t moves_to_go = 0;   // 0: to the end of the game
  std::int32_t move_time_ms = 0;  // 0: none
  std::int32_t depth = 0;         // 0: none
  std::uint64_t nodes = 0;        // 0: none
  std::int32_t mate = 0;          // moves, 0: none
  bool infinite = false;
  bool ponder = false;
  std::vector<std::string> search_moves;
};

// Reads the words behind "go". Throws ErrorCommand, naming the line, for an unknown word, a
// missing or malformed number, or a number out of its range.
UciGoParameters ParseGoParameters(const std::vector<std::string>& tokens, const std::string& line);

// The request for the side on move: the type (pondering and infinite searches wait for the front
// end), the depth, and the two time limits.
SearchRequest UciSearchRequest(const UciGoParameters& go, int side);

// Kept back from every move's time, for the way through the front end and its adapters.
inline constexpr std::int64_t UCI_MOVE_OVERHEAD_MS = 30;
// No limit falls below this: even a flagged clock gets a move, and one that costs less than a
// small increment, so that the clock can recover.
inline constexpr std::int32_t UCI_MIN_THINKING_TIME_MS = 1;
