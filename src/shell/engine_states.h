// The states the engine is in, and the search each of them runs.
#pragma once

#include "search/search_request.h"

// What the engine is doing now; a search of a type runs in the state of the same name.
enum class SearchState { none = 0, normal = 1, pondering = 2, analyze = 3, puzzle = 4 };

// force: the engine makes no moves of its own. one_side, both_sides: the number of sides it plays.
enum class EngineMode { force = 0, one_side = 1, both_sides = 2, analyze = 3 };

constexpr SearchState StateOf(SearchType type) {
  switch (type) {
    case SearchType::normal: return SearchState::normal;
    case SearchType::analyze: return SearchState::analyze;
    case SearchType::pondering: return SearchState::pondering;
    case SearchType::puzzle: return SearchState::puzzle;
  }
  return SearchState::none;
}
