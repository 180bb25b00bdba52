#include "search/search_clock.h"

#include <gtest/gtest.h>

namespace {
// A clock in its `n`th iteration with the given previous score, as the driver leaves it.
SearchClock ClockAt(int iterations, std::uint64_t max, std::uint64_t variable,
                    std::int32_t previous_score = 0) {
  SearchClock clock;
  clock.Init(max, variable);
  for (int i = 0; i < iterations; ++i) {
    clock.NextIteration();
    clock.RecordScore(previous_score);
  }
  clock.NextIteration();
  return clock;
}

// The first elapsed time at which the clock says stop.
std::uint64_t Deadline(SearchClock clock, int kind, int fail) {
  for (std::uint64_t t = 0; t < 1000000; ++t) {
    if (clock.TimeIsUp(t, kind, fail)) return t;
  }
  return 1000000;
}
}  // namespace

TEST(SearchClock, TheFirstIterationAlwaysFinishes) {
  SearchClock clock;
  clock.Init(100, 100);
  clock.NextIteration();
  EXPECT_FALSE(clock.TimeIsUp(1000000, SearchClock::ITERATION_DONE, 0));
  clock.NextIteration();
  EXPECT_TRUE(clock.TimeIsUp(1000000, SearchClock::ITERATION_DONE, 0));
}

TEST(SearchClock, HardLimitAndFactorsOfTheSoftLimitByWhatTheSearchDoes) {
  const struct {
    std::uint64_t max, variable;
    int kind;
    std::uint64_t deadline;
  } cases[] = {
      {500, 0, SearchClock::BEST_MOVE, 500},  // the hard limit alone
      {0, 0, SearchClock::BEST_MOVE, 1000000},
      {300, 1000, SearchClock::OTHER_MOVE, 300},  // wins over any factor of the soft one
      {0, 1000, SearchClock::ITERATION_DONE, 400},
      {0, 1000, SearchClock::BEST_MOVE, 1200},
      {0, 1000, SearchClock::OTHER_MOVE, 2400},
  };
  for (const auto& c : cases)
    EXPECT_EQ(Deadline(ClockAt(1, c.max, c.variable), c.kind, 0), c.deadline) << c.max << c.kind;
}

TEST(SearchClock, AScoreDropGivesTheOtherMovesMoreTime) {
  SearchClock clock = ClockAt(1, 0, 1000, 100);
  clock.RecordScore(50);  // a drop of 50
  EXPECT_EQ(Deadline(clock, SearchClock::OTHER_MOVE, 0), 4800u);
  clock = ClockAt(1, 0, 1000, 100);
  clock.RecordScore(-20);  // a drop of 120
  EXPECT_EQ(Deadline(clock, SearchClock::OTHER_MOVE, 0), 7200u);
  clock = ClockAt(1, 0, 1000, 100);
  clock.RecordScore(-200);
  clock.upperbound = -200;  // a drop of 300 into a bad score
  EXPECT_EQ(Deadline(clock, SearchClock::OTHER_MOVE, 0), 19200u);
}

TEST(SearchClock, TheBestMoveFailingBeforeItHasAScore) {
  SearchClock clock = ClockAt(1, 0, 1000, 100);
  clock.upperbound = 50;  // a small fail low
  EXPECT_EQ(Deadline(clock, SearchClock::BEST_MOVE, SearchClock::FAILED_LOW), 2400u);
  clock.upperbound = -30;  // a fail low of 130
  EXPECT_EQ(Deadline(clock, SearchClock::BEST_MOVE, SearchClock::FAILED_LOW), 3600u);
  clock.upperbound = -200;  // 300 into a bad score
  EXPECT_EQ(Deadline(clock, SearchClock::BEST_MOVE, SearchClock::FAILED_LOW), 9600u);
  clock.lowerbound = 150;  // a fail high into a good score
  EXPECT_EQ(Deadline(clock, SearchClock::BEST_MOVE, SearchClock::FAILED_HIGH), 600u);
  clock.lowerbound = -50;
  clock.previous_score = -20;  // a fail high, but still a bad score
  EXPECT_EQ(Deadline(clock, SearchClock::BEST_MOVE, SearchClock::FAILED_HIGH), 840u);
}

TEST(SearchClock, RecordScoreKeepsTheBestAndNoticesAChange) {
  SearchClock clock = ClockAt(1, 0, 1000);
  clock.RecordScore(10);
  EXPECT_FALSE(clock.best_move_changed);
  clock.RecordScore(5);
  EXPECT_EQ(clock.iteration_score, 10);
  clock.RecordScore(20);
  EXPECT_EQ(clock.iteration_score, 20);
  EXPECT_TRUE(clock.best_move_changed);
}

TEST(SearchClock, InstabilityAndTurbulentIterationsStretchTheTime) {
  SearchClock clock = ClockAt(1, 0, 1000);
  clock.instability = true;
  EXPECT_EQ(Deadline(clock, SearchClock::ITERATION_DONE, 0), 700u);

  // Three iterations that each failed low: unstable from the fifth iteration on.
  SearchClock turbulent;
  turbulent.Init(0, 1000);
  turbulent.NextIteration();
  turbulent.failed_low = true;  // sticky, so every later record is a fail low
  for (int i = 0; i < 4; ++i) turbulent.NextIteration();
  ASSERT_EQ(turbulent.iterations, 5);
  EXPECT_EQ(Deadline(turbulent, SearchClock::ITERATION_DONE, 0), 1160u);
  EXPECT_EQ(Deadline(turbulent, SearchClock::OTHER_MOVE, 0), 3480u);
}

TEST(SearchClock, QuietIterationsShortenTheTime) {
  SearchClock clock = ClockAt(4, 0, 1000);
  ASSERT_EQ(clock.iterations, 5);
  EXPECT_EQ(Deadline(clock, SearchClock::ITERATION_DONE, 0), 280u);
  // Four iterations are too few to call a search stable.
  EXPECT_EQ(Deadline(ClockAt(3, 0, 1000), SearchClock::ITERATION_DONE, 0), 400u);
}
