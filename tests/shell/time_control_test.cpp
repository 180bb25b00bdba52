// The game clocks: stages, switching and stopping, the parsing of time commands, the thinking
// time they give, and the clock report.
#include "shell/time_control.h"

#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <string>
#include <tuple>
#include <utility>

#include "shell/console_protocol.h"
#include "shell/game_state.h"
#include "shell/thinking_time.h"
#include "shell/time_and_otim.h"
#include "shell/time_control_parsing.h"

namespace {

TimePoint At(std::int64_t ms) { return TimePoint{true, ms / 1000, (ms % 1000) * 1000}; }

TEST(Clock, StagesRepeatFollowEachOtherAndTheLastOneLasts) {
  const TimeControlStages three = {
      {40, 7200000, 0, 0}, {20, 3600000, 0, 0}, {-1, 1800000, 5000, 0}};
  const struct {
    TimeControlStages stages;
    int moves;
    std::int64_t elapsed_ms;
    std::uint32_t stage, moves_left;
    std::int64_t ms_left;
  } cases[] = {
      {{{40, 300000, 0, -1}}, 39, 1000, 0, 1, 300000 - 39000},  // level 40 5 0
      {{{40, 300000, 0, -1}}, 40, 1000, 0, 40, 600000 - 40000},
      {{{-1, 300000, 12000, -1}}, 100, 10000, 0, NO_MOVE_LIMIT, 300000 + 100 * 2000},
      // tc 40 120 0 20 60 0 0 30 5: the move that ends a stage gets that stage's increment.
      {three, 40, 0, 1, 20, 7200000 + 3600000},
      {three, 60, 0, 2, NO_MOVE_LIMIT, 7200000 + 3600000 + 1800000},
      {three, 1060, 6000, 2, NO_MOVE_LIMIT, 12600000 - 60 * 6000 - 1000 * 1000},
      {{{2, 1000, 0, 0}}, 5, 0, 0, 1, 3000},  // the last stage that would end is kept
      {{{1, 1000, 0, 0}, {-1, 5000, 100, 0}}, 3, 50, 1, NO_MOVE_LIMIT, 6000 - 150 + 200},
  };
  for (const auto& c : cases) {
    Clock clock;
    clock.stages = c.stages;
    clock.Reset();
    for (int i = 0; i < c.moves; ++i) ChargeMove(clock, c.elapsed_ms);
    EXPECT_EQ(clock.stage_index, c.stage) << &c - cases;
    EXPECT_EQ(clock.moves_left, c.moves_left) << &c - cases;
    EXPECT_EQ(clock.ms_left, c.ms_left) << &c - cases;
    clock.Reset();
    EXPECT_EQ(clock.stage_index, 0u);
    EXPECT_EQ(clock.ms_left, c.stages[0].time_ms);
    EXPECT_EQ(clock.repeat, c.stages[0].repeat);
  }
}

// "white ms/moves, black ms/moves, the active clock, running or not"; -1 moves for no limit.
std::string State(const TimeControl& control) {
  std::ostringstream text;
  for (const Clock& clock : control.clocks)
    text << clock.ms_left << '/' << int(clock.moves_left) << ' ';
  text << (control.active == WHITE_CLOCK ? "white" : "black");
  if (control.running) text << " running";
  return text.str();
}

// Switch charges the mover and keeps the clock running for the other; Stop charges time but no
// move; a second Start keeps the first starting time; Set gives each clock its list.
TEST(TimeControl, StartSwitchStopSetAndReset) {
  TimeControl control;
  control.Start(At(10000));
  control.Switch(At(12500));
  EXPECT_EQ(State(control), "297500/39 300000/40 black running");
  EXPECT_EQ(control.Stop(At(13500)), 1000);
  EXPECT_EQ(control.Stop(At(19000)), 0);
  EXPECT_EQ(State(control), "297500/39 299000/40 black");
  control.Start(At(20000));
  control.Start(At(25000));
  EXPECT_EQ(control.Stop(At(26000)), 6000);
  control.Start(At(30000));
  control.Set({{-1, 60000, 2000, 0}}, {{10, 30000, 0, 0}, {-1, 1000, 0, 0}}, WHITE_CLOCK);
  EXPECT_EQ(State(control), "60000/-1 30000/10 white");
  control.Switch(At(99999));  // a stopped clock counts the move, but no time
  EXPECT_EQ(State(control), "62000/-1 30000/10 black");
  control.Start(At(100000));
  control.Reset(WHITE_CLOCK);
  EXPECT_EQ(State(control), "60000/-1 30000/10 white");
}

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
  for (const auto& [moves, time, increment, expected] : {
      std::tuple{"40", "5", "0", "40/300000+0r"},  {"0", "5", "12", "-1/300000+12000r"},
      {"40", "0", "5", "40/10000+5000r"},  // "0" is ten seconds
      {"40", "2:30", "0", "40/150000+0r"}, {"40", "0:45", "0", "40/45000+0r"},
      {"40", "007", "0", "40/420000+0r"},  {"0", "2", "0.5", "-1/120000+500r"},
      {"0", "1", "1.001", "-1/60000+1001r"}, {"0", "1", "3.050", "-1/60000+3050r"},
      {"0", "1", "0.000", "-1/60000+0r"},  {"40", "35791", "0", "40/2147460000+0r"},
      {"-1", "5", "0", BOUNDS},            {"40", "-5", "0", BOUNDS},
      {"40", "0:0", "0", BOUNDS},          {"40", "1:-30", "0", BOUNDS},
      {"40", "35792", "0", BOUNDS},        {"40", "5", "2147484", BOUNDS},  // beyond 32 bits
      {"40.5", "5", "0", NOT_A_NUMBER},    {"99999999999", "5", "0", NOT_A_NUMBER},
      {"-1", "5", "x", NOT_A_NUMBER},      {"40", "1:-30", "x", NOT_A_NUMBER},  // before bounds
  })
    EXPECT_EQ(Outcome([&] { return ParseLevel(moves, time, increment); }), expected)
        << moves << ' ' << time << ' ' << increment;
  for (const char* text : {"x", "", "5m", "+5", "1:2:3", ":30", "1:", "1.5", " 5"})
    EXPECT_EQ(Outcome([&] { return ParseLevel("40", text, "0"); }), NOT_A_NUMBER) << text;
  for (const char* text : {"x", "0.1234", ".5", "5.", "1.x", "1.-5", "-.5", "0,5", "1e3", "0.5s"})
    EXPECT_EQ(Outcome([&] { return ParseLevel("40", "5", text); }), NOT_A_NUMBER) << text;
}

// The transcript tests see more of the refusals on the command line.
TEST(ParseTc, StagesForBothClocksOrEachAndRefusals) {
  for (const auto& [text, expected] : {
           std::pair{"40 120 0 20 60 0 0 30 5", "40/7200000+0 20/3600000+0 -1/1800000+5000"},
           {"40 2:30 0 0 5 0.5;0 1 2", "40/150000+0 -1/300000+500;-1/60000+2000"},
           {" 0 0 0 ; 0 5 0 ", "-1/10000+0;-1/300000+0"},
           {"0 120 0;40 5 0", "last time control must not terminate"},
           {"0 120 0 40 5 0", "last time control must not terminate"},
           {"", "missing parameters"}, {"   ", "missing parameters"},
           {"0 5 0 1", "missing parameters"},
           {"0 5 0;", "missing parameters"}, {";0 5 0", "missing parameters"},
           {"0 5 0;0 5", "missing parameters"},
           {"0 five 0", NOT_A_NUMBER}, {"0 \"5\" 0", NOT_A_NUMBER}, {"40 5 0 0 x 0", NOT_A_NUMBER},
           {"-40 5 0 0 5 0", BOUNDS}, {"0 5 -2", BOUNDS}})
    EXPECT_EQ(Outcome([&] { return ParseTc(text); }), expected) << '"' << text << '"';
}

TEST(ThinkingTime, HardAndSoftLimitsOfTheClock) {
  for (const auto& [ms_left, moves_left, hard, soft] : {
      // Ran out: the minimum.
      std::tuple{std::int64_t{0}, 40u, 150, 150}, {-1, 40, 150, 150}, {-500000, 40, 150, 150},
      {3000, NO_MOVE_LIMIT, 150, 150},
      {600000, NO_MOVE_LIMIT, 600000 - 90000 - 90000, 600000 / 62},  // plans for thirty moves
      {100000, 40, 2500, 100000 / 82},  // the reserve would leave nothing: the even share
      {100000, 2, 100000 - 15000 - 6000, 100000 / 6},
      {100000, 1, 100000, 100000 / 4},  // the last move of a stage may take the whole clock
      // 6990513 * 0.15 = 1048576.95, which single precision rounds to 1048577.
      {6990513, NO_MOVE_LIMIT, 6990513 - 1048577 - 90000, 6990513 / 62},
      {200001, NO_MOVE_LIMIT, 200001 - 30000 - 90000, 200001 / 62},
      // Only the low 32 bits of the clock count, and huge move counts do not overflow.
      {(std::int64_t(1) << 32) + 3000, NO_MOVE_LIMIT, 150, 150},
      {std::int64_t(0xFFFFFFFF), 40, 150, 150},
      {0x7FFFFFFF, 0x7FFFFFFF, 150, 150},
  }) {
    Clock clock;
    clock.ms_left = ms_left;
    clock.moves_left = moves_left;
    int given_hard = -1, given_soft = -1;
    ThinkingTime(clock, given_hard, given_soft);
    EXPECT_EQ(given_hard, hard) << ms_left << " ms, " << moves_left << " moves";
    EXPECT_EQ(given_soft, soft) << ms_left << " ms, " << moves_left << " moves";
  }
}

// The game keeps a reserve where the clock rule would hand the search all the clock: the last
// move before a time control. The soft limit, and the hard one elsewhere, are the clock rule's.
TEST(ThinkingTime, TheGameKeepsAReserveOnTheLastMoveBeforeTheControl) {
  // -1: the clock rule's hard limit.
  for (const auto& [ms_left, moves_left, expected_hard] :
       {std::tuple{std::int64_t{2000}, 1u, 1800}, {50000, 1, 49000},  // a tenth, at most a second
        {100, 1, 150}, {0, 1, 150},  // never below the least thinking time
        {300000, 40, -1}}) {
    GameState game(std::make_unique<BraskInterfaces::ConsoleProtocol>());
    Clock& clock = game.time_control.clocks[WHITE];
    clock.ms_left = ms_left;
    clock.moves_left = moves_left;
    int hard = 0, soft = 0, rule_hard = 0, rule_soft = 0;
    game.ThinkingTime(WHITE, hard, soft);
    ThinkingTime(clock, rule_hard, rule_soft);
    EXPECT_EQ(hard, expected_hard == -1 ? rule_hard : expected_hard) << ms_left;
    EXPECT_EQ(soft, rule_soft) << ms_left;
  }
}

TEST(TimeAndOtim, EngineClockSideAndRemainingTime) {
  // The one clock of the computer, or else the side to move.
  for (const auto& [white, black, to_move, side] :
       {std::tuple{false, true, WHITE_CLOCK, BLACK_CLOCK}, {true, false, BLACK_CLOCK, WHITE_CLOCK},
        {false, false, BLACK_CLOCK, BLACK_CLOCK}, {true, true, WHITE_CLOCK, WHITE_CLOCK}})
    EXPECT_EQ(EngineClockSide(white, black, to_move), side);
  Clock clock;  // "time" counts centiseconds over the whole range
  for (const auto& [centiseconds, ms] :
       {std::pair{1000, std::int64_t{10000}}, {2147483647, 21474836470}, {-5, -50}}) {
    SetRemainingTime(clock, centiseconds);
    EXPECT_EQ(clock.ms_left, ms);
  }
  EXPECT_EQ(clock.moves_left, 40u);
}

TEST(TimePoint, ElapsedMsTruncatesTheMicroseconds) {
  const TimePoint start{true, 10, 999999};
  EXPECT_EQ(ElapsedMs(start, TimePoint{true, 11, 0}), 1);     // 1000 - 999
  EXPECT_EQ(ElapsedMs(start, TimePoint{true, 12, 0}), 1001);  // 2000 - 999
  EXPECT_EQ(ElapsedMs(TimePoint{true, 5, 500}, TimePoint{true, 3, 900}), -2000);
}

}  // namespace
