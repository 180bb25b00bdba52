#include "shell/uci_go.h"

#include <gtest/gtest.h>

#include <sstream>

#include "chess/basic.h"
#include "shell/error_command.h"
#include "shell/tee_stream.h"

namespace {

std::vector<std::string> Words(const std::string& text) {
  std::istringstream stream(text);
  std::vector<std::string> words;
  for (std::string word; stream >> word;) words.push_back(word);
  return words;
}

UciGoParameters Parse(const std::string& text) {
  return ParseGoParameters(Words(text), "go " + text);
}

TEST(UciGoParsing, ReadsEveryParameter) {
  const UciGoParameters go = Parse(
      "wtime 61000 btime -250 winc 1000 binc 0 movestogo 12 movetime 500 depth 9 nodes "
      "5000000000 mate 3 infinite ponder searchmoves e2e4 g1f3");
  EXPECT_EQ(go.time_ms[WHITE], 61000);
  EXPECT_EQ(go.time_ms[BLACK], -250);  // a flagged clock that the front end lets run on
  EXPECT_EQ(go.increment_ms[WHITE], 1000);
  EXPECT_EQ(go.increment_ms[BLACK], 0);
  EXPECT_EQ(go.moves_to_go, 12);
  EXPECT_EQ(go.move_time_ms, 500);
  EXPECT_EQ(go.depth, 9);
  EXPECT_EQ(go.nodes, 5000000000u);
  EXPECT_EQ(go.mate, 3);
  EXPECT_TRUE(go.infinite);
  EXPECT_TRUE(go.ponder);
  EXPECT_EQ(go.search_moves, (std::vector<std::string>{"e2e4", "g1f3"}));
}

TEST(UciGoParsing, SearchMovesEndAtTheNextParameter) {
  const UciGoParameters go = Parse("searchmoves a2a3 b2b4 depth 4");
  EXPECT_EQ(go.search_moves, (std::vector<std::string>{"a2a3", "b2b4"}));
  EXPECT_EQ(go.depth, 4);
}

TEST(UciGoParsing, NothingGivenMeansNoClock) {
  const UciGoParameters go = Parse("");
  EXPECT_EQ(go.time_ms[WHITE], UciGoParameters::NO_CLOCK);
  EXPECT_EQ(go.time_ms[BLACK], UciGoParameters::NO_CLOCK);
  EXPECT_FALSE(go.infinite || go.ponder);
}

TEST(UciGoParsing, RefusesBadInputWithItsReason) {
  const struct {
    const char* text;
    const char* error;
  } cases[] = {
      {"depth", "Error (missing parameters): go depth"},
      {"depth x", "Error (integer argument expected): go depth x"},
      {"depth 7x", "Error (integer argument expected): go depth 7x"},
      {"depth 0", "Error (argument out of bounds): go depth 0"},
      {"depth 101", "Error (argument out of bounds): go depth 101"},
      {"movetime -5", "Error (argument out of bounds): go movetime -5"},
      {"winc -1", "Error (argument out of bounds): go winc -1"},
      {"movestogo 0", "Error (argument out of bounds): go movestogo 0"},
      {"nodes 99999999999999999999",
       "Error (integer argument expected): go nodes 99999999999999999999"},
      {"wtime 1000 fast", "Error (unknown parameter fast): go wtime 1000 fast"},
      {"searchmoves", "Error (missing parameters): go searchmoves"},
      {"searchmoves depth 3", "Error (missing parameters): go searchmoves depth 3"},
  };
  for (const auto& c : cases) {
    try {
      Parse(c.text);
      ADD_FAILURE() << c.text;
    } catch (const ErrorCommand& error) {
      EXPECT_STREQ(error.what(), c.error);
    }
  }
}

TEST(UciSearchRequest, KindAndDepthFollowTheParameters) {
  const struct {
    const char* text;
    SearchType type;
    int depth;
  } cases[] = {
      {"wtime 1000 btime 1000", SearchType::normal, 0},
      {"ponder wtime 1000 btime 1000", SearchType::pondering, 0},
      {"infinite", SearchType::analyze, 0},
      {"depth 7", SearchType::normal, 7},
      {"mate 3", SearchType::normal, 6},
      {"mate 3 depth 4", SearchType::normal, 4},
  };
  for (const auto& c : cases) {
    const SearchRequest request = UciSearchRequest(Parse(c.text), WHITE);
    EXPECT_EQ(request.type, c.type) << c.text;
    EXPECT_EQ(request.max_depth, c.depth) << c.text;
  }
}

TEST(UciSearchRequest, WithoutClockOrMoveTimeThereIsNoTimeLimit) {
  for (const char* text :
       {"infinite wtime 1000 btime 1000", "depth 5", "nodes 1000", "btime 500"}) {
    const SearchRequest request = UciSearchRequest(Parse(text), WHITE);
    EXPECT_EQ(request.max_time_limit, 0) << text;
    EXPECT_EQ(request.variable_time_limit, 0) << text;
  }
}

TEST(UciSearchRequest, MoveTimeIsAHardLimitLessTheOverhead) {
  const SearchRequest request = UciSearchRequest(Parse("movetime 1000 wtime 5 btime 5"), BLACK);
  EXPECT_EQ(request.max_time_limit, 1000 - UCI_MOVE_OVERHEAD_MS);
  EXPECT_EQ(request.variable_time_limit, 0);
  EXPECT_EQ(UciSearchRequest(Parse("movetime 1"), BLACK).max_time_limit, UCI_MIN_THINKING_TIME_MS);
}

TEST(UciSearchRequest, TheSideOnMoveUsesItsOwnClockAndIncrement) {
  const UciGoParameters go = Parse("wtime 60000 btime 1000 winc 0 binc 0");
  EXPECT_GT(UciSearchRequest(go, WHITE).variable_time_limit,
            10 * UciSearchRequest(go, BLACK).variable_time_limit);
  const UciGoParameters with_increment = Parse("wtime 10000 btime 10000 winc 0 binc 2000");
  EXPECT_GT(UciSearchRequest(with_increment, BLACK).variable_time_limit,
            UciSearchRequest(with_increment, WHITE).variable_time_limit + 1000);
}

TEST(UciSearchRequest, LimitsStayInsideTheClock) {
  const struct {
    std::int64_t clock, increment;
    int moves_to_go;
  } cases[] = {{1000, 10, 0}, {100, 0, 0},  {10000, 100, 0}, {300000, 0, 40},     {5000, 0, 1},
               {60, 1000, 0}, {-300, 0, 0}, {0, 0, 0},       {3600000, 30000, 0}, {2000, 0, 2}};
  for (const auto& c : cases) {
    UciGoParameters go;
    go.time_ms[WHITE] = c.clock;
    go.increment_ms[WHITE] = c.increment;
    go.moves_to_go = c.moves_to_go;
    const SearchRequest request = UciSearchRequest(go, WHITE);
    SCOPED_TRACE(std::to_string(c.clock) + "+" + std::to_string(c.increment));
    EXPECT_GE(request.variable_time_limit, UCI_MIN_THINKING_TIME_MS);
    EXPECT_LE(request.variable_time_limit, request.max_time_limit);
    // The hard limit leaves the overhead and a twentieth of the clock, unless the clock is too
    // low for anything but the minimum.
    EXPECT_TRUE(request.max_time_limit <= c.clock - c.clock / 20 - UCI_MOVE_OVERHEAD_MS ||
                request.max_time_limit == UCI_MIN_THINKING_TIME_MS);
  }
}

// A game at 1 s + 0.01 s a move: even a search that runs into the hard limit at every move, with
// a front end that takes a few milliseconds more each time, keeps the clock above zero for
// longer than games last.
TEST(UciSearchRequest, OneSecondPlusTenMillisecondsNeverFlags) {
  constexpr int LATENCY_MS = 5;
  for (const bool always_hard : {false, true}) {
    std::int64_t clock = 1000;
    for (int move = 1; move <= 150; ++move) {
      UciGoParameters go;
      go.time_ms[WHITE] = clock;
      go.increment_ms[WHITE] = 10;
      const SearchRequest request = UciSearchRequest(go, WHITE);
      const int used = always_hard ? request.max_time_limit : request.variable_time_limit;
      clock += 10 - used - LATENCY_MS;
      ASSERT_GT(clock, 0) << "move " << move << (always_hard ? " at the hard limit" : "");
    }
  }
}

}  // namespace
