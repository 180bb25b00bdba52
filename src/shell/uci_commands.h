// The commands of the UCI protocol.
#pragma once

#include <memory>
#include <string>

#include "chess/user_board.h"
#include "shell/commands_protocol.h"
#include "shell/uci_go.h"

namespace BraskInterfaces {

// Installs the UCI protocol, which then introduces itself; a search of the old protocol is dropped.
class Command_Uci : public Command_InstallNewProtocol {
 public:
  using Command_InstallNewProtocol::Command_InstallNewProtocol;
  void Execute(GameState& game) override;
  std::unique_ptr<BasicProtocol> CreateProtocol() const override;
};

class Command_IsReady : public Command {
 public:
  using Command::Command;
  void Execute(GameState& game) override;
};

class Command_UciNewGame : public Command {
 public:
  using Command::Command;
  void Execute(GameState& game) override;
};

class Command_Position : public Command {
 public:
  Command_Position(std::string line, UserBoard board)
      : Command(std::move(line)), board(std::move(board)) {}
  void Execute(GameState& game) override;
  UserBoard board;
};

class Command_UciGo : public Command {
 public:
  Command_UciGo(std::string line, UciGoParameters go)
      : Command(std::move(line)), go(std::move(go)) {}
  void Execute(GameState& game) override;
  UciGoParameters go;

 private:
  UserBoard board;
  std::vector<Move> search_moves;
  SearchRequest request;
};

class Command_Stop : public Command {
 public:
  using Command::Command;
  void Execute(GameState& game) override;
};

class Command_PonderHit : public Command {
 public:
  using Command::Command;
  void Execute(GameState& game) override;
};

class Command_SetOption : public Command {
 public:
  Command_SetOption(std::string line, std::string name, std::string value)
      : Command(std::move(line)), name(std::move(name)), value(std::move(value)) {}
  void Execute(GameState& game) override;
  std::string name, value;
};

}  // namespace BraskInterfaces
