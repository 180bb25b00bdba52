// Memory sizes as users write them ("64M", "512k", "1G") and as the engine reports them.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace BraskUtils {

// Digits as StringToU64 takes them, with an optional last letter K, M, G or T (either case) for
// 2^10, 2^20, 2^30 or 2^40 bytes. Throws string_conversion_error for anything else, for a size
// beyond 64 bits, and for 0 with a unit.
std::uint64_t ParseMemorySize(std::string_view text);

// "1023 byte", "1.50 kilobyte", "32.00 megabyte"; two truncated decimals, no plural, and
// gigabyte the largest unit.
std::string FormatMemorySize(std::uint64_t bytes);

}  // namespace BraskUtils
