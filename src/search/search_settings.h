// The tuning decisions of the search, as plain globals that the search reads at full speed. They
// hold their defaults from the start of the program; only the settings commands change them, and
// only between searches. Each is written once, in search_setting_list.def.
#pragma once

#include <cstdint>

// A bonus for a check has one element per kind of check: none, direct, discovered, double.
inline constexpr int CHECK_KINDS = 4;
using PerCheckKind = std::int32_t[CHECK_KINDS];
// A capture bonus has one element per captured piece type: none, pawn, knight, bishop, rook, queen.
inline constexpr int CAPTURE_KINDS = 6;
using PerCapturedType = std::int32_t[CAPTURE_KINDS];
// The widest margin of material a setting can name, a thousand times the largest score.
inline constexpr std::int32_t MATERIAL_MARGIN_LIMIT = 32767000;

#define SEARCH_SETTING(type, name, minimum, maximum, description, ...) extern type name;
#include "search/search_setting_list.def"
#undef SEARCH_SETTING
