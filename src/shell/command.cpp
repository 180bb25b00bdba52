#include "shell/command.h"

#include "chess/memory_size.h"
#include "shell/conversions.h"
#include "shell/error_command.h"
#include "shell/game_state.h"

namespace BraskInterfaces {

void Command::Fail(std::string_view message) const {
  throw ErrorCommand(ErrorCommand::error, message, line);
}

void Command::RequireForceMode(const GameState& game) const {
  if (game.engine_mode != EngineMode::force) Fail("must be in force mode");
}

std::uint64_t Command::SizeArgument(const std::string& text) const {
  try {
    return BraskUtils::ParseMemorySize(text);
  } catch (const string_conversion_error&) {
    Fail("could not parse new size");
  }
}

}  // namespace BraskInterfaces
