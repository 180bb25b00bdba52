// The failure of a command: its text names the kind, the reason and the line as it was read, as in
// "Error (too many parameters): go now" or "Illegal move: e2e5".
#pragma once

#include <string>
#include <string_view>

#include "shell/brask_exception.h"

class ErrorCommand : public BraskException {
 public:
  enum Kind { illegal_move = 0, error = 1 };

  ErrorCommand(Kind kind, std::string_view message, std::string_view line)
      : BraskException(Text(kind, message, line)) {}

 private:
  static std::string Text(Kind kind, std::string_view message, std::string_view line) {
    std::string text = kind == illegal_move ? "Illegal move" : "Error";
    if (!message.empty()) text.append(" (").append(message).append(")");
    return text.append(": ").append(line);
  }
};

// A failure that start-up may pass over and go on with the next option.
class IgnorableErrorCommand : public ErrorCommand {
 public:
  using ErrorCommand::ErrorCommand;
};
