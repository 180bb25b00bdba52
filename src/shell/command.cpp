#include "shell/command.h"

#include "shell/error_command.h"
#include "shell/game_state.h"

namespace BraskInterfaces {

void Command::Fail(std::string_view message) const {
  throw ErrorCommand(ErrorCommand::error, message, line);
}

void Command::RequireForceMode(const GameState& game) const {
  if (game.engine_mode != EngineMode::force) Fail("must be in force mode");
}

}  // namespace BraskInterfaces
