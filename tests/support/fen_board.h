// A small strict FEN reader that sets up a Board, for the tests and the perft tool. Every field is
// checked before the board is touched, so garbage gives a message, never a half-built position.
// Header-only so that the perft tool can share it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "chess/board.h"

namespace FenBoard {

inline std::vector<std::string_view> SplitFields(std::string_view text) {
  std::vector<std::string_view> fields;
  std::size_t pos = 0;
  while (pos < text.size()) {
    while (pos < text.size() && (text[pos] == ' ' || text[pos] == '\t')) ++pos;
    std::size_t end = pos;
    while (end < text.size() && text[end] != ' ' && text[end] != '\t') ++end;
    if (end > pos) fields.push_back(text.substr(pos, end - pos));
    pos = end;
  }
  return fields;
}

inline int PieceFromLetter(char letter) {
  constexpr std::string_view letters = "kqrbnp?PNBRQK";  // index: piece + 6
  const std::size_t index = letter == '?' ? std::string_view::npos : letters.find(letter);
  return index == std::string_view::npos ? 0 : int(index) - 6;
}

// Ranks from 8 down to 1, files a to h; digits count empty squares.
inline std::string ReadPlacement(std::string_view field, std::int8_t squares[64]) {
  int rank = 7;
  int file = 0;
  for (char c : field) {
    if (c == '/') {
      if (file != 8 || rank == 0) return "a rank of the placement does not have 8 squares";
      --rank;
      file = 0;
    } else if (c >= '1' && c <= '8') {
      file += c - '0';
      if (file > 8) return "a rank of the placement has more than 8 squares";
    } else {
      const int piece = PieceFromLetter(c);
      if (piece == 0) return std::string("unknown piece letter '") + c + "'";
      if (file >= 8) return "a rank of the placement has more than 8 squares";
      squares[MakeSquare(file++, rank)] = std::int8_t(piece);
    }
  }
  if (rank != 0 || file != 8) return "the placement does not have 8 ranks of 8 squares";
  return "";
}

inline std::string ReadCastling(std::string_view field, int& castling) {
  castling = 0;
  if (field == "-") return "";
  constexpr std::string_view letters = "KQkq";  // bit k of the rights is letter k
  for (char c : field) {
    const std::size_t bit = letters.find(c);
    if (bit == std::string_view::npos || (castling & (1 << bit)) != 0)
      return "bad castling rights '" + std::string(field) + "'";
    castling |= 1 << bit;
  }
  return "";
}

inline std::string ReadEnPassant(std::string_view field, int& en_passant) {
  en_passant = 0;
  if (field == "-") return "";
  if (field.size() != 2 || field[0] < 'a' || field[0] > 'h' || (field[1] != '3' && field[1] != '6'))
    return "bad en-passant square '" + std::string(field) + "'";
  en_passant = MakeSquare(field[0] - 'a', field[1] - '1');
  return "";
}

inline bool ReadNumber(std::string_view field, int max, int& value) {
  if (field.empty() || field.size() > 5) return false;
  value = 0;
  for (char c : field) {
    if (c < '0' || c > '9') return false;
    value = value * 10 + (c - '0');
  }
  return value <= max;
}

// Sets up the board from the FEN text; returns "" on success, else what is wrong, and then the
// board is unchanged. The move counters are optional; the halfmove clock is at most 100, the
// most that the board's key history has room for.
inline std::string SetupFromFen(Board& board, std::string_view fen) {
  const std::vector<std::string_view> fields = SplitFields(fen);
  if (fields.size() < 4 || fields.size() > 6)
    return "a FEN needs 4 to 6 fields: placement, side, castling, en passant, clock, move number";

  std::int8_t squares[64] = {};
  if (std::string error = ReadPlacement(fields[0], squares); !error.empty()) return error;
  if (fields[1] != "w" && fields[1] != "b") return "the side on move must be 'w' or 'b'";
  const int side = fields[1] == "w" ? WHITE : BLACK;
  int castling = 0;
  if (std::string error = ReadCastling(fields[2], castling); !error.empty()) return error;
  int en_passant = 0;
  if (std::string error = ReadEnPassant(fields[3], en_passant); !error.empty()) return error;
  int clock = 0;
  if (fields.size() > 4 && !ReadNumber(fields[4], 100, clock))
    return "the halfmove clock must be a number from 0 to 100";
  int move_number = 1;
  if (fields.size() > 5 && (!ReadNumber(fields[5], 99999, move_number) || move_number == 0))
    return "the move number must be a positive number";

  Board candidate;
  if (!candidate.Setup(squares, side, en_passant, castling))
    return "illegal position (kings, pawns, castling rights, en-passant square or check)";
  if (clock > 0) candidate.SetHalfmoveClock(clock);
  board = candidate;
  return "";
}

}  // namespace FenBoard
