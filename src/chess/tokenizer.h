// Splits a text into tokens at separators, with quoted parts that keep separators inside. Every
// input line, FEN string and job description goes through it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace BraskUtils {

// Carry no text: each caller says in its own words what could not be read.
class tokenize_exception {};
class unterminated_embedded_string_exception : public tokenize_exception {};

inline constexpr std::string_view WHITESPACE = " \t\r\n";
inline constexpr std::string_view QUOTES = "\"'";

// closing_marks[i] closes opening_marks[i] (a mark may close itself; one without a partner in
// closing_marks does); the marks named in kept_marks stay in the token, the others are dropped.
// A quoted part belongs to the token it touches: ab"c d"e is the one token "abc de". Inside quotes
// everything is literal, without escapes. Throws unterminated_embedded_string_exception if an
// opening mark has no closing mark behind it.
std::vector<std::string> Tokenize(std::string_view text, std::string_view separators,
                                  std::string_view opening_marks, std::string_view closing_marks,
                                  std::string_view kept_marks);

// The usual call: blanks, tabs and line ends separate; double quotes and apostrophes quote.
inline std::vector<std::string> Tokenize(std::string_view text) {
  return Tokenize(text, WHITESPACE, QUOTES, QUOTES, {});
}

}  // namespace BraskUtils
