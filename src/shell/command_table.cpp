// The command language: every word, how many tokens it takes, and the command it makes. One
// language for all protocols; comparison of the word is exact, lower case only.
#include <algorithm>
#include <functional>
#include <string_view>

#include "evaluation/personalities.h"
#include "shell/basic_protocol.h"
#include "shell/commands.h"
#include "shell/error_command.h"
#include "shell/os_dependent.h"
#include "shell/tee_stream.h"

namespace BraskInterfaces {

namespace {

using Tokens = std::vector<std::string>;
using CommandPtr = std::unique_ptr<Command>;
using Factory = std::function<CommandPtr(BasicProtocol&, const Tokens&, const std::string&)>;

// How many tokens a word takes, the word included, and what is said when they don't fit.
enum class Arity { at_most, exactly, at_least, any };

struct CommandWord {
  std::string_view word;
  Arity arity;
  std::size_t count;
  Factory make;
};

[[noreturn]] void Refuse(std::string_view message, const std::string& line) {
  throw ErrorCommand(ErrorCommand::error, message, line);
}

int IntegerArgument(const std::string& token, const std::string& line) {
  try {
    return StringToInt(token);
  } catch (const string_conversion_error&) {
    Refuse("integer argument expected", line);
  }
}

void CheckArity(const CommandWord& entry, std::size_t tokens, const std::string& line) {
  switch (entry.arity) {
    case Arity::at_most:
      if (tokens > entry.count) Refuse("too many parameters", line);
      break;
    case Arity::exactly:
      if (tokens != entry.count) Refuse("wrong number of arguments", line);
      break;
    case Arity::at_least:
      if (tokens < entry.count) Refuse("missing parameters", line);
      break;
    case Arity::any:
      break;
  }
}

// A command made from the line alone.
template <typename T>
Factory Simple() {
  return [](BasicProtocol&, const Tokens&, const std::string& line) -> CommandPtr {
    return std::make_unique<T>(line);
  };
}

// A command made from the line and its second token.
template <typename T>
Factory WithArgument() {
  return [](BasicProtocol&, const Tokens& tokens, const std::string& line) -> CommandPtr {
    return std::make_unique<T>(line, tokens[1]);
  };
}

template <typename T>
Factory WithInteger() {
  return [](BasicProtocol&, const Tokens& tokens, const std::string& line) -> CommandPtr {
    return std::make_unique<T>(line, IntegerArgument(tokens[1], line));
  };
}

std::string JoinTokens(const Tokens& tokens, std::size_t from) {
  std::string text;
  for (std::size_t i = from; i < tokens.size(); ++i) text += (i > from ? " " : "") + tokens[i];
  return text;
}

// undo and next: no argument is one move, "all" is all of them.
template <typename T>
Factory WithMoveCount() {
  return [](BasicProtocol&, const Tokens& tokens, const std::string& line) -> CommandPtr {
    int count = 1;
    if (tokens.size() == 2)
      count = tokens[1] == "all" ? T::ALL_MOVES : IntegerArgument(tokens[1], line);
    return std::make_unique<T>(line, count);
  };
}

CommandPtr MakeProtover(BasicProtocol&, const Tokens& tokens, const std::string& line) {
  const int version = IntegerArgument(tokens[1], line);
  if (version <= 1) {
    Output.ReportLogOnly("Unexpected xboard protocol version. Executing command \"xboard\" instead");
    return std::make_unique<Command_Xboard>(line);
  }
  if (version > 2)
    Output.ReportLogOnly("Future XBoard protocol version not support, falling back to version 2");
  return std::make_unique<Command_Protover2>(line);
}

CommandPtr MakeIgnored(BasicProtocol& protocol, const Tokens&, const std::string& line) {
  protocol.ReportCommandIgnored("command is not supported");
  return std::make_unique<Command_DoNothing>(line);
}

CommandPtr MakeUnsupported(BasicProtocol&, const Tokens&, const std::string& line) {
  Refuse("command is not supported", line);
}

CommandPtr MakeHash(BasicProtocol&, const Tokens& tokens, const std::string& line) {
  if (tokens.size() == 1) return std::make_unique<Command_DisplayHashtableStatus>(line);
  if (tokens.size() != 3) Refuse("wrong number of arguments", line);
  return std::make_unique<Command_ResizeHashtable>(line, tokens[1], tokens[2]);
}

CommandPtr MakePersonality(BasicProtocol&, const Tokens& tokens, const std::string& line) {
  if (tokens.size() == 1) return std::make_unique<Command_DisplayPersonality>(line);
  if (tokens.size() != 2) Refuse("wrong number of arguments", line);
  std::int32_t value = 0;
  if (!ParsePersonality(tokens[1], value)) Refuse("could not parse personality", line);
  return std::make_unique<Command_SetPersonality>(line, value);
}

CommandPtr MakeTablebases(BasicProtocol&, const Tokens& tokens, const std::string& line) {
  if (tokens.size() == 1) return std::make_unique<Command_DisplayTablebasesStatus>(line);
  if (tokens.size() < 4) Refuse("missing parameters", line);
  return std::make_unique<Command_InitTablebases>(line, tokens[1], tokens[2],
                                                  RestOfLine(line, 3));
}

CommandPtr MakeResult(BasicProtocol&, const Tokens& tokens, const std::string& line) {
  static constexpr std::string_view words[] = {"1-0", "0-1", "1/2-1/2", "*"};
  const auto found = std::find(std::begin(words), std::end(words), tokens[1]);
  if (found == std::end(words)) Refuse("invalid argument(s)", line);
  return std::make_unique<Command_Result>(line, std::uint32_t(found - std::begin(words)) + 1);
}

CommandPtr MakeRating(BasicProtocol&, const Tokens& tokens, const std::string& line) {
  const int engine = IntegerArgument(tokens[1], line), opponent = IntegerArgument(tokens[2], line);
  if (engine < 0 || opponent < 0) Refuse("argument out of bounds", line);
  return std::make_unique<Command_Rating>(line, engine, opponent);
}

CommandPtr MakeSt(BasicProtocol&, const Tokens& tokens, const std::string& line) {
  const int seconds = IntegerArgument(tokens[1], line);
  if (seconds < 0 || seconds > 2147483) Refuse("argument out of bounds", line);
  return std::make_unique<Command_st>(line, seconds);
}

CommandPtr MakeLevel(BasicProtocol&, const Tokens& tokens, const std::string& line) {
  return std::make_unique<Command_Level>(line, tokens[1], tokens[2], tokens[3]);
}


const std::vector<CommandWord>& CommandWords() {
  static const std::vector<CommandWord> words = {
      {".", Arity::at_most, 1, Simple<Command_SendSearchStatus>()},
      {"protover", Arity::exactly, 2, MakeProtover},
      {"bk", Arity::any, 0, MakeUnsupported},
      {"ics", Arity::any, 0, MakeUnsupported},
      {"pause", Arity::any, 0, MakeUnsupported},
      {"resume", Arity::any, 0, MakeUnsupported},
      {"variant", Arity::any, 0, MakeUnsupported},
      {"random", Arity::any, 0, MakeIgnored},
      {"accepted", Arity::any, 0, MakeIgnored},
      {"rejected", Arity::any, 0, MakeIgnored},
      {"?", Arity::at_most, 1, Simple<Command_MoveNow>()},
      {"analyze", Arity::at_most, 1, Simple<Command_Analyze>()},
      {"black", Arity::at_most, 1, Simple<Command_Black>()},
      {"computer", Arity::at_most, 1, Simple<Command_Computer>()},
      {"console", Arity::at_most, 1, Simple<Command_Console>()},
      {"contempt", Arity::exactly, 2, WithInteger<Command_Contempt>()},
      {"display", Arity::at_most, 1, Simple<Command_Display>()},
      {"display_settings", Arity::any, 0,
       [](BasicProtocol&, const Tokens& tokens, const std::string& line) -> CommandPtr {
         return std::make_unique<Command_DisplaySettingVariables>(line, JoinTokens(tokens, 1));
       }},
      {"draw", Arity::at_most, 1, Simple<Command_Draw>()},
      {"easy", Arity::at_most, 1, Simple<Command_Easy>()},
      {"edit", Arity::at_most, 1, Simple<Command_Edit>()},
      {"eval", Arity::at_most, 1, Simple<Command_Eval>()},
      {"exit", Arity::at_most, 1, Simple<Command_Exit>()},
      {"force", Arity::at_most, 1, Simple<Command_Force>()},
      {"fritz", Arity::at_most, 1, Simple<Command_Fritz>()},
      {"generate", Arity::any, 0, Simple<Command_Generate>()},
      {"go", Arity::at_most, 1, Simple<Command_Go>()},
      {"hard", Arity::at_most, 1, Simple<Command_Hard>()},
      {"hash", Arity::any, 0, MakeHash},
      {"help", Arity::at_most, 1, Simple<Command_Help>()},
      {"hint", Arity::at_most, 1, Simple<Command_Hint>()},
      {"id", Arity::any, 0,
       [](BasicProtocol&, const Tokens& tokens, const std::string& line) -> CommandPtr {
         return std::make_unique<Command_Id>(line, JoinTokens(tokens, 1));
       }},
      {"level", Arity::exactly, 4, MakeLevel},
      {"modify_settings", Arity::at_least, 2,
       [](BasicProtocol&, const Tokens& tokens, const std::string& line) -> CommandPtr {
         return std::make_unique<Command_ModifySettingVariables>(line, JoinTokens(tokens, 1));
       }},
      {"name", Arity::at_least, 2,
       [](BasicProtocol&, const Tokens& tokens, const std::string& line) -> CommandPtr {
         return std::make_unique<Command_Name>(line, JoinTokens(tokens, 1));
       }},
      {"new", Arity::at_most, 1, Simple<Command_New>()},
      {"next", Arity::at_most, 2, WithMoveCount<Command_Next>()},
      {"nopost", Arity::at_most, 1, Simple<Command_Nopost>()},
      {"optimize_piece", Arity::any, 0, Simple<Command_OptimizePiece>()},
      {"otim", Arity::exactly, 2, WithInteger<Command_Otim>()},
      {"personality", Arity::any, 0, MakePersonality},
      {"ping", Arity::exactly, 2, WithArgument<Command_Ping>()},
      {"playother", Arity::at_most, 1, Simple<Command_Playother>()},
      {"post", Arity::at_most, 1, Simple<Command_Post>()},
      {"probe", Arity::at_least, 2,
       [](BasicProtocol&, const Tokens&, const std::string& line) -> CommandPtr {
         return std::make_unique<Command_Probe>(line, RestOfLine(line));
       }},
      {"quit", Arity::at_most, 1, Simple<Command_Quit>()},
      {"rating", Arity::exactly, 3, MakeRating},
      {"read_fen", Arity::exactly, 2, WithArgument<Command_ReadFEN>()},
      {"read_pgn", Arity::exactly, 2, WithArgument<Command_ReadPGN>()},
      {"read_settings", Arity::exactly, 2, WithArgument<Command_ReadSearchSettings>()},
      {"remove", Arity::at_most, 1, Simple<Command_Remove>()},
      {"result", Arity::at_least, 2, MakeResult},
      {"sd", Arity::exactly, 2, WithInteger<Command_sd>()},
      {"setboard", Arity::at_least, 2,
       [](BasicProtocol&, const Tokens&, const std::string& line) -> CommandPtr {
         return std::make_unique<Command_Setboard>(line, RestOfLine(line));
       }},
      {"st", Arity::exactly, 2, MakeSt},
      {"tb", Arity::any, 0, MakeTablebases},
      {"tc", Arity::any, 0,
       [](BasicProtocol&, const Tokens& tokens, const std::string& line) -> CommandPtr {
         return std::make_unique<Command_Tc>(line, JoinTokens(tokens, 1));
       }},
      {"time", Arity::exactly, 2, WithInteger<Command_Time>()},
      {"uci", Arity::at_most, 1, Simple<Command_Uci>()},
      {"undo", Arity::at_most, 2, WithMoveCount<Command_Undo>()},
      {"usermove", Arity::exactly, 2, WithArgument<Command_UsermoveNewStyle>()},
      {"verify", Arity::any, 0, Simple<Command_Verify>()},
      {"version", Arity::at_most, 1, Simple<Command_Version>()},
      {"white", Arity::at_most, 1, Simple<Command_White>()},
      {"write_fen", Arity::exactly, 2, WithArgument<Command_WriteFEN>()},
      {"write_pgn", Arity::exactly, 2, WithArgument<Command_WritePGN>()},
      {"write_settings", Arity::exactly, 2, WithArgument<Command_WriteSearchSettings>()},
      {"xboard", Arity::at_most, 1, Simple<Command_Xboard>()},
  };
  return words;
}

}  // namespace

std::unique_ptr<Command> BasicProtocol::Parse(const std::vector<std::string>& tokens,
                                              const std::string& line) {
  for (const CommandWord& entry : CommandWords()) {
    if (tokens[0] != entry.word) continue;
    CheckArity(entry, tokens.size(), line);
    return entry.make(*this, tokens, line);
  }
  // An unknown word alone is taken for a move, whose failure then reads "Illegal move: foo".
  if (tokens.size() == 1) return std::make_unique<Command_UsermoveOldStyle>(line, tokens[0]);
  Refuse("unrecognized command", line);
}

}  // namespace BraskInterfaces
