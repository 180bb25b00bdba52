#include "chess/memory_size.h"

#include <limits>
#include <utility>

#include "shell/conversions.h"

namespace BraskUtils {
namespace {

constexpr std::uint64_t KILOBYTE = std::uint64_t{1} << 10;
constexpr std::uint64_t MEGABYTE = std::uint64_t{1} << 20;
constexpr std::uint64_t GIGABYTE = std::uint64_t{1} << 30;
constexpr std::uint64_t TERABYTE = std::uint64_t{1} << 40;

// The unit that a last letter stands for, or 0 if it names none.
constexpr std::uint64_t UnitOfLetter(char letter) {
  switch (letter) {
    case 'K': case 'k': return KILOBYTE;
    case 'M': case 'm': return MEGABYTE;
    case 'G': case 'g': return GIGABYTE;
    case 'T': case 't': return TERABYTE;
    default: return 0;
  }
}

}  // namespace

std::uint64_t ParseMemorySize(std::string_view text) {
  if (text.empty()) throw string_conversion_error();
  std::uint64_t unit = UnitOfLetter(text.back());
  if (unit != 0) {
    text.remove_suffix(1);
  } else {
    unit = 1;
  }
  const std::uint64_t value = StringToU64(text);
  if (unit != 1 && (value == 0 || value > std::numeric_limits<std::uint64_t>::max() / unit)) {
    throw string_conversion_error();
  }
  return value * unit;
}

std::string FormatMemorySize(std::uint64_t bytes) {
  if (bytes < KILOBYTE) return U64ToString(bytes) + " byte";
  const auto [unit, name] = bytes < MEGABYTE   ? std::pair{KILOBYTE, " kilobyte"}
                            : bytes < GIGABYTE ? std::pair{MEGABYTE, " megabyte"}
                                               : std::pair{GIGABYTE, " gigabyte"};
  // Hundredths of the unit, split so that 100 * bytes cannot overflow for the largest sizes.
  const std::uint64_t hundredths = bytes / unit * 100 + bytes % unit * 100 / unit;
  const std::uint64_t fraction = hundredths % 100;
  return U64ToString(hundredths / 100) + (fraction < 10 ? ".0" : ".") + U64ToString(fraction) +
         name;
}

}  // namespace BraskUtils
