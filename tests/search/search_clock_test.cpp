#include "search/search_clock.h"

#include <gtest/gtest.h>

namespace {
constexpr std::uint64_t NEVER = 1000000;

// A clock in the iteration after `iterations` finished ones, as the driver leaves it, and then
// what the row says happened in this iteration.
struct Case {
  int iterations = 1;
  std::uint64_t max = 0, variable = 1000;
  std::int32_t scores = 0;                      // of every finished iteration
  std::int32_t score = SearchClock::NO_SCORE;   // recorded in this one
  std::int32_t upperbound = 0, lowerbound = 0;  // of the aspiration window
  std::int32_t previous = SearchClock::NO_SCORE;
  bool instability = false, failed_low = false;  // the latter from the first iteration on
  int kind = SearchClock::ITERATION_DONE, fail = 0;
  std::uint64_t deadline = 0;  // the first elapsed time at which the clock says stop
};

std::uint64_t Deadline(const Case& c) {
  SearchClock clock;
  clock.Init(c.max, c.variable);
  for (int i = 0; i < c.iterations; ++i) {
    clock.NextIteration();
    clock.failed_low = c.failed_low;
    clock.RecordScore(c.scores);
  }
  clock.NextIteration();
  if (c.score != SearchClock::NO_SCORE) clock.RecordScore(c.score);
  clock.upperbound = c.upperbound;
  clock.lowerbound = c.lowerbound;
  if (c.previous != SearchClock::NO_SCORE) clock.previous_score = c.previous;
  clock.instability = c.instability;
  for (std::uint64_t t = 0; t < NEVER; ++t) {
    if (clock.TimeIsUp(t, c.kind, c.fail)) return t;
  }
  return NEVER;
}

TEST(SearchClock, DeadlinesByWhatTheSearchDoesAndHowTheIterationsWent) {
  using C = SearchClock;
  const Case cases[] = {
      {.iterations = 0, .max = 100, .variable = 100, .deadline = NEVER},  // the first finishes
      {.max = 100, .variable = 100, .deadline = 40},
      {.max = 500, .variable = 0, .kind = C::BEST_MOVE, .deadline = 500},  // the hard limit alone
      {.max = 300, .kind = C::OTHER_MOVE, .deadline = 300},  // wins over any factor of the soft one
      {.deadline = 400},
      {.kind = C::BEST_MOVE, .deadline = 1200},
      {.kind = C::OTHER_MOVE, .deadline = 2400},
      // A score drop gives the other moves more time: 50, 120, and 300 into a bad score.
      {.scores = 100, .score = 50, .kind = C::OTHER_MOVE, .deadline = 4800},
      {.scores = 100, .score = -20, .kind = C::OTHER_MOVE, .deadline = 7200},
      {.scores = 100, .score = -200, .upperbound = -200, .kind = C::OTHER_MOVE, .deadline = 19200},
      // The best move failing before it has a score: small, 130, and 300 into a bad score.
      {.scores = 100, .upperbound = 50, .kind = C::BEST_MOVE, .fail = C::FAILED_LOW,
       .deadline = 2400},
      {.scores = 100, .upperbound = -30, .kind = C::BEST_MOVE, .fail = C::FAILED_LOW,
       .deadline = 3600},
      {.scores = 100, .upperbound = -200, .kind = C::BEST_MOVE, .fail = C::FAILED_LOW,
       .deadline = 9600},
      // A fail high into a good score, and one that still leaves a bad score.
      {.scores = 100, .upperbound = -200, .lowerbound = 150, .kind = C::BEST_MOVE,
       .fail = C::FAILED_HIGH, .deadline = 600},
      {.scores = 100, .upperbound = -200, .lowerbound = -50, .previous = -20, .kind = C::BEST_MOVE,
       .fail = C::FAILED_HIGH, .deadline = 840},
      // Instability and turbulent iterations (three fail lows from the fifth) stretch the time.
      {.instability = true, .deadline = 700},
      {.iterations = 4, .failed_low = true, .deadline = 1160},
      {.iterations = 4, .failed_low = true, .kind = C::OTHER_MOVE, .deadline = 3480},
      // Quiet iterations shorten it, but four are too few to call a search stable.
      {.iterations = 4, .deadline = 280},
      {.iterations = 3, .deadline = 400},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(Deadline(c), c.deadline) << "row " << &c - cases;
  }
}

TEST(SearchClock, RecordScoreKeepsTheBestAndNoticesAChange) {
  SearchClock clock;
  clock.Init(0, 1000);
  clock.NextIteration();
  clock.RecordScore(0);
  clock.NextIteration();
  clock.RecordScore(10);
  EXPECT_FALSE(clock.best_move_changed);
  clock.RecordScore(5);
  EXPECT_EQ(clock.iteration_score, 10);
  clock.RecordScore(20);
  EXPECT_EQ(clock.iteration_score, 20);
  EXPECT_TRUE(clock.best_move_changed);
}
}  // namespace
