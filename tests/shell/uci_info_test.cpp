#include "shell/uci_info.h"

#include <gtest/gtest.h>

#include "chess/user_board.h"
#include "shell/error_command.h"
#include "shell/uci_position.h"

namespace {

TEST(UciScoreText, CentipawnsAndMatesInMovesFromTheEnginesView) {
  const struct {
    std::int32_t score;
    const char* text;
  } cases[] = {
      {0, "cp 0"},           {-45, "cp -45"},          {31767, "cp 31767"},
      {-31767, "cp -31767"}, {MATE - 1, "mate 1"},     {MATE - 3, "mate 2"},
      {MATE - 4, "mate 2"},  {-(MATE - 2), "mate -1"}, {-(MATE - 4), "mate -2"},
  };
  for (const auto& c : cases) EXPECT_EQ(UciScoreText(c.score), c.text) << c.score;
}

UserBoard Game(const std::string& fen) {
  UserBoard game;
  game.SetFEN(fen);
  return game;
}

Move Parsed(const UserBoard& game, const char* text) {
  Move move = INVALID;
  EXPECT_EQ(game.ParseMove(text, move), PARSE_OK) << text;
  return move;
}

TEST(UciMoveText, LowerCaseCoordinatesForEveryKindOfMove) {
  const struct {
    const char* fen;
    const char* move;
    const char* text;
  } cases[] = {
      {"4k3/P7/8/8/8/8/8/4K3 w - - 0 1", "a8=N", "a7a8n"},
      {"4k3/P7/8/8/8/8/8/4K3 w - - 0 1", "a8=Q", "a7a8q"},
      {"4k3/8/8/8/8/8/p7/4K3 b - - 0 1", "a1=R", "a2a1r"},
      {"4k3/8/8/8/8/8/p7/4K3 b - - 0 1", "a1=Q", "a2a1q"},
      {"r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1", "O-O", "e1g1"},
      {"r3k2r/8/8/8/8/8/8/R3K2R b KQkq - 0 1", "O-O-O", "e8c8"},
      {"4k3/8/8/3pP3/8/8/8/4K3 w - d6 0 1", "exd6", "e5d6"},
  };
  for (const auto& c : cases) {
    const UserBoard game = Game(c.fen);
    EXPECT_EQ(UciMoveText(game.current, Parsed(game, c.move)), c.text) << c.fen;
  }
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
}

std::vector<std::string> Words(const std::string& text) {
  std::vector<std::string> words;
  std::size_t start = 0;
  while (start < text.size()) {
    const std::size_t end = text.find(' ', start);
    words.push_back(text.substr(start, end - start));
    if (end == std::string::npos) break;
    start = end + 1;
  }
  return words;
}

TEST(ParseUciPosition, BuildsTheWholePosition) {
  const struct {
    const char* line;
    const char* fen;
  } cases[] = {
      {"position startpos", "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1"},
      {"position startpos moves e2e4 c7c5 g1f3",
       "rnbqkbnr/pp1ppppp/8/2p5/4P3/5N2/PPPP1PPP/RNBQKB1R b KQkq - 1 2"},
      {"position fen 4k3/P7/8/8/8/8/8/4K3 w - - 0 1 moves a7a8q e8d7",
       "Q7/3k4/8/8/8/8/8/4K3 w - - 1 2"},
      {"position fen r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1 moves e1g1 e8c8",
       "2kr3r/8/8/8/8/8/8/R4RK1 w - - 2 2"},
      // A third repetition and the game goes on: the front end decides draws by rule.
      {"position startpos moves g1f3 g8f6 f3g1 f6g8 g1f3 g8f6 f3g1 f6g8 e2e4",
       "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq e3 0 5"},
  };
  for (const auto& c : cases) {
    const UserBoard game = ParseUciPosition(Words(c.line), c.line);
    EXPECT_EQ(game.GetFEN(), c.fen) << c.line;
    EXPECT_FALSE(game.current.IsOver()) << c.line;
  }
}

TEST(ParseUciPosition, RefusesWithTheReason) {
  const struct {
    const char* line;
    const char* error;
  } cases[] = {
      {"position", "Error (missing parameters): position"},
      {"position start", "Error (invalid argument(s)): position start"},
      {"position startpos e2e4", "Error (invalid argument(s)): position startpos e2e4"},
      {"position startpos moves e2e4 e7e5 e4e5", "Illegal move: e4e5"},
      {"position startpos moves e2e5", "Illegal move: e2e5"},
      {"position startpos moves xyz", "Illegal move: xyz"},
      {"position fen", "Error (input inconsistent with FEN standard): position fen"},
      {"position fen 8/8/8/8/8/8/8/8 w - - 0 1",
       "Error (Illegal position): position fen 8/8/8/8/8/8/8/8 w - - 0 1"},
      // Mate ends the game; nothing can follow it.
      {"position startpos moves f2f3 e7e5 g2g4 d8h4 a2a3", "Illegal move: a2a3"},
  };
  for (const auto& c : cases) {
    try {
      ParseUciPosition(Words(c.line), c.line);
      ADD_FAILURE() << c.line;
    } catch (const ErrorCommand& error) {
      EXPECT_STREQ(error.what(), c.error);
    }
  }
}

}  // namespace
