// Commands that set the clocks and the search limits.
#pragma once

#include <string>

#include "shell/command.h"
#include "shell/time_control_parsing.h"

namespace BraskInterfaces {

class Command_SetTimeControl : public Command {
 public:
  using Command::Command;
  void Execute(GameState& game) override;

 protected:
  // The two stage lists; throws TimeControlArgumentError with the command's error text.
  virtual TimeControlSetting Setting() const = 0;
};

class Command_Level : public Command_SetTimeControl {
 public:
  Command_Level(std::string line, std::string moves, std::string time, std::string increment)
      : Command_SetTimeControl(std::move(line)),
        moves(std::move(moves)),
        time(std::move(time)),
        increment(std::move(increment)) {}
  std::string moves, time, increment;

 protected:
  TimeControlSetting Setting() const override;
};

class Command_Tc : public Command_SetTimeControl {
 public:
  Command_Tc(std::string line, std::string text)
      : Command_SetTimeControl(std::move(line)), text(std::move(text)) {}
  std::string text;

 protected:
  TimeControlSetting Setting() const override;
};

class Command_st : public Command {
 public:
  Command_st(std::string line, int seconds) : Command(std::move(line)), seconds(seconds) {}
  void Execute(GameState& game) override;
  int seconds;
};

class Command_sd : public Command {
 public:
  Command_sd(std::string line, int depth) : Command(std::move(line)), depth(depth) {}
  void Execute(GameState& game) override;
  int depth;
};

// time and otim: centiseconds on the engine's or the opponent's clock.
class Command_Time : public Command {
 public:
  Command_Time(std::string line, int centiseconds)
      : Command(std::move(line)), centiseconds(centiseconds) {}
  void Execute(GameState& game) override;
  int centiseconds;

 protected:
  virtual bool OpponentsClock() const { return false; }
};

class Command_Otim : public Command_Time {
 public:
  using Command_Time::Command_Time;

 protected:
  bool OpponentsClock() const override { return true; }
};

}  // namespace BraskInterfaces
