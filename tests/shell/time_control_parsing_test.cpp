#include "shell/time_control_parsing.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string LevelError(std::string_view m, std::string_view t, std::string_view i) {
  try {
    ParseLevel(m, t, i);
  } catch (const TimeControlArgumentError& error) {
    return error.what();
  }
  return "accepted";
}

std::string TcError(std::string_view text) {
  try {
    ParseTc(text);
  } catch (const TimeControlArgumentError& error) {
    return error.what();
  }
  return "accepted";
}

TEST(ParseLevel, OneRepeatingStageForBothClocks) {
  const TimeControlSetting setting = ParseLevel("40", "5", "0");  // 40 moves in 300 s
  const TimeControlStages expected{{40, 300000, 0, -1}};
  EXPECT_EQ(setting.white, expected);
  EXPECT_EQ(setting.black, expected);
}

TEST(ParseLevel, ZeroMovesMeansNoMoveLimit) {
  EXPECT_EQ(ParseLevel("0", "5", "12").white, (TimeControlStages{{-1, 300000, 12000, -1}}));
}

TEST(ParseLevel, TimeForms) {
  EXPECT_EQ(ParseLevel("40", "0", "5").white[0].time_ms, 10000);  // "0" is 10 seconds
  EXPECT_EQ(ParseLevel("40", "2:30", "0").white[0].time_ms, 150000);
  EXPECT_EQ(ParseLevel("40", "0:45", "0").white[0].time_ms, 45000);
  EXPECT_EQ(ParseLevel("40", "007", "0").white[0].time_ms, 420000);
}

TEST(ParseLevel, FractionalIncrementsAreKeptInMilliseconds) {
  EXPECT_EQ(ParseLevel("0", "2", "0.5").white[0].increment_ms, 500);
  EXPECT_EQ(ParseLevel("40", "5", "0.1").white[0].increment_ms, 100);
  EXPECT_EQ(ParseLevel("0", "1", "2.25").white[0].increment_ms, 2250);
  EXPECT_EQ(ParseLevel("0", "1", "1.001").white[0].increment_ms, 1001);
  EXPECT_EQ(ParseLevel("0", "1", "3.050").white[0].increment_ms, 3050);
  EXPECT_EQ(ParseLevel("0", "1", "0.000").white[0].increment_ms, 0);
}

TEST(ParseLevel, ArgumentsOutOfBounds) {
  EXPECT_EQ(LevelError("-1", "5", "0"), "argument out of bounds");
  EXPECT_EQ(LevelError("40", "-5", "0"), "argument out of bounds");
  EXPECT_EQ(LevelError("40", "0:0", "0"), "argument out of bounds");
  EXPECT_EQ(LevelError("40", "1:-30", "0"), "argument out of bounds");
  EXPECT_EQ(LevelError("40", "5", "-1"), "argument out of bounds");
  EXPECT_EQ(LevelError("40", "5", "-0.5"), "argument out of bounds");
  // Times that milliseconds in 32 bits can't hold.
  EXPECT_EQ(LevelError("40", "35792", "0"), "argument out of bounds");
  EXPECT_EQ(LevelError("40", "5", "2147484"), "argument out of bounds");
  EXPECT_EQ(LevelError("40", "35791", "0"), "accepted");
}

TEST(ParseLevel, AnythingButNumbersIsRefused) {
  for (const char* text : {"x", "", "5m", "+5", "1:2:3", ":30", "1:", "1.5", " 5"})
    EXPECT_EQ(LevelError("40", text, "0"), "integer argument expected") << text;
  for (const char* text : {"x", "0.1234", ".5", "5.", "1.x", "1.-5", "-.5", "0,5", "1e3", "0.5s"})
    EXPECT_EQ(LevelError("40", "5", text), "integer argument expected") << text;
  EXPECT_EQ(LevelError("40.5", "5", "0"), "integer argument expected");
  EXPECT_EQ(LevelError("99999999999", "5", "0"), "integer argument expected");
}

TEST(ParseLevel, MalformedArgumentIsReportedBeforeBounds) {
  EXPECT_EQ(LevelError("-1", "5", "x"), "integer argument expected");
  EXPECT_EQ(LevelError("40", "1:-30", "x"), "integer argument expected");
}

TEST(ParseTc, StagesFollowEachOtherOnBothClocks) {
  const TimeControlSetting setting = ParseTc("40 120 0 20 60 0 0 30 5");
  const TimeControlStages expected{
      {40, 7200000, 0, 0}, {20, 3600000, 0, 0}, {-1, 1800000, 5000, 0}};
  EXPECT_EQ(setting.white, expected);
  EXPECT_EQ(setting.black, expected);
}

TEST(ParseTc, TwoListsForWhiteAndBlack) {
  const TimeControlSetting setting = ParseTc("40 2:30 0 0 5 0.5;0 1 2");
  EXPECT_EQ(setting.white, (TimeControlStages{{40, 150000, 0, 0}, {-1, 300000, 500, 0}}));
  EXPECT_EQ(setting.black, (TimeControlStages{{-1, 60000, 2000, 0}}));
  EXPECT_EQ(ParseTc(" 0 0 0 ; 0 5 0 ").white, (TimeControlStages{{-1, 10000, 0, 0}}));
}

TEST(ParseTc, LastStageMustLastToTheEnd) {
  EXPECT_EQ(TcError("40 120 0"), "last time control must not terminate");
  EXPECT_EQ(TcError("0 120 0;40 5 0"), "last time control must not terminate");
  EXPECT_EQ(TcError("0 120 0 40 5 0"), "last time control must not terminate");
}

TEST(ParseTc, ListsMustBeWholeTriples) {
  for (const char* text : {"", "   ", "40 120", "0 5 0 1", "0 5 0;", ";0 5 0", "0 5 0;0 5"})
    EXPECT_EQ(TcError(text), "missing parameters") << '"' << text << '"';
  EXPECT_EQ(TcError("0 5 0;0 5 0;0 5 0"), "too many parameters");
}

TEST(ParseTc, ValuesAreCheckedLikeThoseOfLevel) {
  EXPECT_EQ(TcError("0 five 0"), "integer argument expected");
  EXPECT_EQ(TcError("0 \"5\" 0"), "integer argument expected");
  EXPECT_EQ(TcError("40 5 0 0 x 0"), "integer argument expected");
  EXPECT_EQ(TcError("-40 5 0 0 5 0"), "argument out of bounds");
  EXPECT_EQ(TcError("0 5 -2"), "argument out of bounds");
}

}  // namespace
