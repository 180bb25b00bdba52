#include <gtest/gtest.h>

#include <utility>

#include "chess/board.h"
#include "support/board_from_fen.h"

namespace {

// Make, unmake, copies and the set-up of positions are checked over many trees in
// move_generation_test; here the rule draws, the key history and the diagram.
TEST(Board, RuleDraws) {
  for (const auto& [fen, draw] : {std::pair{"4k3/8/8/8/8/8/8/4KN2 w - - 0 1", true},
                                  {"4k3/8/8/8/8/8/8/3NKN2 w - - 0 1", true},
                                  {"4k3/8/8/8/8/8/8/3BKB2 w - - 0 1", false},
                                  {"4kb2/8/8/8/8/8/8/4KN2 w - - 0 1", true},
                                  {"4k3/8/8/8/8/8/8/2NBK3 w - - 0 1", false},
                                  {"4k3/8/8/8/8/8/4P3/4K3 w - - 0 1", false},
                                  {"4k3/8/8/8/8/8/8/Q3K3 w - - 100 80", true},
                                  {"4k3/8/8/8/8/8/8/Q3K3 w - - 99 80", false}})
    EXPECT_EQ(BoardFromFen(fen).IsDrawByRule(), draw) << fen;
}

// The key history: repetitions seen across a rebase of the stacks, the clock read from FEN, the
// null move, and games longer than the storage.
TEST(Board, KeyHistory) {
  Board late = BoardFromFen("4k3/8/8/8/8/8/8/R3K3 w - - 20 30");
  EXPECT_EQ(late.key_stack - late.key_storage, 20);
  late.MakeNullMove();
  EXPECT_EQ(late.HalfmoveClock(), 0);
  EXPECT_EQ(late.Key(), late.ComputeKey());
  EXPECT_FALSE(late.IsDrawByRule());
  Board board = BoardFromFen("4k3/8/8/8/8/8/8/R3K3 w - - 0 1");
  const Move moves[4] = {MakeMoveWord(A1, A2, ROOK), MakeMoveWord(E8, D8, KING),
                         MakeMoveWord(A2, A1, ROOK), MakeMoveWord(D8, E8, KING)};
  for (int i = 0; i < 400; ++i) {
    board.MakeMove(moves[i % 4]);
    board.RebaseStacks();
    ASSERT_LE(board.key_stack - board.key_storage, Board::KEY_HISTORY);
    // The start position comes back for the first time with the fourth move.
    ASSERT_EQ(board.IsDrawByRule(), i >= 3) << i;
  }
  // A clock beyond the history room keeps the stacks inside their storage.
  Board old = BoardFromFen("4k3/8/8/8/8/8/8/R3K3 w - - 0 1");
  old.SetHalfmoveClock(150);
  EXPECT_LE(old.key_stack - old.key_storage, Board::KEY_HISTORY);
  EXPECT_TRUE(old.IsDrawByRule());
}

TEST(Board, DiagramText) {
  Board board = BoardFromFen("4k3/8/8/8/4P3/8/8/4K3 b - e3 0 1");
  testing::internal::CaptureStdout();
  board.Display(true);
  const std::string text = testing::internal::GetCapturedStdout();
  EXPECT_NE(text.find("    +---+---+---+---+---+---+---+---+\n  8 |   |   |   |   | K |   |   |   |\n"),
            std::string::npos);
  EXPECT_NE(text.find("  4 |   |   |   |   | *P|   |   |   |\n"), std::string::npos);
  EXPECT_NE(text.find("      a   b   c   d   e   f   g   h\n"), std::string::npos);
  EXPECT_NE(text.find("castle possibilities: none\nside on move: black; en-passant square: e3\n"),
            std::string::npos);
}

}  // namespace
