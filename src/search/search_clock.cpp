#include "search/search_clock.h"

namespace {
// Turbulence of one finished iteration: a fail low weighs most, a new best move nearly as much.
int Weight(const SearchClock::Record& record) {
  const int by_kind = record.kind == 1 ? 25 : record.kind == 2 ? 15 : 0;
  return by_kind + (record.changed ? 20 : 0);
}

// A fail high that ends near (or above) the old score needs less time: the move is good.
double FailHighFactor(std::int32_t d, std::int32_t lowerbound) {
  if (d >= -304 && lowerbound > 0) return 0.5;
  if (d >= -99) return 0.7;
  return 1.0;
}

// A fail low needs more time, the more so the deeper the drop and when the score turns bad.
double DropFactor(std::int32_t drop, std::int32_t upperbound) {
  if (drop >= 256 && upperbound < 0) return 8.0;
  if (drop > 100) return 3.0;
  if (drop > 25) return 2.0;
  return 1.0;
}
}  // namespace

void SearchClock::Init(std::uint64_t max, std::uint64_t variable) {
  max_time_limit = max;
  variable_time_limit = variable;
  previous_score = 0;
  iteration_score = NO_SCORE;
  iterations = 0;
  failed_low = failed_high = instability = best_move_changed = false;
  history.clear();
  ForgetCaches();
}

void SearchClock::NextIteration() {
  if (iterations++ > 0) {
    const std::uint32_t kind = failed_low ? 1 : failed_high ? 2 : 0;
    history.push_back({kind, best_move_changed});
  }
  previous_score = iteration_score;
  iteration_score = NO_SCORE;
  instability = best_move_changed = false;
  ForgetCaches();
}

void SearchClock::RecordScore(std::int32_t value) {
  if (iteration_score == NO_SCORE) {
    iteration_score = value;
  } else if (iteration_score < value) {
    iteration_score = value;
    best_move_changed = true;
  }
  ForgetCaches();
}

bool SearchClock::IsUnstable() {
  if (unstable_cache == NO_SCORE) {
    const std::size_t n = history.size();
    bool unstable = false;
    if (iterations >= 5 && n >= 3) {
      const int weight = Weight(history[n - 1]) + Weight(history[n - 2]) / 2 +
                         Weight(history[n - 3]) / 2;
      unstable = weight > 29;
    }
    unstable_cache = unstable;
  }
  return unstable_cache != 0;
}

bool SearchClock::IsStable() {
  if (stable_cache == NO_SCORE) {
    const std::size_t n = history.size();
    bool stable = false;
    if (iterations >= 5 && n >= 2) {
      const auto quiet = [](const Record& r) { return r.kind == 0 && !r.changed; };
      stable = quiet(history[n - 1]) && quiet(history[n - 2]);
    }
    stable_cache = stable;
  }
  return stable_cache != 0;
}

// The factors are applied one by one, in this order: the truncation at the end sees the same
// rounding every time.
void SearchClock::StretchForOtherMove(double& t) const {
  t *= 2.4;
  if (previous_score > iteration_score) t *= DropFactor(previous_score - iteration_score, upperbound);
}

void SearchClock::StretchForBestMove(double& t, int fail) const {
  t *= 1.2;
  if (iteration_score != NO_SCORE) {
    if (fail == FAILED_HIGH && lowerbound - previous_score >= 1) {
      t *= FailHighFactor(lowerbound - iteration_score, lowerbound);
    }
  } else if (fail == FAILED_LOW) {
    const std::int32_t d = previous_score - upperbound;
    t *= d >= 256 && upperbound < 0 ? 8.0 : d < 101 ? 2.0 : 3.0;
  } else if (fail == FAILED_HIGH) {
    t *= FailHighFactor(lowerbound - previous_score, lowerbound);
  }
}

bool SearchClock::TimeIsUp(std::uint64_t elapsed, int kind, int fail) {
  if (iterations == 1) return false;  // the first iteration always finishes
  if (max_time_limit != 0 && elapsed >= max_time_limit) return true;
  if (variable_time_limit == 0) return false;
  double t = double(variable_time_limit);
  switch (kind) {
    case OTHER_MOVE: StretchForOtherMove(t); break;
    case ITERATION_DONE:
      if (IsUnstable()) {
        t *= 0.8;
        t *= 1.45;
      } else {
        t *= 0.4;
      }
      break;
    default: StretchForBestMove(t, fail); break;
  }
  if (kind != ITERATION_DONE && IsUnstable()) t *= 1.45;
  if (instability) t *= 1.75;
  if (IsStable()) t *= 0.7;
  return elapsed >= std::uint64_t(t);
}
