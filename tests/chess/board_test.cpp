#include <gtest/gtest.h>

#include <iostream>
#include <utility>

#include "chess/board.h"
#include "support/board_from_fen.h"

namespace {

constexpr const char* INITIAL = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1";

TEST(Board, InitialPosition) {
  Board board = BoardFromFen(INITIAL);
  EXPECT_TRUE(board.IsValid());
  EXPECT_EQ(board.total_piece_points, 62u);
  EXPECT_EQ(board.Material(), 0);
  EXPECT_EQ(board.Castling(), ALL_CASTLING);
  EXPECT_EQ(board.white.minor_points, 12);
  EXPECT_EQ(board.black.major_count, 4);
  EXPECT_EQ(board.Key(), board.ComputeKey());
  EXPECT_FALSE(board.InCheck());
}

// Make and unmake of every kind of move is checked field by field over many trees in
// board_consistency_test; here the state that the move leaves behind.
TEST(Board, ADoubleStepSetsTheEnPassantSquareEvenWithoutACapture) {
  Board board = BoardFromFen(INITIAL);
  board.MakeMove(MakeMoveWord(E2, E4, PAWN));
  EXPECT_EQ(board.EnPassant(), E3);
  EXPECT_EQ(board.Key(), board.ComputeKey());
}

TEST(Board, CastlingMovesTheRookAndTakesTheRights) {
  Board board = BoardFromFen("r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1");
  board.MakeMove(WHITE_LONG_CASTLE);
  EXPECT_EQ(board.squares[D1], ROOK);
  EXPECT_EQ(board.squares[A1], NO_PIECE);
  EXPECT_EQ(board.squares[C1], KING);
  EXPECT_EQ(board.Castling(), BLACK_SHORT | BLACK_LONG);
  EXPECT_EQ(board.HalfmoveClock(), 1);
  board.MakeMove(MakeMoveWord(H8, H1, ROOK, ROOK));
  EXPECT_EQ(board.Castling(), BLACK_LONG);
  EXPECT_EQ(board.Key(), board.ComputeKey());
}

TEST(Board, CopiesKeepTheirOwnKeyStack) {
  Board board = BoardFromFen("4k3/8/8/8/8/8/8/4K2R w K - 12 40");
  Board copy(board);
  EXPECT_EQ(copy.key_stack - copy.key_storage, board.key_stack - board.key_storage);
  EXPECT_NE(copy.key_stack, board.key_stack);
  EXPECT_EQ(copy.Key(), board.Key());
}

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

TEST(Board, RepetitionAcrossARebase) {
  Board board = BoardFromFen("4k3/8/8/8/8/8/8/R3K3 w - - 0 1");
  const Move out = MakeMoveWord(A1, A2, ROOK), in = MakeMoveWord(E8, D8, KING);
  const Move back = MakeMoveWord(A2, A1, ROOK), home = MakeMoveWord(D8, E8, KING);
  board.MakeMove(out);
  board.MakeMove(in);
  board.RebaseStacks();
  board.MakeMove(back);
  EXPECT_FALSE(board.IsDrawByRule());
  board.MakeMove(home);  // the start position again, seen across the rebase
  EXPECT_TRUE(board.IsDrawByRule());
  board.RebaseStacks();
  EXPECT_TRUE(board.IsDrawByRule());
}

TEST(Board, FenClockHistoryAndNullMove) {
  Board board = BoardFromFen("4k3/8/8/8/8/8/8/R3K3 w - - 20 30");
  EXPECT_EQ(board.key_stack - board.key_storage, 20);
  EXPECT_EQ(board.Key(), board.ComputeKey());
  EXPECT_FALSE(board.IsDrawByRule());
  board.MakeNullMove();
  EXPECT_EQ(board.HalfmoveClock(), 0);
  EXPECT_EQ(board.Key(), board.ComputeKey());
  EXPECT_FALSE(board.IsDrawByRule());
  // A clock beyond the history room keeps the stacks inside their storage.
  Board old = BoardFromFen("4k3/8/8/8/8/8/8/R3K3 w - - 0 1");
  old.SetHalfmoveClock(150);
  EXPECT_LE(old.key_stack - old.key_storage, Board::KEY_HISTORY);
  EXPECT_TRUE(old.IsDrawByRule());
}

TEST(Board, LongGamesStayInsideTheKeyStorage) {
  Board board = BoardFromFen("4k3/8/8/8/8/8/8/R3K3 w - - 0 1");
  const Move moves[4] = {MakeMoveWord(A1, A2, ROOK), MakeMoveWord(E8, D8, KING),
                         MakeMoveWord(A2, A1, ROOK), MakeMoveWord(D8, E8, KING)};
  for (int i = 0; i < 400; ++i) {
    board.MakeMove(moves[i % 4]);
    board.RebaseStacks();
    ASSERT_LE(board.key_stack - board.key_storage, Board::KEY_HISTORY);
  }
  EXPECT_TRUE(board.IsDrawByRule());
}

TEST(Board, Validity) {
  for (const auto& [fen, valid] : {
           std::pair{"4k3/pppppppp/pppppp2/8/8/8/8/4K3 w - - 0 1", true},  // 14 pawns
           {"4k3/pppppppp/ppppppp1/8/8/8/8/4K3 w - - 0 1", false},
           {"4k3/8/8/8/8/8/8/4K2K w - - 0 1", false}, {"8/8/8/8/8/8/8/4K3 w - - 0 1", false},
           {"P3k3/8/8/8/8/8/8/4K3 w - - 0 1", false}, {"4k3/8/8/8/8/8/8/4K2p b - - 0 1", false},
           {"4k3/8/8/8/8/8/8/4K3 w K - 0 1", false},
           {"4k3/4R3/8/8/8/8/8/4K3 w - - 0 1", false},  // the side not on move in check
           {"4k3/4R3/8/8/8/8/8/4K3 b - - 0 1", true},
           {"4k3/8/8/3pP3/8/8/8/4K3 w - d6 0 1", true}, {"4k3/8/8/4P3/8/8/8/4K3 w - d6 0 1", false},
           {"4k3/8/8/3pP3/8/8/8/4K3 w - d3 0 1", false}}) {
    Board board;
    EXPECT_EQ(SetupFromFen(board, fen), valid) << fen;
  }
  EXPECT_TRUE(BoardFromFen("4k3/4R3/8/8/8/8/8/4K3 b - - 0 1").InCheck());
}

TEST(Board, EnPassantSafety) {
  // Both pawns leave the king's rank at once, exposing the king to the rook.
  Board rank_pin = BoardFromFen("8/8/8/K2pP2r/8/8/8/7k w - d6 0 1");
  EXPECT_FALSE(rank_pin.IsEnPassantLegal(MakeMoveWord(E5, D6, PAWN, PAWN)));
  // The pawn that gives check may be taken en passant.
  Board check = BoardFromFen("8/8/8/2k5/3Pp3/8/8/4K3 b - d3 0 1");
  EXPECT_TRUE(check.InCheck());
  EXPECT_TRUE(check.IsEnPassantLegal(MakeMoveWord(E4, D3, PAWN, PAWN)));
  // A captured pawn pinned on a diagonal to the capturing side's king.
  Board diagonal = BoardFromFen("8/8/1k6/8/3Pp3/8/8/6BK b - d3 0 1");
  EXPECT_FALSE(diagonal.IsEnPassantLegal(MakeMoveWord(E4, D3, PAWN, PAWN)));
}

TEST(Board, MovesFromAHashTable) {
  Board board = BoardFromFen(INITIAL);
  EXPECT_TRUE(board.IsMovePseudoLegal(MakeMoveWord(E2, E4, PAWN)));
  EXPECT_TRUE(board.IsMovePseudoLegal(MakeMoveWord(G1, F3, KNIGHT)));
  EXPECT_FALSE(board.IsMovePseudoLegal(MakeMoveWord(E2, E5, PAWN)));
  EXPECT_FALSE(board.IsMovePseudoLegal(MakeMoveWord(E2, E4, PAWN) | DIRECT_CHECK_BIT));
  EXPECT_FALSE(board.IsMovePseudoLegal(MakeMoveWord(F1, C4, BISHOP)));
  EXPECT_FALSE(board.IsMovePseudoLegal(MakeMoveWord(E7, E5, PAWN)));
  EXPECT_FALSE(board.IsMovePseudoLegal(WHITE_SHORT_CASTLE));
  EXPECT_FALSE(board.IsMovePseudoLegal(MakeMoveWord(E2, E4, PAWN) | (Move{1} << 30)));
  Board castling = BoardFromFen("r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1");
  EXPECT_TRUE(castling.IsMovePseudoLegal(WHITE_SHORT_CASTLE));
  EXPECT_FALSE(castling.IsMovePseudoLegal(WHITE_SHORT_CASTLE_CHECK));
  // Castling whose rook gives check.
  Board rook_check = BoardFromFen("5k2/8/8/8/8/8/8/4K2R w K - 0 1");
  EXPECT_TRUE(rook_check.IsMovePseudoLegal(WHITE_SHORT_CASTLE_CHECK));
  EXPECT_FALSE(rook_check.IsMovePseudoLegal(WHITE_SHORT_CASTLE));
  // A promotion gives check through the square it leaves.
  Board through = BoardFromFen("8/8/8/8/8/8/1p6/1K4k1 b - - 0 1");
  EXPECT_FALSE(through.IsMovePseudoLegal(MakeMoveWord(B2, B1, PAWN, 0, QUEEN)));
  Board file = BoardFromFen("1k6/1P6/8/8/8/8/8/1K6 w - - 0 1");
  EXPECT_FALSE(file.IsMovePseudoLegal(MakeMoveWord(B7, B8, PAWN, 0, QUEEN)));
  Board opened = BoardFromFen("8/1P6/8/8/8/8/8/1k2K3 w - - 0 1");
  EXPECT_TRUE(opened.IsMovePseudoLegal(MakeMoveWord(B7, B8, PAWN, 0, QUEEN) | DIRECT_CHECK_BIT));
  EXPECT_TRUE(opened.IsMovePseudoLegal(MakeMoveWord(B7, B8, PAWN, 0, ROOK) | DIRECT_CHECK_BIT));
  EXPECT_TRUE(opened.IsMovePseudoLegal(MakeMoveWord(B7, B8, PAWN, 0, BISHOP)));
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
