// Commands that show, change, write and read the search settings.
#pragma once

#include <string>

#include "shell/command.h"

namespace BraskInterfaces {

// The four commands share their shape: a text argument, an action that throws the command's error
// text, and perhaps the force-mode check.
class Command_SettingsAction : public Command {
 public:
  Command_SettingsAction(std::string line, std::string argument)
      : Command(std::move(line)), argument(std::move(argument)) {}
  void Execute(GameState& game) override;
  std::string argument;

 protected:
  virtual bool NeedsForceMode() const { return false; }
  virtual void Act() const = 0;
};

class Command_DisplaySettingVariables : public Command_SettingsAction {
 public:
  using Command_SettingsAction::Command_SettingsAction;

 protected:
  void Act() const override;
};

class Command_ModifySettingVariables : public Command_SettingsAction {
 public:
  using Command_SettingsAction::Command_SettingsAction;

 protected:
  bool NeedsForceMode() const override { return true; }
  void Act() const override;
};

class Command_ReadSearchSettings : public Command_SettingsAction {
 public:
  using Command_SettingsAction::Command_SettingsAction;

 protected:
  bool NeedsForceMode() const override { return true; }
  void Act() const override;
};

class Command_WriteSearchSettings : public Command_SettingsAction {
 public:
  using Command_SettingsAction::Command_SettingsAction;

 protected:
  void Act() const override;
};

}  // namespace BraskInterfaces
