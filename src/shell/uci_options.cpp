#include "shell/uci_options.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <stdexcept>

#include "bitbases/tablebases.h"
#include "chess/basic.h"
#include "evaluation/personalities.h"
#include "search/hash.h"
#include "search/setting_bindings.h"
#include "shell/error_command.h"
#include "shell/game_state.h"
#include "shell/tee_stream.h"
#include "shell/uci_protocol.h"

namespace BraskInterfaces {

namespace {

using Kind = UciOption::Kind;
constexpr std::int64_t MIB = std::int64_t{1} << 20;
// The largest transposition table and tablebase cache an option offers, in MiB.
constexpr std::int64_t MAX_HASH_MIB = 65536;
constexpr std::int64_t MAX_NALIMOV_CACHE_MIB = 1024;
constexpr std::int32_t MAX_PERSONALITY = 1000;
// Contempt is a score, and no score is beyond a mate.
constexpr std::int64_t MAX_CONTEMPT = MATE;
// The UCI word for an empty string option.
constexpr const char* EMPTY_STRING_VALUE = "<empty>";

[[noreturn]] void Refuse(std::string_view message, const std::string& line) {
  throw ErrorCommand(ErrorCommand::error, message, line);
}

std::string Lower(std::string text) {
  for (char& c : text) c = char(std::tolower(static_cast<unsigned char>(c)));
  return text;
}

std::int64_t SpinValue(const std::string& text) {
  std::int64_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size() || text.empty())
    throw std::invalid_argument(text);
  return value;
}

UciOption Spin(std::string name, std::int64_t value, std::int64_t minimum, std::int64_t maximum,
               decltype(UciOption::apply) apply) {
  return {std::move(name), Kind::spin, std::to_string(value), minimum,
          maximum,         {},         std::move(apply)};
}

UciOption Check(std::string name, bool value, decltype(UciOption::apply) apply) {
  return {std::move(name), Kind::check, value ? "true" : "false", 0, 0, {}, std::move(apply)};
}

void ApplyHash(GameState&, UciProtocol&, const std::string& value, const std::string& line) {
  if (!TRANSPOSITION_TABLE.Resize(std::uint64_t(SpinValue(value)) * MIB))
    Refuse("not enough memory for this size", line);
}

void ClearHash(GameState&, UciProtocol&, const std::string&, const std::string&) {
  TRANSPOSITION_TABLE.Clear();
  PAWN_HASH_TABLE.Clear();
  EVALUATION_HASH_TABLE.Clear();
}

void ApplyContempt(GameState& game, UciProtocol&, const std::string& value, const std::string&) {
  const std::int32_t contempt = std::int32_t(SpinValue(value));
  if (contempt == game.search.contempt) return;
  game.search.SetContempt(contempt);
  game.draw_handler.contempt = contempt;
  game.draw_handler.Reset();
}

void ApplyPersonality(GameState& game, UciProtocol& protocol, const std::string& value,
                      const std::string& line) {
  std::int32_t personality = 0;
  if (!ParsePersonality(value, personality)) Refuse("could not parse personality", line);
  const auto clamped = std::int16_t(std::clamp(personality, -MAX_PERSONALITY, MAX_PERSONALITY));
  if (clamped == protocol.personality) return;
  game.search.SetPersonality(clamped);
  protocol.personality = clamped;
}

// Tablebases are registered again whenever the path or the cache changes; no path, no tables.
void LoadNalimovTables(const UciProtocol& protocol, const std::string& line) {
  if (protocol.nalimov_path.empty()) return;
  try {
    BraskTablebases::InitTablebases(protocol.nalimov_path,
                                    std::uint64_t(protocol.nalimov_cache_mib) * MIB);
  } catch (const BraskTablebases::TB_Exception& error) {
    Refuse(error.what(), line);
  }
}

void ApplyNalimovPath(GameState&, UciProtocol& protocol, const std::string& value,
                      const std::string& line) {
  protocol.nalimov_path = value == EMPTY_STRING_VALUE ? "" : value;
  LoadNalimovTables(protocol, line);
}

void ApplyNalimovCache(GameState&, UciProtocol& protocol, const std::string& value,
                       const std::string& line) {
  protocol.nalimov_cache_mib = SpinValue(value);
  LoadNalimovTables(protocol, line);
}

// The named personalities, found by asking for the name of every value a personality can have.
std::vector<std::string> PersonalityNames() {
  std::vector<std::string> names{"Random"};
  for (std::int32_t value = -MAX_PERSONALITY; value <= MAX_PERSONALITY; ++value) {
    const std::string name = PersonalityName(value);
    std::int32_t named_value = 0;
    if (ParsePersonality(name, named_value) && named_value == value) names.push_back(name);
  }
  return names;
}

void AddSearchSettings(std::vector<UciOption>& options) {
  for (const OptimizeInterface::SettingBinding& setting :
       OptimizeInterface::SearchSettingBindings()) {
    const std::string name(setting.name);
    if (setting.booleans != nullptr) {
      bool* global = setting.booleans;
      options.push_back(Check(name, *global,
                              [global](GameState&, UciProtocol&, const std::string& value,
                                       const std::string&) { *global = value == "true"; }));
      continue;
    }
    for (std::int32_t i = 0; i < setting.size; ++i) {
      std::int32_t* global = setting.integers + i;
      const std::string element = setting.size == 1 ? name : name + "[" + std::to_string(i) + "]";
      options.push_back(
          Spin(element, *global, setting.minimum, setting.maximum,
               [global](GameState&, UciProtocol&, const std::string& value, const std::string&) {
                 *global = std::int32_t(SpinValue(value));
               }));
    }
  }
}

}  // namespace

std::vector<UciOption> UciOptions() {
  const auto nothing = [](GameState&, UciProtocol&, const std::string&, const std::string&) {};
  std::vector<UciOption> options = {
      Spin("Hash", std::int64_t(DEFAULT_TRANSPOSITION_BYTES) / MIB, 1, MAX_HASH_MIB, ApplyHash),
      // The front end decides when the engine ponders; the option only tells it that it may.
      Check("Ponder", false, nothing),
      {"Clear Hash", Kind::button, "", 0, 0, {}, ClearHash},
      Spin("Contempt", 0, -MAX_CONTEMPT, MAX_CONTEMPT, ApplyContempt),
      {"Personality", Kind::combo, PersonalityName(0), 0, 0, PersonalityNames(), ApplyPersonality},
      {"NalimovPath", Kind::string, EMPTY_STRING_VALUE, 0, 0, {}, ApplyNalimovPath},
      Spin("NalimovCache", UciProtocol::DEFAULT_NALIMOV_CACHE_MIB, 0, MAX_NALIMOV_CACHE_MIB,
           ApplyNalimovCache),
      // Analysis and play search alike.
      Check("UCI_AnalyseMode", false, nothing),
  };
  AddSearchSettings(options);
  return options;
}

std::string UciOptionLine(const UciOption& option) {
  std::string line = "option name " + option.name + " type ";
  switch (option.kind) {
    case Kind::check:
      return line + "check default " + option.default_value;
    case Kind::spin:
      return line + "spin default " + option.default_value + " min " +
             std::to_string(option.minimum) + " max " + std::to_string(option.maximum);
    case Kind::combo:
      line += "combo default " + option.default_value;
      for (const std::string& value : option.values) line += " var " + value;
      return line;
    case Kind::button:
      return line + "button";
    case Kind::string:
      return line + "string default " + option.default_value;
  }
  return line;
}

namespace {

// The value as the option's apply takes it, or a refusal.
std::string CheckedValue(const UciOption& option, const std::string& value,
                         const std::string& line) {
  switch (option.kind) {
    case Kind::check:
      if (value != "true" && value != "false") Refuse("could not parse boolean: " + value, line);
      return value;
    case Kind::spin: {
      std::int64_t number = 0;
      try {
        number = SpinValue(value);
      } catch (const std::invalid_argument&) {
        Refuse("integer argument expected", line);
      }
      if (number < option.minimum || number > option.maximum) Refuse("value out of bounds", line);
      return value;
    }
    case Kind::combo: {
      const auto found =
          std::find_if(option.values.begin(), option.values.end(),
                       [&](const std::string& v) { return Lower(v) == Lower(value); });
      if (found == option.values.end()) Refuse("invalid argument(s)", line);
      return *found;
    }
    case Kind::button:
      return "";
    case Kind::string:
      return value;
  }
  return value;
}

}  // namespace

void SetUciOption(GameState& game, UciProtocol& protocol, const std::string& name,
                  const std::string& value, const std::string& line) {
  const std::vector<UciOption> options = UciOptions();
  const auto found = std::find_if(options.begin(), options.end(), [&](const UciOption& option) {
    return Lower(option.name) == Lower(name);
  });
  if (found == options.end()) Refuse("unknown option", line);
  found->apply(game, protocol, CheckedValue(*found, value, line), line);
  Output.ReportLogOnly("Option " + found->name + " set");
}

}  // namespace BraskInterfaces
