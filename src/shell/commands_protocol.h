// Commands about the conversation itself: protocols, output, names and the end of the run.
#pragma once

#include <memory>
#include <string>

#include "shell/basic_protocol.h"
#include "shell/command.h"

namespace BraskInterfaces {

class Command_InstallNewProtocol : public Command {
 public:
  using Command::Command;
  void Execute(GameState& game) override;
  virtual std::unique_ptr<BasicProtocol> CreateProtocol() const = 0;
};

class Command_Console : public Command_InstallNewProtocol {
 public:
  using Command_InstallNewProtocol::Command_InstallNewProtocol;
  std::unique_ptr<BasicProtocol> CreateProtocol() const override;
};

class Command_Xboard : public Command_InstallNewProtocol {
 public:
  using Command_InstallNewProtocol::Command_InstallNewProtocol;
  std::unique_ptr<BasicProtocol> CreateProtocol() const override;
};

class Command_Protover2 : public Command_InstallNewProtocol {
 public:
  using Command_InstallNewProtocol::Command_InstallNewProtocol;
  std::unique_ptr<BasicProtocol> CreateProtocol() const override;
};

class Command_Fritz : public Command_InstallNewProtocol {
 public:
  using Command_InstallNewProtocol::Command_InstallNewProtocol;
  std::unique_ptr<BasicProtocol> CreateProtocol() const override;
};

class Command_SetOutput : public Command {
 public:
  Command_SetOutput(std::string line, bool post) : Command(std::move(line)), post(post) {}
  void Execute(GameState& game) override;
  bool post;
};

class Command_Post : public Command_SetOutput {
 public:
  explicit Command_Post(std::string line) : Command_SetOutput(std::move(line), true) {}
};

class Command_Nopost : public Command_SetOutput {
 public:
  explicit Command_Nopost(std::string line) : Command_SetOutput(std::move(line), false) {}
};

class Command_SetPondering : public Command {
 public:
  Command_SetPondering(std::string line, bool enabled)
      : Command(std::move(line)), enabled(enabled) {}
  void Execute(GameState& game) override;
  bool enabled;
};

class Command_Hard : public Command_SetPondering {
 public:
  explicit Command_Hard(std::string line) : Command_SetPondering(std::move(line), true) {}
};

class Command_Easy : public Command_SetPondering {
 public:
  explicit Command_Easy(std::string line) : Command_SetPondering(std::move(line), false) {}
};

class Command_Ping : public Command {
 public:
  Command_Ping(std::string line, std::string number)
      : Command(std::move(line)), number(std::move(number)) {}
  void Execute(GameState& game) override;
  std::string number;
};

class Command_Id : public Command {
 public:
  Command_Id(std::string line, std::string id) : Command(std::move(line)), id(std::move(id)) {}
  void Execute(GameState& game) override;
  std::string id;
};

class Command_Name : public Command {
 public:
  Command_Name(std::string line, std::string name)
      : Command(std::move(line)), name(std::move(name)) {}
  void Execute(GameState& game) override;
  std::string name;
};

class Command_Rating : public Command {
 public:
  Command_Rating(std::string line, int engine, int opponent)
      : Command(std::move(line)), engine(engine), opponent(opponent) {}
  void Execute(GameState& game) override;
  int engine, opponent;
};

class Command_Computer : public Command {
 public:
  using Command::Command;
  void Execute(GameState& game) override;
};

class Command_Version : public Command {
 public:
  using Command::Command;
  void Execute(GameState& game) override;
};

class Command_Help : public Command {
 public:
  using Command::Command;
  void Execute(GameState& game) override;
};

class Command_Quit : public Command {
 public:
  using Command::Command;
  void Execute(GameState& game) override;
};

}  // namespace BraskInterfaces
