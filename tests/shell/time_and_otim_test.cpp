#include "shell/time_and_otim.h"

#include <gtest/gtest.h>

namespace {

TEST(EngineClockSide, TheOneComputerOrElseTheSideToMove) {
  EXPECT_EQ(EngineClockSide(false, true, WHITE_CLOCK), BLACK_CLOCK);
  EXPECT_EQ(EngineClockSide(true, false, BLACK_CLOCK), WHITE_CLOCK);
  EXPECT_EQ(EngineClockSide(false, false, BLACK_CLOCK), BLACK_CLOCK);
  EXPECT_EQ(EngineClockSide(true, true, WHITE_CLOCK), WHITE_CLOCK);
}

TEST(SetRemainingTime, CentisecondsOfTheWholeRange) {  // "time 1000": 10 s
  Clock clock;
  SetRemainingTime(clock, 1000);
  EXPECT_EQ(clock.ms_left, 10000);
  SetRemainingTime(clock, 2147483647);
  EXPECT_EQ(clock.ms_left, 21474836470);
  SetRemainingTime(clock, -5);
  EXPECT_EQ(clock.ms_left, -50);
  EXPECT_EQ(clock.moves_left, 40u);
}

TEST(ClockReport, ActiveClockFirstAndNoLimitAsMinusOne) {
  TimeControl control;
  control.Set({{40, 300000, 0, -1}}, {{-1, 60000, 0, 0}}, BLACK_CLOCK);
  control.clocks[WHITE_CLOCK].ms_left = -20;
  EXPECT_EQ(ClockReport(control, false, true),
            "time (active side):\nmoves_left: -1\nmilliseconds_left: 60000\nout_of_time: false\n"
            "time (passive side):\nmoves_left: 40\nmilliseconds_left: -20\nout_of_time: true\n"
            "player1 played by engine: false\nplayer2 played by engine: true\n");
}

}  // namespace
