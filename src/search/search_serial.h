// The search driver: turns a search request into a best move by iterative deepening, polling the
// input from inside the search.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "chess/basic.h"
#include "chess/user_board.h"
#include "shell/search_request.h"
#include "shell/time_point.h"

class Application;

struct BestLineMove {
  Move move;
  std::string text;
};

class SerialSearch {
 public:
  void Start(const SearchRequest& request, const UserBoard& user_board, Application& application);
  void PonderHit();
  void SetContempt(std::int32_t value);
  void SetPersonality(std::int32_t value);
  std::uint64_t ElapsedTime() const;

  // The status the protocols read.
  bool no_moves = true;
  std::int16_t moves_total = 0;
  std::int16_t moves_left = 0;
  std::int16_t depth = 0;
  std::uint64_t nodes = 0;
  std::int32_t fail_state = 0;
  Move current_move = INVALID;
  std::string current_move_text = "invalid";
  Move best_move = INVALID;
  std::vector<BestLineMove> best_line;
  std::int32_t score = 0;
  TimePoint start_time{};
  TimePoint stop_time{};
  TimePoint ponder_hit_time{};
  bool running = false;
  SearchType type = SearchType::normal;
  std::int32_t max_depth = 0;
  std::int32_t max_time_limit = 0;
  std::int32_t variable_time_limit = 0;
  std::uint64_t ettc_tries = 0;
  std::uint64_t ettc_cutoffs = 0;
  std::int32_t contempt = 0;
  std::int32_t personality = 0;
};
