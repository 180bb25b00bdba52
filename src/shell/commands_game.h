// Commands that play the game: moves, taking back, sides, modes, searches, draws and results.
#pragma once

#include <cstdint>
#include <string>

#include "chess/basic.h"
#include "chess/user_board.h"
#include "shell/command.h"

namespace BraskInterfaces {

class Command_New : public Command {
 public:
  using Command::Command;
  void Execute(GameState& game) override;
};

class Command_Force : public Command {
 public:
  using Command::Command;
  void Execute(GameState& game) override;
};

class Command_Go : public Command {
 public:
  using Command::Command;
  void Execute(GameState& game) override;
};

class Command_Playother : public Command {
 public:
  using Command::Command;
  void Execute(GameState& game) override;
};

class Command_SetSide : public Command {
 public:
  Command_SetSide(std::string line, int side) : Command(std::move(line)), side(side) {}
  void Execute(GameState& game) override;
  int side;

 private:
  bool must_change = false;
  UserBoard changed;
};

class Command_White : public Command_SetSide {
 public:
  explicit Command_White(std::string line) : Command_SetSide(std::move(line), WHITE) {}
};

class Command_Black : public Command_SetSide {
 public:
  explicit Command_Black(std::string line) : Command_SetSide(std::move(line), BLACK) {}
};

class Command_Analyze : public Command {
 public:
  using Command::Command;
  void Execute(GameState& game) override;
};

class Command_Exit : public Command {
 public:
  using Command::Command;
  void Execute(GameState& game) override;
};

class Command_Move : public Command {
 public:
  Command_Move(std::string line, std::string text)
      : Command(std::move(line)), text(std::move(text)) {}
  void Execute(GameState& game) override;
  virtual bool IsNewStyle() const = 0;
  std::string text;

 private:
  void CheckAndMake(GameState& game);
  void GoOn(GameState& game);
  Move move = INVALID;
  Move expected = INVALID;  // the ponder move when the move arrived
};

class Command_UsermoveOldStyle : public Command_Move {
 public:
  using Command_Move::Command_Move;
  bool IsNewStyle() const override { return false; }
};

class Command_UsermoveNewStyle : public Command_Move {
 public:
  using Command_Move::Command_Move;
  bool IsNewStyle() const override { return true; }
};

// undo and next: a count of moves, ALL_MOVES for "all".
class Command_Undo : public Command {
 public:
  static constexpr int ALL_MOVES = 1000000;
  Command_Undo(std::string line, int count) : Command(std::move(line)), count(count) {}
  void Execute(GameState& game) override;
  int count;
};

class Command_Next : public Command {
 public:
  static constexpr int ALL_MOVES = 1000000;
  Command_Next(std::string line, int count) : Command(std::move(line)), count(count) {}
  void Execute(GameState& game) override;
  int count;
};

class Command_Remove : public Command {
 public:
  using Command::Command;
  void Execute(GameState& game) override;
};

class Command_Result : public Command {
 public:
  Command_Result(std::string line, std::uint32_t result)
      : Command(std::move(line)), result(result) {}
  void Execute(GameState& game) override;
  std::uint32_t result;
};

class Command_Draw : public Command {
 public:
  using Command::Command;
  void Execute(GameState& game) override;
};

class Command_Hint : public Command {
 public:
  using Command::Command;
  void Execute(GameState& game) override;
};

class Command_MoveNow : public Command {
 public:
  using Command::Command;
  void Execute(GameState& game) override;
};

class Command_SendSearchStatus : public Command {
 public:
  using Command::Command;
  void Execute(GameState& game) override;
};

// The reason of a result line: 8 for "*"; else found in the comment between braces.
std::uint32_t ResultReason(std::uint32_t result, const std::string& line);

}  // namespace BraskInterfaces
