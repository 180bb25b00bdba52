// The words of the UCI protocol. Unlike the console and xboard, UCI has a language of its own:
// nothing else is taken, and an unknown word is an error, never a move.
#include <functional>
#include <string_view>

#include "shell/commands.h"
#include "shell/error_command.h"
#include "shell/uci_commands.h"
#include "shell/uci_position.h"
#include "shell/uci_protocol.h"

namespace BraskInterfaces {

namespace {

using Tokens = std::vector<std::string>;
using CommandPtr = std::unique_ptr<Command>;

template <typename T>
CommandPtr Make(const Tokens&, const std::string& line) {
  return std::make_unique<T>(line);
}

// The words of a "setoption" line between "name" and "value", and behind "value".
CommandPtr MakeSetOption(const Tokens& tokens, const std::string& line) {
  if (tokens.size() < 3 || tokens[1] != "name")
    throw ErrorCommand(ErrorCommand::error, "missing parameters", line);
  std::string name, value;
  std::size_t i = 2;
  for (; i < tokens.size() && tokens[i] != "value"; ++i)
    name += (name.empty() ? "" : " ") + tokens[i];
  for (++i; i < tokens.size(); ++i) value += (value.empty() ? "" : " ") + tokens[i];
  if (name.empty()) throw ErrorCommand(ErrorCommand::error, "missing parameters", line);
  return std::make_unique<Command_SetOption>(line, name, value);
}

CommandPtr MakeGo(const Tokens& tokens, const std::string& line) {
  return std::make_unique<Command_UciGo>(
      line, ParseGoParameters(Tokens(tokens.begin() + 1, tokens.end()), line));
}

CommandPtr MakePosition(const Tokens& tokens, const std::string& line) {
  return std::make_unique<Command_Position>(line, ParseUciPosition(tokens, line));
}

struct UciWord {
  std::string_view word;
  CommandPtr (*make)(const Tokens&, const std::string&);
};

constexpr UciWord UCI_WORDS[] = {
    {"uci", Make<Command_Uci>},
    {"debug", Make<Command_DoNothing>},
    {"isready", Make<Command_IsReady>},
    {"setoption", MakeSetOption},
    {"register", Make<Command_DoNothing>},
    {"ucinewgame", Make<Command_UciNewGame>},
    {"position", MakePosition},
    {"go", MakeGo},
    {"stop", Make<Command_Stop>},
    {"ponderhit", Make<Command_PonderHit>},
    {"quit", Make<Command_Quit>},
};

}  // namespace

std::unique_ptr<Command> UciProtocol::Parse(const std::vector<std::string>& tokens,
                                            const std::string& line) {
  for (const UciWord& entry : UCI_WORDS)
    if (tokens[0] == entry.word) return entry.make(tokens, line);
  throw ErrorCommand(ErrorCommand::error, "unrecognized command", line);
}

}  // namespace BraskInterfaces
