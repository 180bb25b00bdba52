// A line of the command language turned into an object. A command may be executed more than once:
// one that must first stop a running search throws through the search and is executed again, from
// the start, once the stack is back in the main loop. Commands with a legality check therefore run
// the check once, in the state they found when they arrived, and remember that it passed.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

class GameState;

namespace BraskInterfaces {

class Command {
 public:
  explicit Command(std::string line) : line(std::move(line)) {}
  virtual ~Command() = default;
  Command(const Command&) = delete;
  Command& operator=(const Command&) = delete;

  virtual void Execute(GameState& game) = 0;

  std::string line;
  bool finished = false;

 protected:
  // Throws the ErrorCommand "Error (message): line".
  [[noreturn]] void Fail(std::string_view message) const;
  // Throws unless the engine is in force mode.
  void RequireForceMode(const GameState& game) const;
  // A memory size such as "64M"; throws "could not parse new size".
  std::uint64_t SizeArgument(const std::string& text) const;

  bool checked = false;
};

class Command_DoNothing : public Command {
 public:
  using Command::Command;
  void Execute(GameState&) override { finished = true; }
};

}  // namespace BraskInterfaces
