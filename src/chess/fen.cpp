// Positions as FEN: a strict reader, since a position read wrongly would go unnoticed, and the
// writer.
#include <algorithm>
#include <istream>
#include <ostream>
#include <string>
#include <vector>

#include "chess/stream_exceptions.h"
#include "chess/tokenizer.h"
#include "chess/user_board.h"
#include "shell/conversions.h"
#include "chess/coordinate_characters.h"

namespace {

constexpr int FEN_FIELDS = 6;
constexpr int MAX_HALFMOVE_CLOCK = 100;
// Keeps the ply count of any game from such a position inside 32 bits.
constexpr int MAX_FULLMOVE_NUMBER = 1'000'000'000;

using io_error = UserBoard::io_error;

// The piece code of a letter of "kqrbnp?PNBRQK"; NO_PIECE for anything else ("?" included).
int PieceFromFenLetter(char letter) {
  constexpr std::string_view LETTERS = SignedPieceLetters;
  const std::size_t at = LETTERS.find(letter);
  return at == std::string_view::npos ? NO_PIECE : static_cast<int>(at) - 6;
}

// Counting is loose: a short row or a digit that runs over is noticed only when a piece would
// land off its row. The counters are wide so that no text can make them overflow.
void ReadPlacement(const std::string& field, std::int8_t squares[64]) {
  long long square = A8;
  long long row = 7;
  for (char c : field) {
    if (c >= '0' && c <= '9') {
      square += c - '0';
    } else if (c == '/') {
      square -= 16;
      row -= 1;
    } else if (const int piece = PieceFromFenLetter(c); piece != NO_PIECE) {
      if (square < 0 || square > 63 || square / 8 != row)
        throw io_error("FEN: a piece off its row");
      squares[square++] = static_cast<std::int8_t>(piece);
    } else {
      throw io_error("FEN: bad character in the placement");
    }
  }
}

int ReadSide(const std::string& field) {
  if (field == "w") return WHITE;
  if (field == "b") return BLACK;
  throw io_error("FEN: the side on move must be w or b");
}

// "-", or letters in the order K, Q, k, q, each at most once.
int ReadCastling(const std::string& field) {
  if (field == "-") return 0;
  if (field.empty()) throw io_error("FEN: empty castling field");
  constexpr std::string_view LETTERS = "KQkq";
  int rights = 0;
  for (char c : field) {
    const std::size_t at = LETTERS.find(c);
    const int right = at == std::string_view::npos ? 0 : 1 << at;
    if (right == 0 || rights >= right) throw io_error("FEN: bad castling rights");
    rights |= right;
  }
  return rights;
}

int ReadEnPassant(const std::string& field) {
  if (field == "-") return 0;
  if (field.size() != 2 || !IsFileLetter(field[0]) || !IsRankDigit(field[1]))
    throw io_error("FEN: bad en-passant square");
  const int square = SquareFromLetters(field[0], field[1]);
  // a1 would read as "none"; like every other square off the third and sixth ranks it is no
  // en-passant square.
  if (square == A1) throw UserBoard::invalid_position();
  return square;
}

int ReadNumber(const std::string& field, int max, const char* complaint) {
  int value = -1;
  try {
    value = StringToInt(field);
  } catch (const string_conversion_error&) {
    throw io_error(complaint);
  }
  if (value < 0 || value > max) throw io_error(complaint);
  return value;
}

std::vector<std::string> FenFields(std::string_view text) {
  std::vector<std::string> fields;
  try {
    fields = BraskUtils::Tokenize(text, " \t\r\n", "\"'", "\"'", "");
  } catch (const BraskUtils::tokenize_exception&) {
    throw io_error("FEN: unterminated quote");
  }
  if (fields.size() != FEN_FIELDS) throw io_error("FEN must have six fields");
  return fields;
}

std::string Placement(const Board& board) {
  std::string text;
  for (int rank = 7; rank >= 0; --rank) {
    int empty = 0;
    for (int file = 0; file < 8; ++file) {
      const int piece = board.squares[MakeSquare(file, rank)];
      if (piece == NO_PIECE) {
        ++empty;
        continue;
      }
      if (empty > 0) text += static_cast<char>('0' + empty);
      empty = 0;
      text += SignedPieceLetters[piece + 6];
    }
    if (empty > 0) text += static_cast<char>('0' + empty);
    if (rank > 0) text += '/';
  }
  return text;
}

std::string SquareText(int square) { return {FileLetter(File(square)), RankDigit(Rank(square))}; }

std::string CastlingText(int rights) {
  std::string text;
  for (int bit = 0; bit < 4; ++bit)
    if (rights & (1 << bit)) text += "KQkq"[bit];
  return text.empty() ? "-" : text;
}

}  // namespace

UserBoard::FenPosition UserBoard::ParseFEN(std::string_view text) {
  const std::vector<std::string> fields = FenFields(text);
  std::int8_t squares[64]{};
  ReadPlacement(fields[0], squares);
  const int side = ReadSide(fields[1]);
  const int castling = ReadCastling(fields[2]);
  const int en_passant = ReadEnPassant(fields[3]);
  const int clock = ReadNumber(fields[4], MAX_HALFMOVE_CLOCK, "FEN: bad halfmove clock");
  const int fullmove = ReadNumber(fields[5], MAX_FULLMOVE_NUMBER, "FEN: bad fullmove number");

  FenPosition position;
  if (!position.board.Setup(squares, side, en_passant, castling)) throw invalid_position();
  // A fullmove number of 0, which some programs write, counts as 1.
  position.start_ply = std::max(0, (fullmove - 1) * 2) + side;
  position.board.SetHalfmoveClock(clock);
  position.board.result = RESULT_RUNNING;
  position.board.reason = REASON_NONE;
  GameEnd(position.board, {});
  return position;
}

void UserBoard::SetFEN(std::string_view text) {
  const FenPosition position = ParseFEN(text);
  StartGameAt(position.board, position.start_ply);
}

std::string UserBoard::GetFEN() const {
  const int fullmove = (start_ply + static_cast<int>(moves.size())) / 2 + 1;
  const int en_passant = current.EnPassant();
  return Placement(current) + (current.side_on_move == WHITE ? " w " : " b ") +
         CastlingText(current.Castling()) + " " + (en_passant == 0 ? "-" : SquareText(en_passant)) +
         " " + IntToString(current.HalfmoveClock()) + " " + IntToString(fullmove);
}

void UserBoard::WriteFEN(std::ostream& stream) const {
  try {
    StreamExceptions guard(stream);
    stream << GetFEN() << '\n';
  } catch (const std::ios::failure&) {
    throw io_error("could not write FEN");
  }
}

void UserBoard::ReadFEN(std::istream& stream) {
  std::string text;
  try {
    StreamExceptions guard(stream);
    for (int field = 0; field < FEN_FIELDS; ++field) {
      std::string token;
      stream >> token;
      text += (field == 0 ? "" : " ") + token;
    }
  } catch (const std::ios::failure&) {
    throw io_error("could not read FEN");
  }
  SetFEN(text);
}
