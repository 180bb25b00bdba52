#include "shell/uci_position.h"

#include "shell/error_command.h"

namespace {
[[noreturn]] void Refuse(std::string_view message, const std::string& line) {
  throw ErrorCommand(ErrorCommand::error, message, line);
}
}  // namespace

void IgnoreDrawByRule(UserBoard& game) {
  GameBoard& board = game.current;
  if (board.result == RESULT_DRAW && board.reason != REASON_STALEMATE &&
      board.reason != REASON_AGREEMENT) {
    board.result = RESULT_RUNNING;
    board.reason = REASON_NONE;
  }
}

UserBoard ParseUciPosition(const std::vector<std::string>& tokens, const std::string& line) {
  if (tokens.size() < 2) Refuse("missing parameters", line);
  UserBoard game;
  std::size_t next = 2;
  if (tokens[1] == "fen") {
    std::string fen;
    for (; next < tokens.size() && tokens[next] != "moves"; ++next)
      fen += (fen.empty() ? "" : " ") + tokens[next];
    try {
      game.SetFEN(fen);
    } catch (const UserBoard::io_error&) {
      Refuse("input inconsistent with FEN standard", line);
    } catch (const UserBoard::invalid_position&) {
      Refuse("Illegal position", line);
    }
  } else if (tokens[1] != "startpos") {
    Refuse("invalid argument(s)", line);
  }
  if (next == tokens.size()) return game;
  if (tokens[next] != "moves") Refuse("invalid argument(s)", line);
  for (++next; next < tokens.size(); ++next) {
    IgnoreDrawByRule(game);
    Move move = INVALID;
    if (game.ParseMove(tokens[next], move) != PARSE_OK)
      throw ErrorCommand(ErrorCommand::illegal_move, "", tokens[next]);
    game.MakeMove(move);
  }
  return game;
}
