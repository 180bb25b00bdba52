// What a search is asked to do, and the states the engine is in.
#pragma once

#include <cstdint>

// The kind of a search as the search sees it.
enum class SearchType { normal = 0, analyze = 1, pondering = 2, puzzle = 3 };

// What the engine is doing now; a search of a type runs in the state of the same name.
enum class SearchState { none = 0, normal = 1, pondering = 2, analyze = 3, puzzle = 4 };

// force: the engine makes no moves of its own. one_side, both_sides: the number of sides it plays.
enum class EngineMode { force = 0, one_side = 1, both_sides = 2, analyze = 3 };

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

constexpr SearchState StateOf(SearchType type) {
  switch (type) {
    case SearchType::normal: return SearchState::normal;
    case SearchType::analyze: return SearchState::analyze;
    case SearchType::pondering: return SearchState::pondering;
    case SearchType::puzzle: return SearchState::puzzle;
  }
  return SearchState::none;
}
