#include <gtest/gtest.h>

#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "chess/move_generator.h"
#include "chess/user_board.h"

namespace {

const std::string INITIAL_FEN = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1";
const std::string DEFAULT_TAGS =
    "[Event \"?\"]\n[Site \"?\"]\n[Date \"????.??.??\"]\n[Round \"-\"]\n[White \"?\"]\n"
    "[Black \"?\"]\n";

void Play(UserBoard& game, const std::vector<std::string>& moves) {
  for (const std::string& move : moves) game.MakeMove(move);
}

std::string Written(const UserBoard& game, const PGNInfo& info = {}) {
  std::ostringstream out;
  game.WritePGN(out, info);
  return out.str();
}

UserBoard Read(const std::string& text, PGNInfo& info) {
  UserBoard game;
  std::istringstream in(text);
  game.ReadPGN(in, info);
  return game;
}

// A game of random legal moves, the same one on every run for a seed.
UserBoard RandomGame(unsigned seed, int plies) {
  std::mt19937 random(seed);
  UserBoard game;
  for (int ply = 0; ply < plies && !game.current.IsOver(); ++ply) {
    std::vector<Move> legal;
    GenerateMoves(legal, game.current);
    game.MakeMove(legal[random() % legal.size()]);
  }
  return game;
}

// Lines wrap at the first token that would pass seventy characters.
TEST(PgnWriting, TagsMovesAndResult) {
  UserBoard game;
  Play(game, {"e4", "e5", "Nf3", "Nc6", "Bb5"});
  EXPECT_EQ(Written(game), DEFAULT_TAGS +
                               "[Result \"*\"]\n[TimeControl \"?\"]\n\n"
                               "1. e4 e5 2. Nf3 Nc6 3. Bb5 \n*\n");
  Play(game, {"Nf6", "O-O", "Nxe4", "Re1", "Nd6", "Nxe5", "Be7", "Bf1", "Nxe5", "Rxe5", "O-O",
              "d4", "Bf6", "Re1", "Re8", "c3", "Rxe1", "Qxe1", "Ne8", "Bf4", "d5", "Bd3", "g6",
              "Nd2", "Ng7", "Qe2", "c6", "Re1", "Bf5", "Bxf5", "Nxf5", "Nf3", "Ng7", "Be5",
              "Bxe5", "Qxe5", "Qd6", "Qe7", "Qxe7", "Rxe7"});
  PGNInfo info;
  info.event = "Club match";
  info.SetDate(2024, 3, -1);
  info.SetRound(2, 1);
  info.white = "Brask";
  info.SetTimeControl(40, 300);
  EXPECT_EQ(Written(game, info),
            "[Event \"Club match\"]\n[Site \"?\"]\n[Date \"2024.03.??\"]\n[Round \"2.1\"]\n"
            "[White \"Brask\"]\n[Black \"?\"]\n[Result \"*\"]\n[TimeControl \"40/300\"]\n\n"
            "1. e4 e5 2. Nf3 Nc6 3. Bb5 Nf6 4. O-O Nxe4 5. Re1 Nd6 6. Nxe5 Be7 \n"
            "7. Bf1 Nxe5 8. Rxe5 O-O 9. d4 Bf6 10. Re1 Re8 11. c3 Rxe1 12. Qxe1 \n"
            "Ne8 13. Bf4 d5 14. Bd3 g6 15. Nd2 Ng7 16. Qe2 c6 17. Re1 Bf5 18. Bxf5 \n"
            "Nxf5 19. Nf3 Ng7 20. Be5 Bxe5 21. Qxe5 Qd6 22. Qe7 Qxe7 23. Rxe7 \n*\n");
}

TEST(PgnWriting, MoveNumbersOfGamesThatStartWithBlack) {
  UserBoard game;
  game.SetFEN("4k3/8/8/8/8/8/8/R3K3 b Q - 7 40");
  Play(game, {"Kd7", "Ra7+", "Kc6"});
  EXPECT_NE(Written(game).find("\n\nKd7 41. Ra7+ Kc6 \n*\n"), std::string::npos);
  // A position set up with Black on move and no move number before it.
  UserBoard edited;
  edited.SetPosition(game.start);
  edited.MakeMove("Kd8");
  EXPECT_NE(Written(edited).find("\n\n1. ... Kd8 \n*\n"), std::string::npos);
}

TEST(PgnRoundTrip, WrittenGamesReadBackToTheSameEnd) {
  for (unsigned seed = 1; seed <= 12; ++seed) {
    const UserBoard game = RandomGame(seed, 300);
    PGNInfo info;
    UserBoard read = Read(Written(game), info);
    EXPECT_EQ(read.GetFEN(), INITIAL_FEN);
    EXPECT_EQ(read.next_moves.size(), game.moves.size());
    read.NextAll();
    EXPECT_EQ(read.GetFEN(), game.GetFEN()) << seed;
    EXPECT_EQ(read.current.Key(), game.current.Key());
    EXPECT_EQ(read.current.result, game.current.result);
    EXPECT_EQ(read.current.reason, game.current.reason);
    EXPECT_EQ(read.moves, game.moves);
  }
}

TEST(PgnReading, TagsCommentsAndMoveNumbersInTheUsualForms) {
  const std::string text =
      "[White \"Anderssen\"]\n"
      "[Annotator \"nobody\"]\n"
      "[Event \"Casual game\"]\n"
      "[Result \"1-0\"]\r\n"
      "\n"
      "1.e4 e5 2. Bc4 {a comment\n over lines} Nc6 (2... Nf6 3. d3 (3. Nc3) Bc5) 3. Qh5 $1\n"
      "; a line of comment 4. a4\n"
      "3...Nf6?! {short}{twice} 4.Qxf7# {see 1. e4 1-0} 1-0 trailing words\n"
      "[Event \"the next game\"]\n";
  PGNInfo info;
  info.site = "kept";
  info.fen = "stale";
  std::istringstream in(text);
  UserBoard game;
  game.ReadPGN(in, info);
  EXPECT_EQ(info.white, "Anderssen");
  EXPECT_EQ(info.event, "Casual game");
  EXPECT_EQ(info.site, "kept");
  EXPECT_EQ(info.fen, "");
  EXPECT_EQ(game.GetFEN(), INITIAL_FEN);
  EXPECT_EQ(game.next_moves.size(), 7u);
  game.NextAll();
  EXPECT_EQ(game.current.result, RESULT_WHITE_WINS);
  EXPECT_EQ(game.current.reason, REASON_CHECKMATE);
  std::string rest;
  std::getline(in, rest);
  EXPECT_EQ(rest, "[Event \"the next game\"]");
}

TEST(PgnReading, AGameFromAPositionWithBlackOnMove) {
  const std::string start = "4k3/8/8/8/8/8/8/R3K3 b Q - 7 40";
  for (const std::string moves : {"40... Kd7 41. Ra7+ *", "40...Kd7 41.Ra7+ *", "... Kd7 Ra7+ *"}) {
    PGNInfo info;
    UserBoard game = Read("[FEN \"" + start + "\"]\n\n" + moves + "\n", info);
    EXPECT_EQ(info.fen, start);
    EXPECT_EQ(game.GetFEN(), start);
    EXPECT_EQ(game.start_ply, 79);
    game.NextAll();
    EXPECT_EQ(game.GetFEN(), "8/R2k4/8/8/8/8/8/4K3 b - - 9 41") << moves;
  }
}

TEST(PgnReading, FailuresChangeNothing) {
  const struct {
    const char* text;
    bool is_io_error;  // else an illegal move
  } bad[] = {
      {"", true},
      {"1. e4 e5", true},                               // no result
      {"[Event \"x\"]\n", true},
      {"[Event x]\n1. e4 *", true},
      {"[Event \"x\"\n1. e4 *", true},
      {"[Event \n1. e4 *", true},
      {"1. ... e4 *", true},                            // "..." with White on move
      {"1. e4 ... e5 *", true},
      {"[FEN \"8/8 w - - 0\"]\n *", true},
      {"1. e4 e5 2. Ke3 Nc6 *", false},
      {"1. e4 e5 2. Nf3 Nc6 3. Bb5 a6 4. Bb5 *", false},
      {"1. e4 {unclosed comment *", true},
      {"1. e4 (1. d4 (1. c4) *", true},  // an unclosed variation
  };
  UserBoard game;
  Play(game, {"d4", "d5"});
  const std::string fen = game.GetFEN();
  for (const auto& c : bad) {
    PGNInfo info;
    std::istringstream in(c.text);
    if (c.is_io_error)
      EXPECT_THROW(game.ReadPGN(in, info), UserBoard::io_error) << c.text;
    else
      EXPECT_THROW(game.ReadPGN(in, info), UserBoard::invalid_move) << c.text;
    EXPECT_EQ(in.exceptions(), std::ios::goodbit);
    EXPECT_EQ(game.GetFEN(), fen);
    EXPECT_EQ(game.moves.size(), 2u);
    EXPECT_EQ(info.event, "?");
  }
  PGNInfo info;
  std::istringstream in("[FEN \"4k3/8/8/8/8/8/8/4K2r b - - 0 1\"]\n *");
  EXPECT_THROW(game.ReadPGN(in, info), UserBoard::invalid_position);
  EXPECT_EQ(game.GetFEN(), fen);
}

TEST(PgnWriting, AFailingStreamIsAnIoError) {
  UserBoard game;
  game.MakeMove("e4");
  std::ostringstream out;
  out.setstate(std::ios::failbit);
  EXPECT_THROW(game.WritePGN(out, PGNInfo{}), UserBoard::io_error);
  EXPECT_EQ(out.exceptions(), std::ios::goodbit);
}

TEST(PgnInfo, SettersWriteTheTagForms) {  // the two-part forms are written in a game above
  PGNInfo info;
  info.SetRound(3);
  info.SetTimeControl(300);
  info.SetDate(987, -1, 30);
  EXPECT_EQ(info.round + " " + info.time_control + " " + info.date, "3 300 0987.??.30");
  info.SetDate(-1, -1, -1);
  EXPECT_EQ(info.date, "????.??.??");
}

}  // namespace
