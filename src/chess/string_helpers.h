// Small operations on text that the command and file parsers share.
#pragma once

#include <string>
#include <string_view>

namespace BraskUtils {

// Removes every character of `characters` from both ends of `text`.
void Trim(std::string& text, std::string_view characters);

// A copy of `text` with every character `from` replaced by `to`.
std::string ReplaceAll(std::string_view text, char from, char to);

bool StartsWith(std::string_view text, std::string_view prefix);

// The order of case-insensitively sorted lists, as strcasecmp gives it.
bool LessIgnoreCase(const std::string& a, const std::string& b);

}  // namespace BraskUtils
