#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <vector>

#include "chess/user_board.h"

namespace {

const std::string INITIAL_FEN = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1";

void Play(UserBoard& game, const std::vector<std::string>& moves) {
  for (const std::string& move : moves) game.MakeMove(move);
}

UserBoard Game(const std::string& fen) {
  UserBoard game;
  game.SetFEN(fen);
  return game;
}

Move Word(const UserBoard& game, const std::string& text) {
  Move move = INVALID;
  EXPECT_EQ(game.ParseMove(text, move), PARSE_OK) << text;
  return move;
}

// The commands' answers for undo, next, remove, white, black and edit are checked by the
// transcript tests; here the keys and results behind them. Undoing a mate reopens the game, and
// a different move drops the moves put aside.
TEST(UserBoard, RewindThenNextAllComesBackToTheSameEndAndUndoReopensIt) {
  UserBoard game;
  Play(game, {"f3", "e5", "g4", "Qh4"});
  const std::string fen = game.GetFEN();
  game.Rewind();
  EXPECT_EQ(game.GetFEN(), INITIAL_FEN);
  EXPECT_EQ(game.current.Key(), game.start.Key());
  EXPECT_TRUE(game.moves.empty() && game.keys.empty());
  EXPECT_EQ(game.current.result, RESULT_RUNNING);
  EXPECT_EQ(game.next_moves.back(), Word(game, "f3"));
  game.NextAll();
  EXPECT_EQ(game.GetFEN(), fen);
  EXPECT_EQ(game.current.result, RESULT_BLACK_WINS);
  EXPECT_EQ(game.keys.size(), 4u);
  game.Undo();
  EXPECT_EQ(game.current.result, RESULT_RUNNING);
  EXPECT_EQ(game.current.reason, REASON_NONE);
  game.MakeMove(game.next_moves.back());  // the same word goes without a legality test
  game.Undo();
  game.MakeMove("Qg5");
  EXPECT_TRUE(game.next_moves.empty());
}

TEST(UserBoard, IllegalMovesChangeNothing) {
  UserBoard game;
  game.MakeMove("e4");
  const std::string fen = game.GetFEN();
  for (const char* text : {"e4", "Nf6+", "O-O", "xyz", "", "e7e4", "Ke7"})
    EXPECT_THROW(game.MakeMove(std::string(text)), UserBoard::invalid_move) << text;
  for (Move word : {Move{12345}, INVALID})
    EXPECT_THROW(game.MakeMove(word), UserBoard::invalid_move) << word;
  EXPECT_EQ(game.GetFEN(), fen);
}

// The result and reason after the moves from the position.
TEST(GameEnd, MateStalemateFiftyMovesMaterialAndRepetition) {
  const std::vector<std::string> round = {"Nf3", "Nf6", "Ng1", "Ng8"};
  const struct {
    std::string fen;
    std::vector<std::string> moves;
    std::uint32_t result, reason;
  } cases[] = {
      {INITIAL_FEN, {"f3", "e5", "g4"}, RESULT_RUNNING, REASON_NONE},
      {INITIAL_FEN, {"f3", "e5", "g4", "Qh4"}, RESULT_BLACK_WINS, REASON_CHECKMATE},
      {"rnb1kbnr/pppp1ppp/8/4p3/6Pq/5P2/PPPPP2P/RNBQKBNR w KQkq - 1 3", {}, RESULT_BLACK_WINS,
       REASON_CHECKMATE},
      {"7k/4Q3/6K1/8/8/8/8/8 w - - 0 1", {"Qf7"}, RESULT_DRAW, REASON_STALEMATE},
      {"7k/5Q2/6K1/8/8/8/8/8 b - - 0 1", {}, RESULT_DRAW, REASON_STALEMATE},
      // Fifty moves, but mate on the hundredth ply stands.
      {"7k/8/6K1/8/8/8/8/R7 w - - 99 80", {"Rb1"}, RESULT_DRAW, REASON_FIFTY_MOVES},
      {"7k/8/6K1/8/8/8/8/R7 w - - 99 80", {"Ra8"}, RESULT_WHITE_WINS, REASON_CHECKMATE},
      {"7k/8/6K1/8/8/8/8/R7 w - - 100 80", {}, RESULT_DRAW, REASON_FIFTY_MOVES},
      {"7k/8/6K1/8/8/8/8/R7 w - - 98 80", {}, RESULT_RUNNING, REASON_NONE},
      // One minor piece each at most cannot mate; two knights, two bishops, a pawn or a rook can.
      {"4k3/8/8/8/8/8/8/2B1K3 w - - 0 1", {}, RESULT_DRAW, REASON_NO_MATING_MATERIAL},
      {"4kb2/8/8/8/8/8/8/2B1K3 w - - 0 1", {}, RESULT_DRAW, REASON_NO_MATING_MATERIAL},
      {"4k3/8/8/8/8/8/3r4/2B1K3 w - - 0 1", {"Kxd2"}, RESULT_DRAW, REASON_NO_MATING_MATERIAL},
      {"4k3/8/8/8/8/8/8/1NN1K3 w - - 0 1", {}, RESULT_RUNNING, REASON_NONE},
      {"4k3/8/8/8/8/8/7P/4K3 w - - 0 1", {}, RESULT_RUNNING, REASON_NONE},
      {"4k3/8/8/8/8/8/8/R3K3 w - - 0 1", {}, RESULT_RUNNING, REASON_NONE},
      // The start position has stood three times, but it is not among the keys: only twice.
      {INITIAL_FEN, {"Nf3", "Nf6", "Ng1", "Ng8", "Nf3", "Nf6", "Ng1", "Ng8"}, RESULT_RUNNING,
       REASON_NONE},
      {INITIAL_FEN, {"Nf3", "Nf6", "Ng1", "Ng8", "Nf3", "Nf6", "Ng1", "Ng8", "Nf3"}, RESULT_DRAW,
       REASON_REPETITION},
  };
  for (const auto& c : cases) {
    UserBoard game = Game(c.fen);
    Play(game, c.moves);
    EXPECT_EQ(game.current.result, c.result) << c.fen << " " << c.moves.size();
    EXPECT_EQ(game.current.reason, c.reason) << c.fen << " " << c.moves.size();
    if (c.moves.empty()) {
      EXPECT_EQ(game.start.result, c.result) << c.fen;
    }
    if (c.result == RESULT_RUNNING) continue;
    for (Move word = 1; word < (1u << 15); ++word) ASSERT_FALSE(game.IsLegal(word)) << c.fen;
  }
}

TEST(GameEndTexts, ResultAndReason) {
  // The result texts themselves show in every transcript of a game's end.
  for (const auto& [result, reason, text] :
       {std::tuple{RESULT_WHITE_WINS, REASON_CHECKMATE, "White mates"},
        {RESULT_BLACK_WINS, REASON_CHECKMATE, "Black mates"},
        {RESULT_DRAW, REASON_CHECKMATE, "Black mates"},
        {RESULT_WHITE_WINS, REASON_RESIGNATION, "Black resigns"},
        {RESULT_BLACK_WINS, REASON_RESIGNATION, "White resigns"},
        {RESULT_UNKNOWN, REASON_RESIGNATION, "White resigns"}})
    EXPECT_EQ(UserBoard::ReasonText(result, reason), text) << result << ' ' << reason;
  const char* fixed[] = {"Lost on time",     "Stalemate",        "Insufficient material",
                         "Threefold repetition", "Mutual agreement", "Fifthy move rule",
                         "aborted",          "unknown reason",   "unknown reason"};
  for (std::uint32_t reason = REASON_ON_TIME; reason <= REASON_NONE + 1; ++reason)
    for (std::uint32_t result = 0; result <= 4; ++result)
      EXPECT_EQ(UserBoard::ReasonText(result, reason), fixed[reason - REASON_ON_TIME]);
}

}  // namespace
