// Reading a move: the text only selects among the legal moves, so whatever enters a game is a
// word of the generator with its check bits.
#include <algorithm>
#include <array>
#include <cstdlib>
#include <iterator>
#include <vector>

#include "chess/move_generator.h"
#include "chess/move_text.h"
#include "chess/coordinate_characters.h"

namespace {

// Only this much of a text is looked at; the rest of the buffer reads as zero bytes.
constexpr std::size_t TEXT_LIMIT = 16;
using PaddedText = std::array<char, TEXT_LIMIT + 2>;

PaddedText Pad(std::string_view text) {
  PaddedText padded{};
  std::copy_n(text.begin(), std::min(text.size(), TEXT_LIMIT), padded.begin());
  return padded;
}

int PromotionFromLetter(char letter) {
  switch (letter) {
    case 'n': case 'N': return KNIGHT;
    case 'b': case 'B': return BISHOP;
    case 'r': case 'R': return ROOK;
    case 'q': case 'Q': return QUEEN;
    default: return NO_PIECE;
  }
}

// "B" only in capitals: the small letter is the b-file.
int PieceFromLetter(char letter) {
  switch (letter) {
    case 'P': case 'p': return PAWN;
    case 'N': case 'n': return KNIGHT;
    case 'B': return BISHOP;
    case 'R': case 'r': return ROOK;
    case 'Q': case 'q': return QUEEN;
    case 'K': case 'k': return KING;
    default: return NO_PIECE;
  }
}

// ---------------------------------------------------------------------------------------------
// Coordinates: "e2e4", "E2E4", "a7a8n", "a7a8=N". A pawn reaching the last rank without a
// letter becomes a queen.

Move ReadCoordinates(const Board& board, const std::vector<Move>& legal, const PaddedText& t) {
  if (!IsFileLetter(t[0]) || !IsRankDigit(t[1]) || !IsFileLetter(t[2]) || !IsRankDigit(t[3]))
    return INVALID;
  const int from = SquareFromLetters(t[0], t[1]);
  const int to = SquareFromLetters(t[2], t[3]);
  int promotion = PromotionFromLetter(t[4] == '=' ? t[5] : t[4]);
  const bool pawn_to_last_rank =
      std::abs(board.squares[from]) == PAWN && (Rank(to) == 0 || Rank(to) == 7);
  if (promotion == NO_PIECE && pawn_to_last_rank) promotion = QUEEN;
  for (Move move : legal)
    if (From(move) == from && To(move) == to &&
        (promotion == NO_PIECE || PromotionType(move) == promotion))
      return move;
  return INVALID;
}

// ---------------------------------------------------------------------------------------------
// Castling: "O-O", "o-o", "0-0-0", optionally followed by a blank, "+" or "#". Returns false if
// the text is no castling text at all.

bool ReadCastling(const Board& board, const std::vector<Move>& legal, const PaddedText& t,
                  Move& move, int& reason) {
  for (char c : {'o', 'O', '0'}) {
    if (t[0] != c || t[1] != '-' || t[2] != c) continue;
    move = INVALID;
    const bool is_long = t[3] == '-';
    if (is_long && t[4] != c) {
      reason = READ_SYNTAX_ERROR;
      return true;
    }
    const char after = t[is_long ? 5 : 3];
    if (after != '\0' && after != ' ' && after != '#' && after != '+') {
      reason = READ_SYNTAX_ERROR;
      return true;
    }
    const int from = board.side_on_move == WHITE ? E1 : E8;
    const int to = from + (is_long ? -2 : 2);
    const auto found = std::find_if(legal.begin(), legal.end(), [&](Move m) {
      return From(m) == from && To(m) == to && MovedType(m) == KING;
    });
    if (found == legal.end())
      reason = READ_ILLEGAL_CASTLING;
    else
      move = *found;
    return true;
  }
  return false;
}

// ---------------------------------------------------------------------------------------------
// SAN, taken apart from both ends into the parts that a move must fit.

struct SanPattern {
  int piece = NO_PIECE;
  bool piece_named = false;
  bool capture = false;
  bool check = false;
  int promotion = NO_PIECE;
  int to_file = -1;
  int to_rank = -1;
  int from_file = -1;
  int from_rank = -1;

  bool Fits(Move move) const {
    return (piece == NO_PIECE || MovedType(move) == piece) && (!capture || IsCapture(move)) &&
           (!check || GivesCheck(move)) &&
           (promotion == NO_PIECE || PromotionType(move) == promotion) &&
           (to_file < 0 || File(To(move)) == to_file) &&
           (to_rank < 0 || Rank(To(move)) == to_rank) &&
           (from_file < 0 || File(From(move)) == from_file) &&
           (from_rank < 0 || Rank(From(move)) == from_rank);
  }
};

// Takes the first of the characters out of the text; true if there was one.
bool TakeOutFirstOf(std::string& text, const char* characters, bool cut_rest) {
  const std::size_t at = text.find_first_of(characters);
  if (at == std::string::npos) return false;
  if (cut_rest)
    text.resize(at);
  else
    text.erase(at, 1);
  return true;
}

bool ParseSan(std::string text, SanPattern& pattern) {
  pattern.check = TakeOutFirstOf(text, "+#", true);
  pattern.capture = TakeOutFirstOf(text, "x:", false);
  if (const std::size_t at = text.find('='); at != std::string::npos) {
    text.erase(at, 1);
    if (at < text.size() && PromotionFromLetter(text[at]) != NO_PIECE) {
      pattern.promotion = PromotionFromLetter(text[at]);
      pattern.piece = PAWN;
      text.resize(at);
    }
  }
  if (!text.empty() && IsRankDigit(text.back())) {
    pattern.to_rank = RankFromDigit(text.back());
    text.pop_back();
  }
  if (!text.empty() && IsFileLetter(text.back())) {
    pattern.to_file = FileFromLetter(text.back());
    text.pop_back();
  }
  if (pattern.piece == NO_PIECE && !text.empty() && PieceFromLetter(text.front()) != NO_PIECE) {
    pattern.piece = PieceFromLetter(text.front());
    pattern.piece_named = true;
    text.erase(0, 1);
  }
  if (!text.empty() && IsRankDigit(text.back())) {
    pattern.from_rank = RankFromDigit(text.back());
    text.pop_back();
  }
  if (!text.empty() && IsFileLetter(text.back())) {
    if (text.size() != 1) return false;
    pattern.from_file = FileFromLetter(text.back());
    text.pop_back();
  }
  // A text that names no target at all ("", "+", "=Q", "K") selects nothing, even when the
  // position has a single move that would fit it.
  return text.empty() && (pattern.to_file >= 0 || pattern.to_rank >= 0);
}

Move ReadSan(const std::vector<Move>& legal, const PaddedText& t, int& reason) {
  SanPattern pattern;
  if (!ParseSan(std::string(t.data()), pattern)) {
    reason = READ_SYNTAX_ERROR;
    return INVALID;
  }
  std::vector<Move> fitting;
  std::copy_if(legal.begin(), legal.end(), std::back_inserter(fitting),
               [&](Move move) { return pattern.Fits(move); });
  if (fitting.size() > 1 && !pattern.piece_named) {
    // "e4" is the pawn's move even if a knight could go there too.
    const auto pawn_moves = std::count_if(fitting.begin(), fitting.end(),
                                          [](Move move) { return MovedType(move) == PAWN; });
    if (pawn_moves == 1)
      return *std::find_if(fitting.begin(), fitting.end(),
                           [](Move move) { return MovedType(move) == PAWN; });
  }
  if (fitting.size() == 1) return fitting.front();
  reason = fitting.empty() ? READ_NO_MATCH : READ_AMBIGUOUS;
  return INVALID;
}

}  // namespace

Move ReadMove(const Board& board, std::string_view text, int& reason) {
  std::vector<Move> legal;
  GenerateMoves(legal, board);
  const PaddedText padded = Pad(text);
  if (const Move move = ReadCoordinates(board, legal, padded); move != INVALID) return move;
  Move castling = INVALID;
  if (ReadCastling(board, legal, padded, castling, reason)) return castling;
  return ReadSan(legal, padded, reason);
}

ParseResult ParseMove(const GameBoard& board, std::string_view text, Move& move) {
  constexpr ParseResult FROM_READ_FAILURE[] = {PARSE_AMBIGUOUS, PARSE_NO_MATCH,
                                               PARSE_ILLEGAL_CASTLING, PARSE_SYNTAX_ERROR};
  move = INVALID;
  if (board.IsOver()) return PARSE_GAME_OVER;
  int reason = READ_SYNTAX_ERROR;
  move = ReadMove(board, text, reason);
  return move != INVALID ? PARSE_OK : FROM_READ_FAILURE[reason];
}
