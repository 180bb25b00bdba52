#include "shell/conversions.h"

#include <charconv>
#include <limits>

namespace {

template <typename T>
std::string ToDecimal(T value) {
  char digits[24];
  return std::string(digits, std::to_chars(digits, digits + sizeof digits, value).ptr);
}

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

}  // namespace

std::string IntToString(std::int32_t value) { return ToDecimal(value); }
std::string I64ToString(std::int64_t value) { return ToDecimal(value); }
std::string U64ToString(std::uint64_t value) { return ToDecimal(value); }

std::int32_t StringToInt(std::string_view text) {
  if (text.empty()) throw string_conversion_error();
  const bool more_than_one = text.size() >= 2;
  const bool minus_behind_first = text.find('-', 1) != std::string_view::npos;
  if (more_than_one && text[0] == '-' && !minus_behind_first) return -StringToInt(text.substr(1));
  if (more_than_one && text[0] == '0' && !minus_behind_first) {
    const std::size_t first_nonzero = text.find_first_not_of('0');
    if (first_nonzero == std::string_view::npos) return 0;
    return StringToInt(text.substr(first_nonzero));
  }
  // Whatever is read must print back as the very same text: that one comparison refuses signs,
  // blanks, trailing characters, other bases and every value outside the range.
  std::int32_t value = 0;
  std::from_chars(text.data(), text.data() + text.size(), value);
  if (IntToString(value) != text) throw string_conversion_error();
  return value;
}

std::uint64_t StringToU64(std::string_view text) {
  if (text.empty() || (text[0] == '0' && text.size() > 1)) throw string_conversion_error();
  constexpr std::uint64_t MAX = std::numeric_limits<std::uint64_t>::max();
  std::uint64_t value = 0;
  for (char c : text) {
    if (!IsDigit(c)) throw string_conversion_error();
    const std::uint64_t digit = std::uint64_t(c - '0');
    if (value > (MAX - digit) / 10) throw string_conversion_error();
    value = 10 * value + digit;
  }
  return value;
}
