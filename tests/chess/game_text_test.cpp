// Games as text: FEN and PGN, read and written.
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <utility>
#include <vector>

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
  // It reads back to the same game.
  UserBoard read;
  std::istringstream in(Written(game, info));
  read.ReadPGN(in, info);
  read.NextAll();
  EXPECT_EQ(read.moves, game.moves);
  EXPECT_EQ(read.current.Key(), game.current.Key());
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
  EXPECT_EQ(info.white + "|" + info.event + "|" + info.site + "|" + info.fen,
            "Anderssen|Casual game|kept|");
  EXPECT_EQ(game.GetFEN(), INITIAL_FEN);
  EXPECT_EQ(game.next_moves.size(), 7u);
  game.NextAll();
  EXPECT_EQ(game.current.reason, REASON_CHECKMATE);
  std::string rest;
  std::getline(in, rest);
  EXPECT_EQ(rest, "[Event \"the next game\"]");
}

// What a text reads as: the position after all its moves, or the exception. A refused text
// changes neither the game nor the tags.
TEST(PgnReading, GamesFromAPositionAndFailures) {
  const std::string start = "[FEN \"4k3/8/8/8/8/8/8/R3K3 b Q - 7 40\"]\n\n";
  const std::string end = "8/R2k4/8/8/8/8/8/4K3 b - - 9 41";
  constexpr const char* IO = "io_error";
  constexpr const char* MOVE = "invalid_move";
  const std::pair<std::string, std::string> cases[] = {
      {start + "40... Kd7 41. Ra7+ *\n", end},
      {start + "40...Kd7 41.Ra7+ *\n", end},
      {start + "... Kd7 Ra7+ *\n", end},
      {"", IO},
      {"[Event \"x\"]\n", IO},
      {"[Event x]\n1. e4 *", IO},
      {"[Event \"x\"\n1. e4 *", IO},
      {"[Event \n1. e4 *", IO},
      {"1. ... e4 *", IO},  // "..." with White on move
      {"1. e4 ... e5 *", IO},
      {"[FEN \"8/8 w - - 0\"]\n *", IO},
      {"1. e4 {unclosed comment *", IO},
      {"1. e4 (1. d4 (1. c4) *", IO},  // an unclosed variation
      {"1. e4 e5 2. Nf3 Nc6 3. Bb5 a6 4. Bb5 *", MOVE},
      {"[FEN \"4k3/8/8/8/8/8/8/4K2r b - - 0 1\"]\n *", "invalid_position"},
  };
  for (const auto& [text, expected] : cases) {
    UserBoard game;
    Play(game, {"d4", "d5"});
    const std::string before = game.GetFEN();
    PGNInfo info;
    std::istringstream in(text);
    std::string read;
    try {
      game.ReadPGN(in, info);
      EXPECT_EQ(game.start_ply, 79) << text;
      game.NextAll();
      read = game.GetFEN();
    } catch (const UserBoard::io_error&) {
      read = IO;
    } catch (const UserBoard::invalid_move&) {
      read = MOVE;
    } catch (const UserBoard::invalid_position&) {
      read = "invalid_position";
    }
    EXPECT_EQ(read, expected) << text;
    EXPECT_EQ(in.exceptions(), std::ios::goodbit);
    if (read != end) {
      EXPECT_EQ(game.GetFEN(), before) << text;
      EXPECT_EQ(info.event, "?") << text;
    }
  }
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

TEST(Fen, ClockAndMoveNumberFollowTheGame) {
  UserBoard game;
  game.SetFEN(INITIAL_FEN);
  const char* moves[] = {"Nf3", "Nf6", "Ng1", "Ng8", "Nf3", "Nf6", "Ng1",
                         "Ng8", "e4",  "e5",  "Nf3", "Nc6", "Bb5", "a6"};
  for (const char* move : moves) game.MakeMove(std::string(move));
  EXPECT_EQ(game.GetFEN(), "r1bqkbnr/1ppp1ppp/p1n5/1B2p3/4P3/5N2/PPPP1PPP/RNBQK2R w KQkq - 0 8");
  game.Undo();
  EXPECT_EQ(game.GetFEN(), "r1bqkbnr/pppp1ppp/2n5/1B2p3/4P3/5N2/PPPP1PPP/RNBQK2R b KQkq - 3 7");
  game.SetFEN("4k3/8/8/8/8/8/8/R3K3 b Q - 7 40");
  game.MakeMove("Kd7");
  EXPECT_EQ(game.GetFEN(), "8/3k4/8/8/8/8/8/R3K3 w Q - 8 41");
  EXPECT_EQ(game.start_ply, 79);
}

// What a text reads as: the FEN written back ("": the text itself), or the exception; a refused
// text changes nothing.
TEST(Fen, ReadingLooseSpellingsBadTextAndPositionsThatCannotStand) {
  const std::string board = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR";
  constexpr const char* IO = "io_error";
  constexpr const char* INVALID_POSITION = "invalid_position";
  std::vector<std::pair<std::string, std::string>> cases = {
      {INITIAL_FEN, ""},
      {"r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1", ""},
      {"rnbqkbnr/ppp1p1pp/8/3pPp2/8/8/PPPP1PPP/RNBQKBNR w KQkq f6 0 3", ""},
      {"rnbqkbnr/pppp1ppp/8/8/3Pp3/8/PPP1PPPP/RNBQKBNR b Kq d3 0 3", ""},
      {"4k3/8/8/8/8/8/8/4K2R w K - 37 120", ""},
      {"r3k3/8/8/8/8/8/8/4K3 b q - 100 51", ""},
      {"7k/5Q2/6K1/8/8/8/8/8 b - - 0 1", ""},
      {"  " + board + " \t w  KQkq -  0 1\n", INITIAL_FEN},
      {"r3k2r/8/8/8/8/8/8/R3K2R w Kq - 0 1", ""},
      {"rnbqkbnr/pppp1ppp/8/4p3/4P3/8/PPPP1PPP/RNBQKBNR w KQkq E6 0 2",
       "rnbqkbnr/pppp1ppp/8/4p3/4P3/8/PPPP1PPP/RNBQKBNR w KQkq e6 0 2"},
      {"8/8/8/8/8/8/8/K6k w - - 0 0", "8/8/8/8/8/8/8/K6k w - - 0 1"},  // as some programs write
      {"\"4k3/8/8/8/8/8/8/4K3\" 'w' - - 0 1", "4k3/8/8/8/8/8/8/4K3 w - - 0 1"},
      {"4k3/pppppppp/pppppp2/8/8/8/8/4K3 w - - 0 1", ""},  // fourteen pawns
      {"4k3/4R3/8/8/8/8/8/4K3 b - - 0 1", ""},
      {"", IO},
      {"rnbqkbnr/pppppppp/9/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1", IO},   // off its row
      {"rnbqkbnrp/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1", IO},  // nine on a row
      {"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNX w KQkq - 0 1", IO},
      {"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBN? w KQkq - 0 1", IO},
      {"8/8/8/8/8/8/8/8 w - - 0 1", INVALID_POSITION},                      // no kings
      {"4k3/8/8/8/8/8/8/4KK2 w - - 0 1", INVALID_POSITION},                 // two white kings
      {"4k2P/8/8/8/8/8/8/4K3 w - - 0 1", INVALID_POSITION},                 // pawn on the last rank
      {"4k3/8/8/8/8/8/8/4K2p b - - 0 1", INVALID_POSITION},                 // and on the first
      {"4k3/pppppppp/ppppppp1/8/8/8/8/4K3 w - - 0 1", INVALID_POSITION},   // fifteen pawns
      {"4k3/8/8/8/8/8/8/4K2r b - - 0 1", INVALID_POSITION},  // the side off move in check
      {"4k3/8/8/8/8/8/8/4K3 w K - 0 1", INVALID_POSITION},   // a right without its rook
      {board + " w KQkq e3 0 1", INVALID_POSITION},          // nothing jumped over e3
      {board + " w KQkq a1 0 1", INVALID_POSITION},
      {"rnbqkbnr/pppp1ppp/8/4p3/4P3/8/PPPP1PPP/RNBQKBNR w KQkq e3 0 2", INVALID_POSITION},
      {"4k3/8/8/4P3/8/8/8/4K3 w - d6 0 1", INVALID_POSITION},  // no pawn in front of d6
  };
  for (const char* fields :
       {" w KQkq - 0", " w KQkq - 0 1 extra", " x KQkq - 0 1", " W KQkq - 0 1", " w qK - 0 1",
        " w KK - 0 1", " w K- - 0 1", " w -- - 0 1", " w KQkqX - 0 1", " w KQkq e - 0 1",
        " w KQkq e9 0 1", " w KQkq e33 0 1", " w KQkq - 101 1", " w KQkq - -1 1",
        " w KQkq - x 1", " w KQkq - 0 -1", " w KQkq - 0 +1", " w KQkq - 0 99999999999",
        " w \"KQkq - 0 1"})
    cases.emplace_back(board + fields, IO);
  for (const auto& [text, expected] : cases) {
    UserBoard game;
    game.MakeMove("e4");
    const std::string before = game.GetFEN();
    std::string read;
    try {
      game.SetFEN(text);
      read = game.GetFEN();
    } catch (const UserBoard::io_error&) {
      read = IO;
    } catch (const UserBoard::invalid_position&) {
      read = INVALID_POSITION;
    }
    EXPECT_EQ(read, expected.empty() ? text : expected) << '"' << text << '"';
    if (read == IO || read == INVALID_POSITION) {
      EXPECT_EQ(game.GetFEN(), before) << text;
      EXPECT_EQ(game.moves.size(), 1u) << text;
    }
  }
}

// Files of both kinds round-trip in the transcript tests; here the streams that fail.
TEST(GameText, StreamsThatFailAreIoErrorsAndChangeNothing) {
  UserBoard game;
  game.MakeMove("e4");
  std::istringstream truncated("rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq");
  EXPECT_THROW(game.ReadFEN(truncated), UserBoard::io_error);
  EXPECT_EQ(truncated.exceptions(), std::ios::goodbit);
  std::ostringstream broken;
  broken.setstate(std::ios::badbit);
  EXPECT_THROW(game.WriteFEN(broken), UserBoard::io_error);
  EXPECT_THROW(game.WritePGN(broken, PGNInfo{}), UserBoard::io_error);
  EXPECT_EQ(broken.exceptions(), std::ios::goodbit);
  EXPECT_EQ(game.GetFEN(), "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq e3 0 1");
}

}  // namespace
