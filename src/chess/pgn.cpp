// Games as PGN: a tolerant reader (comments, variations, move numbers, annotations and unknown
// tags pass) and the writer.
#include <algorithm>
#include <istream>
#include <ostream>
#include <string>
#include <vector>

#include "chess/stream_exceptions.h"
#include "chess/user_board.h"
#include "shell/conversions.h"

namespace {

constexpr std::streamsize SKIP_LIMIT = 1000;  // the most a comment or a line end may drop
constexpr std::size_t LINE_WIDTH = 70;
constexpr std::size_t MOVES_RESERVED = 300;

using io_error = UserBoard::io_error;

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// The tag section: lines of the form [Name "value"]; tags that PGNInfo does not keep are
// dropped.
void ReadTags(std::istream& stream, PGNInfo& info) {
  for (;;) {
    stream >> std::ws;
    if (stream.get() != '[') {
      stream.unget();
      return;
    }
    std::string name;
    std::string rest;
    stream >> name;
    stream.get();
    std::getline(stream, rest);
    while (!rest.empty() && (rest.back() == '\r' || rest.back() == ' ' || rest.back() == '\t'))
      rest.pop_back();
    if (rest.size() <= 2 || rest.front() != '"' || !rest.ends_with("\"]"))
      throw io_error("PGN: bad tag " + name);
    if (std::string* field = info.FieldOfTag(name)) *field = rest.substr(1, rest.size() - 3);
  }
}

// "12.Nf3" and "12...Nf3" lose their move number; "12." stays as it is.
std::string WithoutMoveNumber(const std::string& token) {
  std::size_t digits = 0;
  while (digits < token.size() && IsDigit(token[digits])) ++digits;
  std::size_t dots = 0;
  while (digits + dots < token.size() && token[digits + dots] == '.') ++dots;
  const bool numbered = digits > 0 && dots >= 1 && dots <= 3 && digits + dots < token.size();
  return numbered ? token.substr(digits + dots) : token;
}

bool IsResult(const std::string& token) {
  return token == "1-0" || token == "0-1" || token == "1/2-1/2" || token == "*";
}

// "$14", a numeric annotation glyph.
bool IsAnnotationGlyph(const std::string& token) {
  return token.size() > 1 && token[0] == '$' &&
         token.find_first_not_of("0123456789", 1) == std::string::npos;
}

// "e4!", "Nf3?!": the judgement is no part of the move.
std::string WithoutJudgement(std::string token) {
  while (!token.empty() && (token.back() == '!' || token.back() == '?')) token.pop_back();
  return token;
}

// The moves of a game as they are read, on a position of its own.
class MoveSection {
 public:
  MoveSection(std::istream& stream, const GameBoard& start) : stream_(stream), board_(start) {
    moves_.reserve(MOVES_RESERVED);
    keys_.reserve(MOVES_RESERVED);
  }

  // Reads up to and including the result token.
  void Read() {
    std::string token;
    do stream_ >> token;
    while (!Take(token));
  }

  const std::vector<Move>& Moves() const { return moves_; }

 private:
  // Returns true at the end of the game text. Comments and variations are looked for first, so
  // that their words never count as moves or numbers.
  bool Take(std::string token) {
    while (token.front() == '{') {
      // A comment that closes inside its own first token lets the rest of the token be read.
      const std::size_t close = token.find('}');
      if (close == std::string::npos) {
        stream_.ignore(SKIP_LIMIT, '}');
        return false;
      }
      token.erase(0, close + 1);
      if (token.empty()) return false;
    }
    if (token.front() == ';') {
      stream_.ignore(SKIP_LIMIT, '\n');
      return false;
    }
    if (token.front() == '(') {
      SkipVariation(token);
      return false;
    }
    token = WithoutMoveNumber(token);
    if (IsResult(token)) {
      stream_.ignore(SKIP_LIMIT, '\n');
      return true;
    }
    if (token == "...") {
      if (!moves_.empty() || board_.side_on_move != BLACK)
        throw io_error("PGN: \"...\" where White is on move");
      return false;
    }
    if (token.back() == '.' || IsAnnotationGlyph(token)) return false;
    Play(WithoutJudgement(token));
    return false;
  }

  // A variation is no part of the game; it may hold variations of its own.
  void SkipVariation(const std::string& first) {
    std::string token;
    for (long depth = NestingChange(first); depth > 0; depth += NestingChange(token))
      stream_ >> token;
  }

  static long NestingChange(const std::string& token) {
    return std::count(token.begin(), token.end(), '(') -
           std::count(token.begin(), token.end(), ')');
  }

  void Play(const std::string& text) {
    Move move = INVALID;
    if (ParseMove(board_, text, move) != PARSE_OK) throw UserBoard::invalid_move();
    MakeGameMove(board_, move, keys_);
    moves_.push_back(move);
  }

  std::istream& stream_;
  GameBoard board_;
  std::vector<Move> moves_;
  std::vector<std::uint64_t> keys_;
};

void WriteTags(std::ostream& stream, const PGNInfo& info, std::uint32_t result) {
  const std::pair<const char*, std::string_view> tags[] = {
      {"Event", info.event}, {"Site", info.site},   {"Date", info.date},
      {"Round", info.round}, {"White", info.white}, {"Black", info.black},
      {"Result", ResultText(result)}, {"TimeControl", info.time_control},
  };
  for (const auto& [name, value] : tags) stream << '[' << name << " \"" << value << "\"]\n";
}

}  // namespace

void UserBoard::ReadPGN(std::istream& stream, PGNInfo& info) {
  PGNInfo tags = info;
  tags.fen.clear();  // a game without a FEN tag starts from the initial position
  std::vector<Move> game;
  FenPosition start_position;
  try {
    StreamExceptions guard(stream);
    ReadTags(stream, tags);
    if (tags.fen.empty())
      start_position.board.Setup(INITIAL_POSITION, WHITE, 0, ALL_CASTLING);
    else
      start_position = ParseFEN(tags.fen);
    MoveSection section(stream, start_position.board);
    section.Read();
    game = section.Moves();
  } catch (const std::ios::failure&) {
    throw io_error("could not read PGN: the text ends before the result");
  }
  StartGameAt(start_position.board, start_position.start_ply);
  next_moves.assign(game.rbegin(), game.rend());
  info = tags;
}

void UserBoard::WritePGN(std::ostream& stream, const PGNInfo& info) const {
  try {
    StreamExceptions guard(stream);
    WriteTags(stream, info, current.result);
    stream << '\n';
    GameBoard board = start;
    std::vector<std::uint64_t> replay_keys;
    std::int32_t ply = start_ply;
    std::size_t line_length = 0;
    for (std::size_t i = 0; i < moves.size(); ++i, ++ply) {
      const bool opening_move = i == 0 && ply == 0;
      std::string token;
      if (board.side_on_move == WHITE || opening_move) {
        token = IntToString(ply / 2 + 1) + ".";
        if (opening_move && board.side_on_move == BLACK) token += " ...";
        token += ' ';
      }
      token += MoveToText(board, moves[i], SAN_NOTATION) + ' ';
      line_length += token.size();
      if (line_length > LINE_WIDTH) {
        stream << '\n';
        line_length = token.size();
      }
      stream << token;
      MakeGameMove(board, moves[i], replay_keys);
    }
    stream << '\n' << ResultText(current.result) << '\n';
  } catch (const std::ios::failure&) {
    throw io_error("could not write PGN");
  }
}
