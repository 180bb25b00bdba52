#include "shell/conversions.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <utility>

#include "chess/memory_size.h"

TEST(StringToInt, AcceptsSignsAndLeadingZerosAndRefusesEverythingElseAndBack) {
  for (const auto& [text, value] :
       {std::pair{"0", 0}, {"42", 42}, {"-7", -7}, {"007", 7}, {"-007", -7}, {"0000", 0},
        {"-0", 0}, {"2147483647", 2147483647}, {"-2147483647", -2147483647},
        {"0002147483647", 2147483647}})
    EXPECT_EQ(StringToInt(text), value) << text;
  for (const char* text : {"", "+7", "7 ", " 7", "-", "--7", "-+7", "0-7", "00-", "7-", "0x10",
                           "1e3", "3.0", "abc", "2147483648", "-2147483648", "99999999999",
                           "0 ", "- 7", "\t1"})
    EXPECT_THROW(StringToInt(text), string_conversion_error) << '"' << text << '"';
  EXPECT_EQ(IntToString(std::numeric_limits<std::int32_t>::min()), "-2147483648");
  EXPECT_EQ(I64ToString(std::numeric_limits<std::int64_t>::min()), "-9223372036854775808");
  EXPECT_EQ(U64ToString(std::numeric_limits<std::uint64_t>::max()), "18446744073709551615");
}

TEST(StringToU64, TakesPlainDigitsOverTheWholeRange) {
  EXPECT_EQ(StringToU64("0"), 0u);
  EXPECT_EQ(StringToU64("18446744073709551615"), std::numeric_limits<std::uint64_t>::max());
  for (const char* text : {"", "007", "00", "-1", "+1", "1 ", "12a", "18446744073709551616",
                           "99999999999999999999", "35048813740048154620"})
    EXPECT_THROW(StringToU64(text), string_conversion_error) << '"' << text << '"';
}

TEST(MemorySize, BinaryUnitsInEitherCaseAndRefusals) {
  using BraskUtils::ParseMemorySize;
  constexpr std::uint64_t MAX = std::numeric_limits<std::uint64_t>::max();
  for (const auto& [text, size] :
       {std::pair<const char*, std::uint64_t>{"0", 0}, {"1000", 1000}, {"1M", 1 << 20},
        {"32m", 32 << 20}, {"512k", 512 << 10}, {"4K", 4096}, {"2G", std::uint64_t{2} << 30},
        {"1t", std::uint64_t{1} << 40}, {"16777215T", std::uint64_t{16777215} << 40},
        {"18446744073709551615", MAX}})
    EXPECT_EQ(ParseMemorySize(text), size) << text;
  for (const char* text : {"", "M", "0M", "0k", "01M", "-1M", "1.5M", "1 M", "1MB", "1X", "M1",
                           "18446744073709551616", "16777216T", "16777218T", "17179869184G",
                           "17592186044416M"})
    EXPECT_THROW(ParseMemorySize(text), string_conversion_error) << '"' << text << '"';
}

TEST(MemorySize, TwoTruncatedDecimalsInTheLargestFittingUnit) {
  for (const auto& [size, text] : {std::pair<std::uint64_t, const char*>{0, "0 byte"},
                                   {1023, "1023 byte"}, {1024, "1.00 kilobyte"},
                                   {1075, "1.04 kilobyte"}, {(1 << 20) - 1, "1023.99 kilobyte"},
                                   {1 << 20, "1.00 megabyte"}, {33554432, "32.00 megabyte"},
                                   {std::uint64_t{3} << 29, "1.50 gigabyte"},
                                   {std::uint64_t{1} << 40, "1024.00 gigabyte"},
                                   {std::numeric_limits<std::uint64_t>::max(),
                                    "17179869183.99 gigabyte"}})
    EXPECT_EQ(BraskUtils::FormatMemorySize(size), text) << size;
}
