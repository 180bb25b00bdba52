#include <gtest/gtest.h>

#include <string>

#include "chess/edit_board.h"
#include "chess/game_board.h"

namespace {

Board InitialBoard() {
  Board board;
  board.Setup(INITIAL_POSITION, WHITE, 0, ALL_CASTLING);
  return board;
}

TEST(EditBoard, CastlingRightsFollowKingsAndRooks) {
  EditBoard edit(InitialBoard());
  EXPECT_EQ(edit.state, EditBoard::BUILT);
  edit.SetPiece(E2, NO_PIECE);
  EXPECT_EQ(edit.state, EditBoard::CHANGED);
  EXPECT_EQ(edit.GetCastling(), ALL_CASTLING);
  edit.SetPiece(A1, NO_PIECE);
  EXPECT_EQ(edit.GetCastling(), WHITE_SHORT | BLACK_SHORT | BLACK_LONG);
  ASSERT_TRUE(edit.IsValid());
  EXPECT_EQ(edit.GetBoard().Castling(), WHITE_SHORT | BLACK_SHORT | BLACK_LONG);
  // A black rook on a white corner gives no white right.
  edit.color_is_black = 1;
  edit.SetPiece(A1, ROOK);
  edit.SetPiece(E8, NO_PIECE);
  edit.SetPiece(D8, KING);
  EXPECT_EQ(edit.GetCastling(), WHITE_SHORT);
}

TEST(EditBoard, StatesOnlyBuildWhenChanged) {
  EditBoard edit;
  EXPECT_EQ(edit.state, EditBoard::INVALID_POSITION);
  EXPECT_FALSE(edit.IsValid());
  EXPECT_EQ(edit.state, EditBoard::INVALID_POSITION);
  EXPECT_THROW(edit.GetBoard(), EditBoard::invalid_position);

  edit.SetupKingsOnly();
  EXPECT_EQ(edit.state, EditBoard::CHANGED);
  EXPECT_TRUE(edit.IsValid());
  EXPECT_EQ(edit.state, EditBoard::BUILT);
  edit.board.side_on_move = BLACK;  // a second test must not build again
  EXPECT_TRUE(edit.IsValid());
  EXPECT_EQ(edit.board.side_on_move, BLACK);

  edit.SetPiece(E1, KING);  // no change
  EXPECT_EQ(edit.state, EditBoard::BUILT);
  edit.SetSide(BLACK);
  EXPECT_EQ(edit.state, EditBoard::CHANGED);
  EXPECT_TRUE(edit.IsValid());
  EXPECT_EQ(edit.GetBoard().side_on_move, static_cast<std::uint32_t>(BLACK));

  edit.Clear();
  EXPECT_EQ(edit.state, EditBoard::INVALID_POSITION);
  EXPECT_EQ(edit.castling, EditBoard::CASTLING_UNKNOWN);
}

TEST(EditBoard, AnImpossiblePositionFailsButIsStillShown) {
  EditBoard edit;
  edit.SetupKingsOnly();
  edit.SetPiece(C8, PAWN);
  EXPECT_FALSE(edit.IsValid());
  EXPECT_THROW(edit.GetBoard(), EditBoard::invalid_position);
  testing::internal::CaptureStdout();
  edit.Display(false);
  const std::string shown = testing::internal::GetCapturedStdout();
  EXPECT_NE(shown.find("8 |   |   | *P|   | K |"), std::string::npos) << shown;
}

TEST(EditBoard, ResetAndOutOfRangeInput) {
  EditBoard edit(InitialBoard());
  edit.color_is_black = 1;
  edit.Reset(BLACK);
  EXPECT_EQ(edit.side, static_cast<std::uint32_t>(BLACK));
  EXPECT_EQ(edit.color_is_black, 0u);
  EXPECT_EQ(edit.state, EditBoard::INVALID_POSITION);
  edit.SetupKingsOnly();
  edit.IsValid();
  edit.SetPiece(64, QUEEN);
  edit.SetPiece(-1, QUEEN);
  edit.SetPiece(A3, 7);
  EXPECT_EQ(edit.state, EditBoard::BUILT);
}

}  // namespace
