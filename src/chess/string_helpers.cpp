#include "chess/string_helpers.h"

#include <strings.h>

#include <algorithm>

namespace BraskUtils {

void Trim(std::string& text, std::string_view characters) {
  const std::size_t first = text.find_first_not_of(characters);
  if (first == std::string::npos) {
    text.clear();
    return;
  }
  text.erase(text.find_last_not_of(characters) + 1);
  text.erase(0, first);
}

std::string ReplaceAll(std::string_view text, char from, char to) {
  std::string copy(text);
  std::replace(copy.begin(), copy.end(), from, to);
  return copy;
}

bool StartsWith(std::string_view text, std::string_view prefix) {
  return text.substr(0, prefix.size()) == prefix;
}

bool LessIgnoreCase(const std::string& a, const std::string& b) {
  return strcasecmp(a.c_str(), b.c_str()) < 0;
}

}  // namespace BraskUtils
