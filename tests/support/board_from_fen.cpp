#include "support/board_from_fen.h"

#include <gtest/gtest.h>

#include <sstream>

#include "chess/user_board.h"

bool SetupFromFen(Board& board, const std::string& fen) {
  // Test positions may leave out the trailing fields, which the engine's reader wants.
  std::istringstream stream(fen);
  int fields = 0;
  for (std::string field; stream >> field;) ++fields;
  std::string text = fen;
  const char* defaults[] = {"", "w", "-", "-", "0", "1"};
  for (int field = fields; field > 0 && field < 6; ++field)
    text += std::string(" ") + defaults[field];
  try {
    UserBoard game;
    game.SetFEN(text);
    board = game.current;
    return true;
  } catch (const UserBoard::user_exception&) {
    return false;
  }
}

Board BoardFromFen(const std::string& fen) {
  Board board;
  EXPECT_TRUE(SetupFromFen(board, fen)) << fen;
  return board;
}

std::string FenOf(const Board& board) {
  try {
    UserBoard game;
    game.SetPosition(board);
    return game.GetFEN();
  } catch (const UserBoard::user_exception&) {
    return "(invalid position)";
  }
}
