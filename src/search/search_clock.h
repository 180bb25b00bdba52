// The stop rule of a search: when the thinking time is used up, judged from the limits of the
// time control and from how the iterations have gone so far.
#pragma once

#include <cstdint>
#include <vector>

class SearchClock {
 public:
  // A value above every score: "no score recorded yet".
  static constexpr std::int32_t NO_SCORE = 32867;

  // What the search is doing when it asks the clock.
  enum Check : int {
    BEST_MOVE = 0,       // the first root move is being searched
    OTHER_MOVE = 1,      // another root move is being tested against its score
    ITERATION_DONE = 2,  // between two iterations
  };
  // fail: what the driver knows of the best move's value (0 inside the window, 1 failed low by
  // more than the margin, 2 failed high).
  enum Fail : int { INSIDE = 0, FAILED_LOW = 1, FAILED_HIGH = 2 };

  struct Record {
    std::uint32_t kind;  // 1 failed low, 2 failed high, 0 neither
    bool changed;        // the best move changed
  };

  void Init(std::uint64_t max, std::uint64_t variable);
  void NextIteration();
  void RecordScore(std::int32_t value);
  bool TimeIsUp(std::uint64_t elapsed, int kind, int fail);

  std::uint64_t max_time_limit = 0;       // ms, 0 none
  std::uint64_t variable_time_limit = 0;  // ms, 0 none
  std::int32_t previous_score = 0;
  std::int32_t iteration_score = NO_SCORE;
  std::int32_t iterations = 0;
  bool failed_low = false;   // sticky for the whole search
  bool failed_high = false;  // sticky for the whole search
  bool instability = false;
  bool best_move_changed = false;
  std::vector<Record> history;
  std::int32_t lowerbound = 0;
  std::int32_t upperbound = 0;
  std::int32_t unstable_cache = NO_SCORE;
  std::int32_t stable_cache = NO_SCORE;

 private:
  bool IsUnstable();
  bool IsStable();
  void ForgetCaches() { unstable_cache = stable_cache = NO_SCORE; }
  void StretchForBestMove(double& t, int fail) const;
  void StretchForOtherMove(double& t) const;
};
