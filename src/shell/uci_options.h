// The options a UCI front end can set: the engine's own ones and every search setting. Integer
// settings of several elements are one option per element, named "name[i]".
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

class GameState;

namespace BraskInterfaces {

class UciProtocol;

struct UciOption {
  enum class Kind { check, spin, combo, button, string };

  std::string name;
  Kind kind = Kind::button;
  std::string default_value;
  std::int64_t minimum = 0, maximum = 0;  // spin only
  std::vector<std::string> values;        // combo only
  // Takes a value already checked against kind and range; throws ErrorCommand when the engine
  // cannot take it (a hash size beyond the memory).
  std::function<void(GameState& game, UciProtocol& protocol, const std::string& value,
                     const std::string& line)>
      apply;
};

// All options with the present values as their defaults, in the order they are announced.
std::vector<UciOption> UciOptions();

// "option name Hash type spin default 32 min 1 max 65536"
std::string UciOptionLine(const UciOption& option);

// Finds the option by name, without regard to case, checks the value and applies it. Throws
// ErrorCommand for an unknown name or a value that doesn't fit; nothing changes then.
void SetUciOption(GameState& game, UciProtocol& protocol, const std::string& name,
                  const std::string& value, const std::string& line);

}  // namespace BraskInterfaces
