#include "evaluation/personalities.h"

#include "shell/os_dependent.h"

const std::map<std::string, std::int32_t, std::less<>>& NamedPersonalities() {
  static const std::map<std::string, std::int32_t, std::less<>> table = {
      {"Haldrek", 2},   {"Quelby", -2},  {"Yarrick", 4},  {"Peldane", -4},
      {"Belgrom", 6},   {"Wyndrol", -6}, {"Ostrevik", 8}, {"Dremmit", -8},
      {"Torvane", 11},  {"Ekkerby", -10}, {"Ilmaris", 13}, {"Sorvath", -12},
      {"Mirowen", 15},  {"Jorlund", -15}, {"Brask", 0},    {"Default", 0},
      {"Nurz", 1000},   {"Vessimar", -1000},
  };
  return table;
}

bool ParsePersonality(std::string_view text, std::int32_t& value) {
  if (text == "Random") {
    value = NonDeterministicRand_16bit() % 41 - 20;
    return true;
  }
  if (auto found = NamedPersonalities().find(text); found != NamedPersonalities().end()) {
    value = found->second;
    return true;
  }
  try {
    value = StringToInt(std::string(text));
    return true;
  } catch (const string_conversion_error&) {
  }
  if (text.empty() || text[0] < 'a' || text[0] > 'z') return false;
  std::string capitalised(text);
  capitalised[0] = char(capitalised[0] - 'a' + 'A');
  return ParsePersonality(capitalised, value);
}

std::string PersonalityName(std::int32_t value) {
  for (const auto& [name, named_value] : NamedPersonalities())
    if (named_value == value) return name;
  return "Custom";
}
