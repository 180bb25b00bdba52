// The board as a text diagram: White's pieces marked with "*", rank 8 at the top.
#include <string>

#include "chess/board.h"
#include "shell/tee_stream.h"

namespace {
constexpr const char* RULE = "    +---+---+---+---+---+---+---+---+\n";
constexpr const char* FILE_LETTERS = "      a   b   c   d   e   f   g   h\n";

std::string SquareText(int square) {
  return {char('a' + File(square)), char('1' + Rank(square))};
}

std::string RowText(const std::int8_t* squares, int rank) {
  std::string row = "  ";
  row += char('1' + rank);
  row += " |";
  for (int file = 0; file < 8; ++file) {
    const int piece = squares[MakeSquare(file, rank)];
    const bool is_white = piece > 0;
    row += ' ';
    if (is_white) row += '*';
    row += PieceLetters[is_white ? piece : -piece];
    if (!is_white) row += ' ';
    row += '|';
  }
  return row + '\n';
}

std::string CastlingText(int castling) {
  std::string text;
  if (castling & WHITE_SHORT) text += 'K';
  if (castling & WHITE_LONG) text += 'Q';
  if (castling & BLACK_SHORT) text += 'k';
  if (castling & BLACK_LONG) text += 'q';
  return text.empty() ? "none" : text;
}
}  // namespace

void Board::Display(bool with_state) const {
  std::string text = RULE;
  for (int rank = 7; rank >= 0; --rank) text += RowText(squares, rank) + RULE;
  text += FILE_LETTERS;
  if (with_state) {
    text += "castle possibilities: " + CastlingText(Castling()) + "\n";
    text += std::string("side on move: ") + (side_on_move == WHITE ? "white" : "black") +
            "; en-passant square: " + (EnPassant() ? SquareText(EnPassant()) : "none") + "\n";
  }
  Output << text;
  Output.Flush();
}
