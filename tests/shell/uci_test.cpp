// The UCI side of the engine: "go" parameters and the search they ask for, the texts of "info"
// lines, "position" and "setoption".
#include "shell/uci_go.h"

#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <tuple>

#include "chess/basic.h"
#include "chess/user_board.h"
#include "search/optimize_interface.h"
#include "search/search_settings.h"
#include "shell/error_command.h"
#include "shell/game_state.h"
#include "shell/tee_stream.h"
#include "shell/uci_info.h"
#include "shell/uci_options.h"
#include "shell/uci_position.h"
#include "shell/uci_protocol.h"

namespace BraskInterfaces {
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

TEST(UciGoParsing, ReadsEveryParameterAndSearchMovesEndAtTheNextOne) {
  const UciGoParameters go = Parse(
      "wtime 61000 btime -250 winc 1000 binc 0 movestogo 12 movetime 500 depth 9 nodes "
      "5000000000 mate 3 infinite ponder searchmoves e2e4 g1f3");
  // btime: a flagged clock that the front end lets run on.
  EXPECT_EQ(std::tuple(go.time_ms[WHITE], go.time_ms[BLACK], go.increment_ms[WHITE],
                       go.increment_ms[BLACK], go.moves_to_go, go.move_time_ms),
            std::tuple(61000, -250, 1000, 0, 12, 500));
  EXPECT_EQ(go.nodes, 5000000000u);
  EXPECT_EQ(go.mate, 3);
  EXPECT_TRUE(go.infinite && go.ponder);
  EXPECT_EQ(go.search_moves, (std::vector<std::string>{"e2e4", "g1f3"}));
  const UciGoParameters other = Parse("searchmoves a2a3 b2b4 depth 4");
  EXPECT_EQ(other.search_moves, (std::vector<std::string>{"a2a3", "b2b4"}));
  EXPECT_EQ(other.depth, 4);
  EXPECT_EQ(other.time_ms[BLACK], UciGoParameters::NO_CLOCK);
  EXPECT_FALSE(other.infinite || other.ponder);
}

// Without a clock or a move time there is no time limit (-1: not checked here).
TEST(UciSearchRequest, KindDepthAndTimeLimitFollowTheParameters) {
  constexpr int HARD = 1000 - UCI_MOVE_OVERHEAD_MS;
  for (const auto& [text, type, depth, max_time_limit, variable_time_limit] : {
      std::tuple{"wtime 1000 btime 1000", SearchType::normal, 0, -1, -1},
      {"ponder wtime 1000 btime 1000", SearchType::pondering, 0, -1, -1},
      {"infinite wtime 1000 btime 1000", SearchType::analyze, 0, 0, 0},
      {"depth 7", SearchType::normal, 7, 0, 0},
      {"mate 3", SearchType::normal, 6, 0, 0},
      {"mate 3 depth 4", SearchType::normal, 4, 0, 0},
      {"btime 500", SearchType::normal, 0, 0, 0},
      {"movetime 1000 wtime 5 btime 5", SearchType::normal, 0, HARD, 0},
      {"movetime 1", SearchType::normal, 0, UCI_MIN_THINKING_TIME_MS, 0},
  }) {
    const SearchRequest request = UciSearchRequest(Parse(text), WHITE);
    EXPECT_EQ(request.type, type) << text;
    EXPECT_EQ(request.max_depth, depth) << text;
    if (max_time_limit < 0) continue;
    EXPECT_EQ(request.max_time_limit, max_time_limit) << text;
    EXPECT_EQ(request.variable_time_limit, variable_time_limit) << text;
  }
}

TEST(UciSearchRequest, TheSideOnMoveUsesItsOwnClockAndIncrement) {
  const UciGoParameters go = Parse("wtime 60000 btime 1000 winc 0 binc 0");
  EXPECT_GT(UciSearchRequest(go, WHITE).variable_time_limit,
            10 * UciSearchRequest(go, BLACK).variable_time_limit);
  const UciGoParameters with_increment = Parse("wtime 10000 btime 10000 winc 0 binc 2000");
  EXPECT_GT(UciSearchRequest(with_increment, BLACK).variable_time_limit,
            UciSearchRequest(with_increment, WHITE).variable_time_limit + 1000);
}

// Games at 1 s + 0.01 s a move and at 40 moves in a minute, with a front end that takes a few
// milliseconds more each time, keep the clock above zero for longer than games last, even when
// the search runs into the hard limit at every move of the first. The hard limit leaves the
// overhead and a twentieth of the clock, unless the clock is too low for anything but the minimum.
TEST(UciSearchRequest, LimitsStayInsideTheClockAndGamesNeverFlag) {
  constexpr int LATENCY_MS = 5;
  for (const auto& [moves_per_control, always_hard] :
       {std::pair{0, false}, {0, true}, {40, false}}) {
    std::int64_t clock = moves_per_control == 0 ? 1000 : 60000;
    for (int move = 0; move < 150; ++move) {
      UciGoParameters go;
      go.time_ms[WHITE] = clock;
      go.increment_ms[WHITE] = moves_per_control == 0 ? 10 : 0;
      if (moves_per_control != 0) go.moves_to_go = moves_per_control - move % moves_per_control;
      const SearchRequest request = UciSearchRequest(go, WHITE);
      SCOPED_TRACE("clock " + std::to_string(clock) + " move " + std::to_string(move));
      ASSERT_GE(request.variable_time_limit, UCI_MIN_THINKING_TIME_MS);
      ASSERT_LE(request.variable_time_limit, request.max_time_limit);
      ASSERT_TRUE(request.max_time_limit <= clock - clock / 20 - UCI_MOVE_OVERHEAD_MS ||
                  request.max_time_limit == UCI_MIN_THINKING_TIME_MS);
      const int used = always_hard ? request.max_time_limit : request.variable_time_limit;
      clock += go.increment_ms[WHITE] - used - LATENCY_MS;
      ASSERT_GT(clock, 0) << (always_hard ? " at the hard limit" : "");
      if (go.moves_to_go == 1) clock += 60000;
    }
  }
}

TEST(UciScoreText, CentipawnsAndMatesInMovesFromTheEnginesView) {
  for (const auto& [score, text] :
       {std::pair{0, "cp 0"}, {-45, "cp -45"}, {31767, "cp 31767"}, {-31767, "cp -31767"},
        {MATE - 1, "mate 1"}, {MATE - 3, "mate 2"}, {MATE - 4, "mate 2"}, {-(MATE - 2), "mate -1"},
        {-(MATE - 4), "mate -2"}})
    EXPECT_EQ(UciScoreText(score), text) << score;
}

Move Parsed(const UserBoard& game, const char* text) {
  Move move = INVALID;
  EXPECT_EQ(game.ParseMove(text, move), PARSE_OK) << text;
  return move;
}

TEST(UciLineText, StopsAtTheFirstMoveThatIsNotLegalWhereItStands) {
  UserBoard game;
  const Move e4 = Parsed(game, "e2e4");
  UserBoard after = game;
  after.MakeMove(e4);
  const Move e5 = Parsed(after, "e7e5");
  EXPECT_EQ(UciLineText(game, {e4, e5}), (std::vector<std::string>{"e2e4", "e7e5"}));
  EXPECT_EQ(UciLineText(game, {e4, e4, e5}), (std::vector<std::string>{"e2e4"}));
  EXPECT_TRUE(UciLineText(game, {e5}).empty());
  // Promotions name their piece in lower case.
  game.SetFEN("4k3/8/8/8/8/8/p7/4K3 b - - 0 1");
  EXPECT_EQ(UciLineText(game, {Parsed(game, "a1=N")}), (std::vector<std::string>{"a2a1n"}));
}

TEST(ParseUciPosition, BuildsTheWholePosition) {
  for (const auto& [line, fen] : {
      std::tuple{"position fen 4k3/P7/8/8/8/8/8/4K3 w - - 0 1 moves a7a8q e8d7",
       "Q7/3k4/8/8/8/8/8/4K3 w - - 1 2"},
      {"position fen r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1 moves e1g1 e8c8",
       "2kr3r/8/8/8/8/8/8/R4RK1 w - - 2 2"},
      // A third repetition and the game goes on: the front end decides draws by rule.
      {"position startpos moves g1f3 g8f6 f3g1 f6g8 g1f3 g8f6 f3g1 f6g8 e2e4",
       "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq e3 0 5"},
  }) {
    const UserBoard game = ParseUciPosition(Words(line), line);
    EXPECT_EQ(game.GetFEN(), fen) << line;
    EXPECT_FALSE(game.current.IsOver()) << line;
  }
}

class SetUciOptionTest : public ::testing::Test {
 protected:
  SetUciOptionTest() : game(std::make_unique<UciProtocol>()) {}
  ~SetUciOptionTest() override { saved.Apply(); }

  UciProtocol& Protocol() { return static_cast<UciProtocol&>(game.Protocol()); }
  void Set(const std::string& name, const std::string& value) {
    SetUciOption(game, Protocol(), name, value, "setoption name " + name + " value " + value);
  }

  OptimizeInterface::Settings saved;  // the globals as they were, restored at the end
  GameState game;
};

// Settings take their value whatever the case of the name; engine options reach the search, the
// draw handler and the protocol.
TEST_F(SetUciOptionTest, SettingsAndEngineOptions) {
  Set("ENABLE_ETTC", "true");
  EXPECT_TRUE(enable_ettc);
  Set("checking_move_sorting_bonus_if_not_playing_for_mate[3]", "-7");
  EXPECT_EQ(checking_move_sorting_bonus_if_not_playing_for_mate[3], -7);
  EXPECT_EQ(checking_move_sorting_bonus_if_not_playing_for_mate[2], 10);
  Set("Contempt", "-25");
  EXPECT_EQ(game.search.contempt, -25);
  EXPECT_EQ(game.draw_handler.contempt, -25);
  Set("personality", "vessimar");
  EXPECT_EQ(game.search.personality, -1000);
  Set("NalimovCache", "16");
  EXPECT_EQ(Protocol().nalimov_cache_mib, 16);
}

// The refusals of unknown names and bad words are also checked in the UCI transcripts.
TEST_F(SetUciOptionTest, RefusalsChangeNothing) {
  const bool ettc = enable_ettc;
  const std::int32_t bonus = capture_move_sorting_bonus[5];
  for (const auto& [name, value, message] : {
      std::tuple{"enable_ettc", "", "could not parse boolean: "},

      {"capture_move_sorting_bonus[5]", "512", "value out of bounds"},
      {"capture_move_sorting_bonus[5]", "12a", "integer argument expected"},
      {"capture_move_sorting_bonus[6]", "1", "unknown option"},
      {"capture_move_sorting_bonus", "1", "unknown option"},
      {"Contempt", "40000", "value out of bounds"},
      {"Hash", "0", "value out of bounds"},
  }) {
    const std::string line = std::string("setoption name ") + name + " value " + value;
    try {
      Set(name, value);
      ADD_FAILURE() << line;
    } catch (const ErrorCommand& error) {
      EXPECT_EQ(error.what(), std::string("Error (") + message + "): " + line);
    }
  }
  EXPECT_EQ(enable_ettc, ettc);
  EXPECT_EQ(capture_move_sorting_bonus[5], bonus);
  EXPECT_EQ(game.search.contempt, 0);
  EXPECT_EQ(Protocol().personality, 0);
}

}  // namespace
}  // namespace BraskInterfaces
