// Random and mutated texts through every reader of game text: nothing may crash, hang or throw
// anything but the game's own exceptions, and a refused text changes nothing.
#include <gtest/gtest.h>

#include <random>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

#include "chess/move_generator.h"
#include "chess/user_board.h"

namespace {

// Characters that the readers give a meaning to, so that mutations reach deep.
constexpr std::string_view MEANINGFUL = "pnbrqkPNBRQK0123456789/ -wbKQkqx+#=Oo.[]\"{}();$*\n\t";

struct TextSource {
  std::mt19937 random;

  std::string RandomBytes(std::size_t max_length) {
    std::string text(Below(max_length + 1), '\0');
    for (char& c : text) c = static_cast<char>(Below(256));
    return text;
  }

  std::string Mutated(std::string text) {
    const int mutations = 1 + static_cast<int>(Below(4));
    for (int i = 0; i < mutations; ++i) {
      const std::size_t at = Below(text.size() + 1);
      const char c = Below(4) == 0 ? static_cast<char>(Below(256))
                                   : MEANINGFUL[Below(MEANINGFUL.size())];
      switch (Below(3)) {
        case 0: text.insert(at, 1, c); break;
        case 1: if (at < text.size()) text.erase(at, 1); break;
        default: if (at < text.size()) text[at] = c; break;
      }
    }
    return text;
  }

  std::size_t Below(std::size_t bound) { return bound == 0 ? 0 : random() % bound; }
};

const std::vector<std::string> VALID_FENS = {
    "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1",
    "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1",
    "rnbqkbnr/ppp1p1pp/8/3pPp2/8/8/PPPP1PPP/RNBQKBNR w KQkq f6 0 3",
    "8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - - 99 50",
    "3nk3/4P3/8/8/8/8/8/4K3 w - - 0 1",
};

// What a refused text must leave as it was.
auto Snapshot(const UserBoard& game) {
  return std::tuple(game.GetFEN(), game.moves, game.next_moves, game.current.Key());
}

UserBoard GameInProgress() {
  UserBoard game;
  for (const char* move : {"e4", "c5", "Nf3", "d6"}) game.MakeMove(std::string(move));
  game.Undo();
  return game;
}

void TryFen(UserBoard& game, const std::string& text) {
  const auto before = Snapshot(game);
  try {
    game.SetFEN(text);
  } catch (const UserBoard::user_exception&) {
    ASSERT_TRUE(Snapshot(game) == before) << text;
    return;
  }
  // Whatever was accepted is written back as a text that reads to the same position.
  const std::string written = game.GetFEN();
  UserBoard again;
  again.SetFEN(written);
  ASSERT_EQ(again.GetFEN(), written);
  ASSERT_EQ(again.current.Key(), game.current.Key());
  std::vector<Move> legal;
  GenerateMoves(legal, game.current);
  for (Move move : legal) game.MoveText(move, SAN_NOTATION);
  game = GameInProgress();
}

TEST(GameTextFuzz, FenReaderTakesAnyText) {
  TextSource source{std::mt19937(1)};
  UserBoard game = GameInProgress();
  for (int i = 0; i < 4000; ++i) TryFen(game, source.RandomBytes(90));
  for (int i = 0; i < 20000; ++i)
    TryFen(game, source.Mutated(VALID_FENS[source.Below(VALID_FENS.size())]));
}

std::string SomePgn(TextSource& source) {
  UserBoard game;
  for (int ply = 0; ply < 80 && !game.current.IsOver(); ++ply) {
    std::vector<Move> legal;
    GenerateMoves(legal, game.current);
    game.MakeMove(legal[source.Below(legal.size())]);
  }
  std::ostringstream out;
  game.WritePGN(out, PGNInfo{});
  return out.str();
}

void TryPgn(UserBoard& game, const std::string& text) {
  const auto before = Snapshot(game);
  PGNInfo info;
  std::istringstream in(text);
  try {
    game.ReadPGN(in, info);
  } catch (const UserBoard::user_exception&) {
    ASSERT_TRUE(Snapshot(game) == before);
    ASSERT_EQ(in.exceptions(), std::ios::goodbit);
    return;
  }
  game.NextAll();
  game = GameInProgress();
}

TEST(GameTextFuzz, PgnReaderTakesAnyText) {
  TextSource source{std::mt19937(2)};
  UserBoard game = GameInProgress();
  for (int i = 0; i < 2000; ++i) TryPgn(game, source.RandomBytes(300));
  std::vector<std::string> games;
  for (int i = 0; i < 8; ++i) games.push_back(SomePgn(source));
  games.push_back("[FEN \"" + VALID_FENS[1] + "\"]\n\n1. e5 {x} d5 2. exd6 ; y\n *\n");
  for (int i = 0; i < 3000; ++i) TryPgn(game, source.Mutated(games[source.Below(games.size())]));
}

TEST(GameTextFuzz, MoveReaderTakesAnyText) {
  TextSource source{std::mt19937(3)};
  std::vector<GameBoard> positions;
  for (const std::string& fen : VALID_FENS) {
    UserBoard game;
    game.SetFEN(fen);
    positions.push_back(game.current);
  }
  const std::vector<std::string> moves = {"e4", "Nf3", "O-O-O", "exd8=Q+", "e7e8n", "Qxf7#",
                                          "Rxe1", "bxc3", "0-0", "N1f3"};
  for (int i = 0; i < 30000; ++i) {
    const GameBoard& board = positions[source.Below(positions.size())];
    const std::string text = i % 3 == 0 ? source.RandomBytes(20)
                                        : source.Mutated(moves[source.Below(moves.size())]);
    Move move = INVALID;
    const ParseResult result = ParseMove(board, text, move);
    ASSERT_GE(result, PARSE_OK);
    ASSERT_LE(result, PARSE_SYNTAX_ERROR);
    ASSERT_EQ(result == PARSE_OK, move != INVALID);
    if (move != INVALID) {
      ASSERT_TRUE(board.VerifyMove(move)) << text;
    }
  }
}

}  // namespace
