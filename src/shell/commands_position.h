// Commands that set up, show, read and write positions and games.
#pragma once

#include <string>

#include "chess/user_board.h"
#include "shell/command.h"

namespace BraskInterfaces {

// setboard and edit: a new position replaces the game once it has been accepted.
class Command_SetupBoardCommands : public Command {
 public:
  enum Outcome { done = 0, illegal_position = 1, cancelled = 2 };
  using Command::Command;
  void Execute(GameState& game) override;
  virtual Outcome SetupBoard(GameState& game, UserBoard& new_board) = 0;

 private:
  Outcome outcome = done;
  UserBoard new_board;
};

class Command_Setboard : public Command_SetupBoardCommands {
 public:
  Command_Setboard(std::string line, std::string fen)
      : Command_SetupBoardCommands(std::move(line)), fen(std::move(fen)) {}
  Outcome SetupBoard(GameState& game, UserBoard& new_board) override;
  std::string fen;
};

class Command_Edit : public Command_SetupBoardCommands {
 public:
  using Command_SetupBoardCommands::Command_SetupBoardCommands;
  Outcome SetupBoard(GameState& game, UserBoard& new_board) override;
};

class Command_Display : public Command {
 public:
  using Command::Command;
  void Execute(GameState& game) override;
};

class Command_ReadFEN : public Command {
 public:
  Command_ReadFEN(std::string line, std::string file)
      : Command(std::move(line)), file(std::move(file)) {}
  void Execute(GameState& game) override;
  std::string file;
};

class Command_ReadPGN : public Command {
 public:
  Command_ReadPGN(std::string line, std::string file)
      : Command(std::move(line)), file(std::move(file)) {}
  void Execute(GameState& game) override;
  std::string file;
};

class Command_WriteFEN : public Command {
 public:
  Command_WriteFEN(std::string line, std::string file)
      : Command(std::move(line)), file(std::move(file)) {}
  void Execute(GameState& game) override;
  std::string file;
};

class Command_WritePGN : public Command {
 public:
  Command_WritePGN(std::string line, std::string file)
      : Command(std::move(line)), file(std::move(file)) {}
  void Execute(GameState& game) override;
  std::string file;
};

// The text of a line behind its first word, as typed: a FEN keeps its blanks.
std::string RestOfLine(const std::string& line);

}  // namespace BraskInterfaces
