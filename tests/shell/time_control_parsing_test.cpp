#include "shell/time_control_parsing.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <utility>

namespace {

// Stages as "moves/milliseconds+increment", with "r" for a repeating stage; the black list
// follows a ";" when it differs from the white one.
std::string Text(const TimeControlStages& stages) {
  std::ostringstream text;
  for (const TimeControlStage& stage : stages)
    text << (text.tellp() > 0 ? " " : "") << stage.moves << '/' << stage.time_ms << '+'
         << stage.increment_ms << (stage.repeat ? "r" : "");
  return text.str();
}

template <typename Parse>
std::string Outcome(const Parse& parse) {
  try {
    const TimeControlSetting setting = parse();
    return Text(setting.white) + (setting.black == setting.white ? "" : ";" + Text(setting.black));
  } catch (const TimeControlArgumentError& error) {
    return error.what();
  }
}

constexpr const char* BOUNDS = "argument out of bounds";
constexpr const char* NOT_A_NUMBER = "integer argument expected";

TEST(ParseLevel, StagesTimeFormsIncrementsAndRefusals) {
  const struct {
    const char *moves, *time, *increment, *expected;
  } cases[] = {
      {"40", "5", "0", "40/300000+0r"},  {"0", "5", "12", "-1/300000+12000r"},
      {"40", "0", "5", "40/10000+5000r"},  // "0" is ten seconds
      {"40", "2:30", "0", "40/150000+0r"}, {"40", "0:45", "0", "40/45000+0r"},
      {"40", "007", "0", "40/420000+0r"},  {"0", "2", "0.5", "-1/120000+500r"},
      {"0", "1", "1.001", "-1/60000+1001r"}, {"0", "1", "3.050", "-1/60000+3050r"},
      {"0", "1", "0.000", "-1/60000+0r"},  {"40", "35791", "0", "40/2147460000+0r"},
      {"-1", "5", "0", BOUNDS},            {"40", "-5", "0", BOUNDS},
      {"40", "0:0", "0", BOUNDS},          {"40", "1:-30", "0", BOUNDS},
      {"40", "5", "-1", BOUNDS},           {"40", "5", "-0.5", BOUNDS},
      {"40", "35792", "0", BOUNDS},        {"40", "5", "2147484", BOUNDS},  // beyond 32 bits
      {"40.5", "5", "0", NOT_A_NUMBER},    {"99999999999", "5", "0", NOT_A_NUMBER},
      {"-1", "5", "x", NOT_A_NUMBER},      {"40", "1:-30", "x", NOT_A_NUMBER},  // before bounds
  };
  for (const auto& c : cases)
    EXPECT_EQ(Outcome([&] { return ParseLevel(c.moves, c.time, c.increment); }), c.expected)
        << c.moves << ' ' << c.time << ' ' << c.increment;
  for (const char* text : {"x", "", "5m", "+5", "1:2:3", ":30", "1:", "1.5", " 5"})
    EXPECT_EQ(Outcome([&] { return ParseLevel("40", text, "0"); }), NOT_A_NUMBER) << text;
  for (const char* text : {"x", "0.1234", ".5", "5.", "1.x", "1.-5", "-.5", "0,5", "1e3", "0.5s"})
    EXPECT_EQ(Outcome([&] { return ParseLevel("40", "5", text); }), NOT_A_NUMBER) << text;
}

TEST(ParseTc, StagesForBothClocksOrEachAndRefusals) {
  for (const auto& [text, expected] : {
           std::pair{"40 120 0 20 60 0 0 30 5", "40/7200000+0 20/3600000+0 -1/1800000+5000"},
           {"40 2:30 0 0 5 0.5;0 1 2", "40/150000+0 -1/300000+500;-1/60000+2000"},
           {" 0 0 0 ; 0 5 0 ", "-1/10000+0;-1/300000+0"},
           {"40 120 0", "last time control must not terminate"},
           {"0 120 0;40 5 0", "last time control must not terminate"},
           {"0 120 0 40 5 0", "last time control must not terminate"},
           {"", "missing parameters"}, {"   ", "missing parameters"},
           {"40 120", "missing parameters"}, {"0 5 0 1", "missing parameters"},
           {"0 5 0;", "missing parameters"}, {";0 5 0", "missing parameters"},
           {"0 5 0;0 5", "missing parameters"}, {"0 5 0;0 5 0;0 5 0", "too many parameters"},
           {"0 five 0", NOT_A_NUMBER}, {"0 \"5\" 0", NOT_A_NUMBER}, {"40 5 0 0 x 0", NOT_A_NUMBER},
           {"-40 5 0 0 5 0", BOUNDS}, {"0 5 -2", BOUNDS}})
    EXPECT_EQ(Outcome([&] { return ParseTc(text); }), expected) << '"' << text << '"';
}

}  // namespace
