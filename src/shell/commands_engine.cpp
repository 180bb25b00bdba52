#include "shell/commands_engine.h"

#include <algorithm>

#include "chess/memory_size.h"
#include "chess/user_board.h"
#include "shell/basic_protocol.h"
#include "shell/conversions.h"
#include "shell/error_command.h"
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
  CheckArguments();
  if (needs_force_mode) RequireForceMode(game);
  throw IgnorableErrorCommand(ErrorCommand::error, what + " not available in this version", line);
}

namespace {
bool IsMemorySize(const std::string& text) {
  try {
    BraskUtils::ParseMemorySize(text);
    return true;
  } catch (const string_conversion_error&) {
    return false;
  }
}
}  // namespace

void Command_ResizeHashtable::CheckArguments() const {
  if (table != "trans" && table != "pawn" && table != "eval") Fail("unknown hashtable type");
  if (!IsMemorySize(size)) Fail("could not parse new size");
}

void Command_InitTablebases::CheckArguments() const {
  if (type != "nalimov") Fail("could not parse type");
  if (!IsMemorySize(size)) Fail("could not parse new size");
}

void Command_Probe::CheckArguments() const {
  UserBoard board;
  try {
    board.SetFEN(fen);
  } catch (const UserBoard::io_error&) {
    Fail("input inconsistent with FEN standard");
  } catch (const UserBoard::invalid_position&) {
    Fail("Illegal position");
  }
}

}  // namespace BraskInterfaces
