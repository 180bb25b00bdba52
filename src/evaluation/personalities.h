// Named personalities: one integer that shifts the engine between positional and reckless play.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>

// The named personalities, by name.
const std::map<std::string, std::int32_t, std::less<>>& NamedPersonalities();

// Parses the argument of "personality": "Random", a name, or an integer; a word in lower case is
// tried once more with a capital first letter. False if nothing fits.
bool ParsePersonality(std::string_view text, std::int32_t& value);

// The name of a personality value: the first name in alphabetical order that has it, or "Custom".
std::string PersonalityName(std::int32_t value);
