// What a search is asked to do.
#pragma once

#include <cstdint>

// The kind of a search as the search sees it.
enum class SearchType { normal = 0, analyze = 1, pondering = 2, puzzle = 3 };

struct SearchRequest {
  SearchType type = SearchType::normal;
  std::int32_t max_depth = 0;            // 0: none
  std::int32_t max_time_limit = 0;       // milliseconds, 0: none
  std::int32_t variable_time_limit = 0;  // milliseconds, 0: none
};

constexpr const char* SearchTypeWord(SearchType type) {
  switch (type) {
    case SearchType::normal: return "normal";
    case SearchType::analyze: return "analyze";
    case SearchType::pondering: return "pondering";
    case SearchType::puzzle: return "puzzle";
  }
  return "normal";
}

// Thrown through the search's frames by whatever cannot run beside it: a command, or the clock.
// With discard_result the search's result is dropped; without, its best move stands. It is no
// error and stands outside the engine's failure classes.
struct search_aborted_exception {
  bool discard_result;
};
