#include "shell/time_control.h"

#include <gtest/gtest.h>

namespace {

TimePoint At(std::int64_t ms) { return TimePoint{true, ms / 1000, (ms % 1000) * 1000}; }

void ChargeMoves(Clock& clock, int count, std::int64_t elapsed_ms) {
  for (int i = 0; i < count; ++i) ChargeMove(clock, elapsed_ms);
}

Clock ClockWith(TimeControlStages stages) {
  Clock clock;
  clock.stages = std::move(stages);
  clock.Reset();
  return clock;
}

TEST(Clock, RepeatingStageStartsOverAndAddsItsTime) {  // level 40 5 0
  Clock clock = ClockWith({{40, 300000, 0, -1}});
  ChargeMoves(clock, 39, 1000);
  EXPECT_EQ(clock.moves_left, 1u);
  EXPECT_EQ(clock.ms_left, 300000 - 39000);
  ChargeMove(clock, 1000);
  EXPECT_EQ(clock.moves_left, 40u);
  EXPECT_EQ(clock.ms_left, 600000 - 40000);
  EXPECT_EQ(clock.stage_index, 0u);
}

TEST(Clock, StageWithoutMoveLimitOnlyGainsItsIncrement) {  // level 0 5 12
  Clock clock = ClockWith({{-1, 300000, 12000, -1}});
  EXPECT_FALSE(clock.HasMoveLimit());
  ChargeMoves(clock, 100, 10000);
  EXPECT_EQ(clock.moves_left, NO_MOVE_LIMIT);
  EXPECT_EQ(clock.ms_left, 300000 + 100 * 2000);
}

TEST(Clock, StagesFollowEachOtherAndTheLastOneLasts) {  // tc 40 120 0 20 60 0 0 30 5
  Clock clock = ClockWith({{40, 7200000, 0, 0}, {20, 3600000, 0, 0}, {-1, 1800000, 5000, 0}});
  ChargeMoves(clock, 40, 0);
  EXPECT_EQ(clock.stage_index, 1u);
  EXPECT_EQ(clock.moves_left, 20u);
  EXPECT_EQ(clock.ms_left, 7200000 + 3600000);
  // The move that ends a stage still gets that stage's increment, here none.
  ChargeMoves(clock, 20, 0);
  EXPECT_EQ(clock.stage_index, 2u);
  EXPECT_FALSE(clock.HasMoveLimit());
  EXPECT_EQ(clock.ms_left, 7200000 + 3600000 + 1800000);
  ChargeMoves(clock, 1000, 6000);
  EXPECT_EQ(clock.stage_index, 2u);
  EXPECT_EQ(clock.ms_left, 7200000 + 3600000 + 1800000 - 1000 * 1000);
}

TEST(Clock, LastStageThatWouldEndIsKept) {
  Clock clock = ClockWith({{2, 1000, 0, 0}});
  ChargeMoves(clock, 5, 0);
  EXPECT_EQ(clock.stage_index, 0u);
  EXPECT_EQ(clock.moves_left, 1u);
  EXPECT_EQ(clock.ms_left, 3000);
}

TEST(Clock, ResetGoesBackToTheFirstStage) {
  Clock clock = ClockWith({{1, 1000, 0, 0}, {-1, 5000, 100, 0}});
  ChargeMoves(clock, 3, 50);
  ASSERT_EQ(clock.stage_index, 1u);
  clock.Reset();
  EXPECT_EQ(clock.stage_index, 0u);
  EXPECT_EQ(clock.moves_left, 1u);
  EXPECT_EQ(clock.ms_left, 1000);
  EXPECT_EQ(clock.repeat, 0);
}

TEST(TimeControl, SwitchChargesTheMoverAndKeepsRunningForTheOther) {
  TimeControl control;
  control.Start(At(10000));
  control.Switch(At(12500));
  EXPECT_TRUE(control.running);
  EXPECT_EQ(control.active, BLACK_CLOCK);
  EXPECT_EQ(control.clocks[WHITE_CLOCK].ms_left, 300000 - 2500);
  EXPECT_EQ(control.clocks[WHITE_CLOCK].moves_left, 39u);
  control.Switch(At(13500));
  EXPECT_EQ(control.active, WHITE_CLOCK);
  EXPECT_EQ(control.clocks[BLACK_CLOCK].ms_left, 300000 - 1000);
}

TEST(TimeControl, StopChargesTimeButNoMove) {
  TimeControl control;
  control.Start(At(1000));
  EXPECT_EQ(control.Stop(At(1750)), 750);
  EXPECT_FALSE(control.running);
  EXPECT_EQ(control.clocks[WHITE_CLOCK].ms_left, 300000 - 750);
  EXPECT_EQ(control.clocks[WHITE_CLOCK].moves_left, 40u);
  EXPECT_EQ(control.Stop(At(9000)), 0);
  EXPECT_EQ(control.clocks[WHITE_CLOCK].ms_left, 300000 - 750);
}

TEST(TimeControl, SecondStartKeepsTheFirstStartingTime) {
  TimeControl control;
  control.Start(At(1000));
  control.Start(At(5000));
  EXPECT_EQ(control.Stop(At(6000)), 5000);
}

TEST(TimeControl, SwitchOfAStoppedClockCountsTheMoveWithoutTime) {
  TimeControl control;
  control.Set({{-1, 60000, 2000, 0}}, {{-1, 60000, 2000, 0}}, WHITE_CLOCK);
  control.Switch(At(99999));
  EXPECT_FALSE(control.running);
  EXPECT_EQ(control.clocks[WHITE_CLOCK].ms_left, 62000);
  EXPECT_EQ(control.active, BLACK_CLOCK);
}

TEST(TimeControl, SetGivesEachClockItsListAndResets) {
  TimeControl control;
  control.Start(At(0));
  control.Switch(At(1000));
  control.Set({{-1, 60000, 0, 0}}, {{10, 30000, 0, 0}, {-1, 1000, 0, 0}}, BLACK_CLOCK);
  EXPECT_FALSE(control.running);
  EXPECT_EQ(control.active, BLACK_CLOCK);
  EXPECT_EQ(control.clocks[WHITE_CLOCK].ms_left, 60000);
  EXPECT_EQ(control.clocks[WHITE_CLOCK].moves_left, NO_MOVE_LIMIT);
  EXPECT_EQ(control.clocks[BLACK_CLOCK].ms_left, 30000);
  EXPECT_EQ(control.clocks[BLACK_CLOCK].moves_left, 10u);
}

TEST(TimeControl, ResetKeepsTheStagesAndStopsTheClock) {
  TimeControl control;
  control.Set({{-1, 60000, 0, 0}}, {{-1, 60000, 0, 0}}, WHITE_CLOCK);
  control.Start(At(0));
  control.Switch(At(4000));
  control.Reset(BLACK_CLOCK);
  EXPECT_FALSE(control.running);
  EXPECT_EQ(control.active, BLACK_CLOCK);
  EXPECT_EQ(control.clocks[WHITE_CLOCK].ms_left, 60000);
  EXPECT_EQ(control.clocks[WHITE_CLOCK].stages[0].time_ms, 60000);
}

}  // namespace
