#include "shell/time_point.h"

#include <gtest/gtest.h>

TEST(TimePoint, ElapsedMsTruncatesTheMicrosecondsTowardsZero) {
  const TimePoint start{true, 10, 999999};
  EXPECT_EQ(ElapsedMs(start, TimePoint{true, 11, 0}), 1);   // 1000 - 999
  EXPECT_EQ(ElapsedMs(start, TimePoint{true, 12, 0}), 1001);  // 2000 - 999
  EXPECT_EQ(ElapsedMs(TimePoint{true, 5, 500}, TimePoint{true, 3, 900}), -2000);
  EXPECT_EQ(ElapsedMs(start, start), 0);
}

TEST(TimePoint, NowFillsThePointAndSleepWaits) {
  TimePoint start;
  EXPECT_FALSE(start.set);
  Now(start);
  EXPECT_TRUE(start.set);
  SleepMs(20);
  SleepMs(0);
  SleepMs(-5);
  const std::int64_t elapsed = ElapsedMsSince(start);
  EXPECT_GE(elapsed, 20);
  EXPECT_LT(elapsed, 2000);
}
