// Single characters of coordinate notation ("e4", "H8"): the pieces that the move and position
// parsers are built from. Callers test with IsFileLetter / IsRankDigit before converting.
#pragma once

#include "chess/basic.h"

constexpr bool IsFileLetter(char c) { return (c >= 'a' && c <= 'h') || (c >= 'A' && c <= 'H'); }
constexpr bool IsRankDigit(char c) { return c >= '1' && c <= '8'; }

constexpr int FileFromLetter(char c) { return c >= 'a' ? c - 'a' : c - 'A'; }
constexpr int RankFromDigit(char c) { return c - '1'; }
constexpr int SquareFromLetters(char file_letter, char rank_digit) {
  return MakeSquare(FileFromLetter(file_letter), RankFromDigit(rank_digit));
}

constexpr char FileLetter(int file) { return char('a' + file); }
constexpr char RankDigit(int rank) { return char('1' + rank); }
constexpr int DigitValue(char c) { return c - '0'; }
