// Commands about the engine's own machinery: contempt, personality, evaluation, hash tables,
// endgame databases.
#pragma once

#include <cstdint>
#include <string>

#include "shell/command.h"

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

// Commands whose machinery the engine does not have yet: they check their arguments and the mode,
// then refuse. The refusal can be passed over at start-up, where it is no fault of the user's.
class Command_Unavailable : public Command {
 public:
  Command_Unavailable(std::string line, bool needs_force_mode, std::string what)
      : Command(std::move(line)), needs_force_mode(needs_force_mode), what(std::move(what)) {}
  void Execute(GameState& game) override;
  bool needs_force_mode;
  std::string what;

 protected:
  // Throws the ErrorCommand for arguments that would be wrong with the machinery in place.
  virtual void CheckArguments() const {}
};

class Command_Eval : public Command_Unavailable {
 public:
  explicit Command_Eval(std::string line)
      : Command_Unavailable(std::move(line), false, "evaluation") {}
};

class Command_DisplayHashtableStatus : public Command_Unavailable {
 public:
  explicit Command_DisplayHashtableStatus(std::string line)
      : Command_Unavailable(std::move(line), false, "hash tables") {}
};

// hash T S: the table (trans, pawn or eval) and its new size.
class Command_ResizeHashtable : public Command_Unavailable {
 public:
  Command_ResizeHashtable(std::string line, std::string table, std::string size)
      : Command_Unavailable(std::move(line), true, "hash tables"),
        table(std::move(table)),
        size(std::move(size)) {}
  std::string table, size;

 protected:
  void CheckArguments() const override;
};

class Command_DisplayTablebasesStatus : public Command_Unavailable {
 public:
  explicit Command_DisplayTablebasesStatus(std::string line)
      : Command_Unavailable(std::move(line), false, "endgame databases") {}
};

// tb T S paths: the kind of tablebase, its cache size, and where its files are.
class Command_InitTablebases : public Command_Unavailable {
 public:
  Command_InitTablebases(std::string line, std::string type, std::string size)
      : Command_Unavailable(std::move(line), true, "endgame databases"),
        type(std::move(type)),
        size(std::move(size)) {}
  std::string type, size;

 protected:
  void CheckArguments() const override;
};

// probe FEN: the position must be one the engine can set up.
class Command_Probe : public Command_Unavailable {
 public:
  Command_Probe(std::string line, std::string fen)
      : Command_Unavailable(std::move(line), false, "endgame databases"), fen(std::move(fen)) {}
  std::string fen;

 protected:
  void CheckArguments() const override;
};

class Command_Generate : public Command_Unavailable {
 public:
  explicit Command_Generate(std::string line)
      : Command_Unavailable(std::move(line), true, "endgame databases") {}
};

class Command_Verify : public Command_Unavailable {
 public:
  explicit Command_Verify(std::string line)
      : Command_Unavailable(std::move(line), true, "endgame databases") {}
};

class Command_OptimizePiece : public Command_Unavailable {
 public:
  explicit Command_OptimizePiece(std::string line)
      : Command_Unavailable(std::move(line), false, "evaluation") {}
};

}  // namespace BraskInterfaces
