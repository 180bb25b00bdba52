#include "shell/commands_engine.h"

#include <algorithm>

#include "shell/basic_protocol.h"
#include "shell/game_state.h"

namespace BraskInterfaces {

void Command_Contempt::Execute(GameState& game) {
  RequireForceMode(game);
  const int clamped = std::clamp(value, -32767, 32767);
  if (clamped != game.search.contempt) {
    game.search.SetContempt(clamped);
    game.draw_handler.contempt = clamped;
    game.draw_handler.Reset();
  }
  finished = true;
}

void Command_SetPersonality::Execute(GameState& game) {
  RequireForceMode(game);
  const std::int16_t clamped = std::int16_t(std::clamp(value, -1000, 1000));
  if (clamped != game.Protocol().personality) {
    game.search.SetPersonality(clamped);
    game.Protocol().personality = clamped;
  }
  finished = true;
}

void Command_DisplayPersonality::Execute(GameState& game) {
  game.Protocol().DisplayPersonality();
  finished = true;
}

void Command_Unavailable::Execute(GameState& game) {
  if (needs_force_mode) RequireForceMode(game);
  Fail(what + " not available in this version");
}

}  // namespace BraskInterfaces
