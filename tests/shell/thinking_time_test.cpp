#include "shell/thinking_time.h"

#include <gtest/gtest.h>

namespace {

struct Limits {
  int max_time_limit = -1;
  int variable_time_limit = -1;
};

Limits LimitsFor(std::int64_t ms_left, std::uint32_t moves_left) {
  Clock clock;
  clock.ms_left = ms_left;
  clock.moves_left = moves_left;
  Limits limits;
  ThinkingTime(clock, limits.max_time_limit, limits.variable_time_limit);
  return limits;
}

TEST(ThinkingTime, ClockThatRanOutStillGivesTheMinimum) {
  for (const std::int64_t ms : {0LL, -1LL, -500000LL}) {
    const Limits limits = LimitsFor(ms, 40);
    EXPECT_EQ(limits.max_time_limit, 150) << ms;
    EXPECT_EQ(limits.variable_time_limit, 150) << ms;
  }
}

TEST(ThinkingTime, ThreeSecondsWithoutMoveLimitGiveTheMinimum) {
  const Limits limits = LimitsFor(3000, NO_MOVE_LIMIT);
  EXPECT_EQ(limits.max_time_limit, 150);       // max(3000 - 450 - 90000, 150)
  EXPECT_EQ(limits.variable_time_limit, 150);  // max(3000 / 62, 150)
}

TEST(ThinkingTime, PlentyOfTimeWithoutMoveLimitPlansForThirtyMoves) {
  const Limits limits = LimitsFor(600000, NO_MOVE_LIMIT);
  EXPECT_EQ(limits.max_time_limit, 600000 - 90000 - 90000);
  EXPECT_EQ(limits.variable_time_limit, 600000 / 62);
}

TEST(ThinkingTime, MoveLimitGivesAtLeastAnEvenShareAsHardLimit) {
  // 40 moves in 100 s: the reserve would leave nothing, the even share is 2500 ms.
  const Limits share = LimitsFor(100000, 40);
  EXPECT_EQ(share.max_time_limit, 2500);
  EXPECT_EQ(share.variable_time_limit, 100000 / 82);
  // Two moves left: all but the reserve, which is more than the share.
  const Limits two = LimitsFor(100000, 2);
  EXPECT_EQ(two.max_time_limit, 100000 - 15000 - 6000);
  EXPECT_EQ(two.variable_time_limit, 100000 / 6);
  // On the last move of a stage the whole clock may go.
  EXPECT_EQ(LimitsFor(100000, 1).max_time_limit, 100000);
}

TEST(ThinkingTime, ReserveIsTruncatedAfterRoundingToSinglePrecision) {
  // 6990513 * 0.15 = 1048576.95, which single precision rounds to 1048577.
  EXPECT_EQ(LimitsFor(6990513, NO_MOVE_LIMIT).max_time_limit, 6990513 - 1048577 - 90000);
  // Small values truncate as expected: 200001 * 0.15 = 30000.15.
  EXPECT_EQ(LimitsFor(200001, NO_MOVE_LIMIT).max_time_limit, 200001 - 30000 - 90000);
}

TEST(ThinkingTime, OnlyTheLow32BitsOfTheClockCount) {
  const Limits wrapped = LimitsFor((std::int64_t(1) << 32) + 3000, NO_MOVE_LIMIT);
  EXPECT_EQ(wrapped.variable_time_limit, 150);
  const Limits negative = LimitsFor(std::int64_t(0xFFFFFFFF), 40);  // -1 as 32 bits
  EXPECT_EQ(negative.max_time_limit, 150);
  EXPECT_EQ(negative.variable_time_limit, 150);
}

TEST(ThinkingTime, HugeMoveCountsDoNotOverflow) {
  const Limits limits = LimitsFor(0x7FFFFFFF, 0x7FFFFFFF);
  EXPECT_EQ(limits.max_time_limit, 150);
  EXPECT_EQ(limits.variable_time_limit, 150);
}

}  // namespace
