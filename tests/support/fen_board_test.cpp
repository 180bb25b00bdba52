#include "support/fen_board.h"

#include <gtest/gtest.h>

namespace {

constexpr const char* INITIAL = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1";

TEST(FenBoard, ReadsAllFields) {
  Board board;
  ASSERT_EQ(FenBoard::SetupFromFen(board, "r3k2r/8/8/3pP3/8/8/8/R3K2R  w Kq d6 7 30"), "");
  EXPECT_EQ(board.squares[A8], -ROOK);
  EXPECT_EQ(board.squares[E1], KING);
  EXPECT_EQ(board.squares[E5], PAWN);
  EXPECT_EQ(board.side_on_move, std::uint32_t(WHITE));
  EXPECT_EQ(board.Castling(), WHITE_SHORT | BLACK_LONG);
  EXPECT_EQ(board.EnPassant(), D6);
  EXPECT_EQ(board.HalfmoveClock(), 7);
  // Digits may follow each other; the move counters may be left out.
  ASSERT_EQ(FenBoard::SetupFromFen(board, "4k3/8/8/8/8/8/8/12K13 b - -"), "");
  EXPECT_EQ(board.squares[D1], KING);
  EXPECT_EQ(board.side_on_move, std::uint32_t(BLACK));
}

// Garbage of every kind gives a message and leaves the board as it was.
TEST(FenBoard, RefusesGarbageAndKeepsTheBoard) {
  const char* garbage[] = {
      "",
      "hello",
      "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP w KQkq - 0 1",                // 7 ranks
      "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR/8 w KQkq - 0 1",     // 9 ranks
      "rnbqkbnr/ppppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1",      // 9 squares
      "rnbqkbnr/ppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1",        // 7 squares
      "rnbqkbnr/pppppppp/9/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1",       // digit 9
      "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNX w KQkq - 0 1",       // letter X
      "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBN? w KQkq - 0 1",       // the blank slot
      "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR x KQkq - 0 1",       // side
      "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkk - 0 1",       // right twice
      "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQxq - 0 1",       // bad right
      "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq e4 0 1",      // en passant rank
      "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq i6 0 1",      // en passant file
      "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq e6 0 1",      // no pawn jumped
      "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - -1 1",      // clock
      "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 101 1",     // clock too big
      "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 0",       // move number
      "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1 extra",  // 7 fields
      "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQ1BNR w kq - 0 1",         // no white king
      "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq",             // 3 fields
      "4k3/8/8/8/8/8/8/4K3 w K - 0 1",                                  // right without rook
      "4k3/4Q3/8/8/8/8/8/4K3 w - - 0 1",                                // side not on move in check
      "P3k3/8/8/8/8/8/8/4K3 w - - 0 1",                                 // pawn on the last rank
  };
  Board board;
  ASSERT_EQ(FenBoard::SetupFromFen(board, INITIAL), "");
  const std::uint64_t key = board.Key();
  for (const char* fen : garbage) {
    EXPECT_NE(FenBoard::SetupFromFen(board, fen), "") << fen;
    EXPECT_EQ(board.Key(), key) << fen;
  }
}

}  // namespace
