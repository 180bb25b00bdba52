// Plain decimal conversions between numbers and text, strict enough that a command's argument is
// either exactly a number or refused.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// Thrown for any text that is not a number of the wanted kind. Callers turn it into their own
// message, so it carries none.
class string_conversion_error {};

// Optional "-", decimal digits, leading zeros allowed ("007", "-007", "0000"); no "+", no blanks,
// nothing behind the digits, and only values of the 32-bit range.
std::int32_t StringToInt(std::string_view text);

// Decimal digits only and no leading zero, except for "0" itself; the full 64-bit range.
std::uint64_t StringToU64(std::string_view text);

std::string IntToString(std::int32_t value);
std::string I64ToString(std::int64_t value);
std::string U64ToString(std::uint64_t value);
