// Commands about the engine's own machinery: contempt, personality, evaluation, hash tables,
// endgame databases.
#pragma once

#include <cstdint>
#include <string>

#include "chess/user_board.h"
#include "shell/command.h"
#include "shell/commands_bitbase_jobs.h"

namespace BraskInterfaces {

class Command_Contempt : public Command {
 public:
  Command_Contempt(std::string line, int value) : Command(std::move(line)), value(value) {}
  void Execute(GameState& game) override;
  int value;
};

class Command_SetPersonality : public Command {
 public:
  Command_SetPersonality(std::string line, std::int32_t value)
      : Command(std::move(line)), value(value) {}
  void Execute(GameState& game) override;
  std::int32_t value;
};

class Command_DisplayPersonality : public Command {
 public:
  using Command::Command;
  void Execute(GameState& game) override;
};

class Command_Eval : public Command {
 public:
  using Command::Command;
  void Execute(GameState& game) override;
};

class Command_DisplayHashtableStatus : public Command {
 public:
  using Command::Command;
  void Execute(GameState& game) override;
};

// hash TYPE SIZE: one of the tables "trans", "pawn", "eval" gets a new size in bytes.
class Command_ResizeHashtable : public Command {
 public:
  Command_ResizeHashtable(std::string line, std::string type, std::string size)
      : Command(std::move(line)), type(std::move(type)), size(std::move(size)) {}
  void Execute(GameState& game) override;
  std::string type, size;
};

class Command_DisplayTablebasesStatus : public Command {
 public:
  using Command::Command;
  void Execute(GameState& game) override;
};

// tb nalimov SIZE PATHS: registers the tablebase files and sets the block cache.
class Command_InitTablebases : public Command {
 public:
  // One kind of tablebase is known: the type word "nalimov".
  class Initializer {
   public:
    virtual ~Initializer() = default;
    virtual void Initialize(const std::string& path, std::int64_t size) = 0;
  };

  Command_InitTablebases(std::string line, std::string type, std::string size, std::string paths)
      : Command(std::move(line)), type(std::move(type)), size(std::move(size)),
        paths(std::move(paths)) {}
  void Execute(GameState& game) override;
  std::string type, size, paths;
};

class NalimovInitializer : public Command_InitTablebases::Initializer {
 public:
  void Initialize(const std::string& path, std::int64_t size) override;
};

// probe FEN: what the bitbases and the tablebases say of a position.
class Command_Probe : public Command {
 public:
  Command_Probe(std::string line, std::string fen)
      : Command(std::move(line)), fen(std::move(fen)) {}
  void Execute(GameState& game) override;
  std::string fen;

 private:
  UserBoard board;
};

// A developer's aid: reads a square from standard input and looks for the square where the
// piece standing there would be worth most to its owner, by the static evaluation.
class Command_OptimizePiece : public Command {
 public:
  using Command::Command;
  void Execute(GameState& game) override;
};

}  // namespace BraskInterfaces
