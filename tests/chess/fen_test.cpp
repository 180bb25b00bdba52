#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "chess/user_board.h"

namespace {

const std::string INITIAL_FEN = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1";

TEST(Fen, LegalPositionsReadAndWriteTheSameText) {
  const char* positions[] = {
      "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1",
      "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1",
      "8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - - 0 1",
      "rnbqkbnr/ppp1p1pp/8/3pPp2/8/8/PPPP1PPP/RNBQKBNR w KQkq f6 0 3",
      "rnbqkbnr/pppp1ppp/8/8/3Pp3/8/PPP1PPPP/RNBQKBNR b Kq d3 0 3",
      "4k3/8/8/8/8/8/8/4K2R w K - 37 120",
      "r3k3/8/8/8/8/8/8/4K3 b q - 100 51",
      "7k/5Q2/6K1/8/8/8/8/8 b - - 0 1",
  };
  for (const char* fen : positions) {
    UserBoard game;
    game.SetFEN(fen);
    EXPECT_EQ(game.GetFEN(), fen);
  }
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

// What a text reads as: the FEN written back, or the exception; a refused text changes nothing.
TEST(Fen, ReadingLooseSpellingsBadTextAndPositionsThatCannotStand) {
  const std::string board = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR";
  constexpr const char* IO = "io_error";
  constexpr const char* INVALID_POSITION = "invalid_position";
  std::vector<std::pair<std::string, std::string>> cases = {
      {"  " + board + " \t w  KQkq -  0 1\n", INITIAL_FEN},
      {"r3k2r/8/8/8/8/8/8/R3K2R w Kq - 0 1", "r3k2r/8/8/8/8/8/8/R3K2R w Kq - 0 1"},
      {"rnbqkbnr/pppp1ppp/8/4p3/4P3/8/PPPP1PPP/RNBQKBNR w KQkq E6 0 2",
       "rnbqkbnr/pppp1ppp/8/4p3/4P3/8/PPPP1PPP/RNBQKBNR w KQkq e6 0 2"},
      {"8/8/8/8/8/8/8/K6k w - - 0 0", "8/8/8/8/8/8/8/K6k w - - 0 1"},  // as some programs write
      {"\"4k3/8/8/8/8/8/8/4K3\" 'w' - - 0 1", "4k3/8/8/8/8/8/8/4K3 w - - 0 1"},
      {"4k3/pppppppp/pppppp2/8/8/8/8/4K3 w - - 0 1", "4k3/pppppppp/pppppp2/8/8/8/8/4K3 w - - 0 1"},
      {"4k3/4R3/8/8/8/8/8/4K3 b - - 0 1", "4k3/4R3/8/8/8/8/8/4K3 b - - 0 1"},
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
    EXPECT_EQ(read, expected) << '"' << text << '"';
    if (read == IO || read == INVALID_POSITION) {
      EXPECT_EQ(game.GetFEN(), before) << text;
      EXPECT_EQ(game.moves.size(), 1u) << text;
    }
  }
}

TEST(Fen, StreamsReadSixTokensAndWriteOneLine) {
  UserBoard game;
  std::istringstream in("rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR\nb KQkq e3 0 1 trailing");
  game.ReadFEN(in);
  EXPECT_EQ(game.GetFEN(), "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq e3 0 1");
  EXPECT_EQ(in.exceptions(), std::ios::goodbit);
  std::ostringstream out;
  game.WriteFEN(out);
  EXPECT_EQ(out.str(), game.GetFEN() + "\n");

  std::istringstream truncated("rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq");
  EXPECT_THROW(game.ReadFEN(truncated), UserBoard::io_error);
  EXPECT_EQ(truncated.exceptions(), std::ios::goodbit);
  std::ostringstream broken;
  broken.setstate(std::ios::badbit);
  EXPECT_THROW(game.WriteFEN(broken), UserBoard::io_error);
  EXPECT_EQ(game.GetFEN(), "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq e3 0 1");
}

}  // namespace
