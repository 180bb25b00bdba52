// The commands that may be given on the command line, as options with dashes.
#pragma once

#include <algorithm>
#include <array>
#include <string_view>

// clang-format off
inline constexpr std::array<std::string_view, 24> STARTUP_COMMAND_NAMES = {
    "contempt",        "easy",            "eval",            "generate",
    "hash",            "help",            "id",              "level",
    "modify_settings", "personality",     "probe",           "protover",
    "quit",            "read_fen",        "read_pgn",        "read_settings",
    "sd",              "setboard",        "st",              "tb",
    "tc",              "verify",          "version",         "xboard",
};
// clang-format on

static_assert(std::ranges::is_sorted(STARTUP_COMMAND_NAMES), "kept sorted for binary search");

inline bool IsStartupCommand(std::string_view name) {
  return std::ranges::binary_search(STARTUP_COMMAND_NAMES, name);
}
