#include "shell/commands_settings.h"

#include "search/settings_commands.h"
#include "shell/game_state.h"

namespace BraskInterfaces {

void Command_SettingsAction::Execute(GameState& game) {
  if (NeedsForceMode()) RequireForceMode(game);
  try {
    Act();
  } catch (const OptimizeInterface::SettingsCommandError& error) {
    Fail(error.what());
  }
  finished = true;
}

void Command_DisplaySettingVariables::Act() const {
  OptimizeInterface::DisplaySearchSettings(argument);
}

void Command_ModifySettingVariables::Act() const {
  OptimizeInterface::ModifySearchSettings(argument);
}

void Command_ReadSearchSettings::Act() const { OptimizeInterface::ReadSearchSettings(argument); }

void Command_WriteSearchSettings::Act() const { OptimizeInterface::WriteSearchSettings(argument); }

}  // namespace BraskInterfaces
