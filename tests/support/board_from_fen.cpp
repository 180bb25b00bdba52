#include "support/board_from_fen.h"

#include <gtest/gtest.h>

#include <cstring>
#include <sstream>

namespace {
int PieceFromLetter(char letter) {
  const char* found = std::strchr(SignedPieceLetters, letter);
  if (!found || letter == '?') return 99;
  return int(found - SignedPieceLetters) - 6;
}
}  // namespace

bool SetupFromFen(Board& board, const std::string& fen) {
  std::istringstream fields(fen);
  std::string placement, side = "w", castling = "-", en_passant = "-";
  int clock = 0;
  fields >> placement >> side >> castling >> en_passant >> clock;
  std::int8_t squares[64] = {};
  int rank = 7, file = 0;
  for (char c : placement) {
    if (c == '/') {
      if (file != 8 || rank == 0) return false;
      --rank;
      file = 0;
    } else if (c >= '1' && c <= '8') {
      file += c - '0';
      if (file > 8) return false;
    } else {
      int piece = PieceFromLetter(c);
      if (piece == 99 || file > 7) return false;
      squares[MakeSquare(file++, rank)] = std::int8_t(piece);
    }
  }
  if (rank != 0 || file != 8 || (side != "w" && side != "b")) return false;
  int rights = 0;
  for (char c : castling) {
    if (c == 'K') rights |= WHITE_SHORT;
    else if (c == 'Q') rights |= WHITE_LONG;
    else if (c == 'k') rights |= BLACK_SHORT;
    else if (c == 'q') rights |= BLACK_LONG;
    else if (c != '-') return false;
  }
  int ep = 0;
  if (en_passant != "-") {
    if (en_passant.size() != 2) return false;
    ep = MakeSquare(en_passant[0] - 'a', en_passant[1] - '1');
  }
  if (!board.Setup(squares, side == "w" ? WHITE : BLACK, ep, rights)) return false;
  if (clock) board.SetHalfmoveClock(clock);
  return true;
}

Board BoardFromFen(const std::string& fen) {
  Board board;
  EXPECT_TRUE(SetupFromFen(board, fen)) << fen;
  return board;
}
