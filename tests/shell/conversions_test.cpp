#include "shell/conversions.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

TEST(StringToInt, AcceptsSignsAndLeadingZeros) {
  EXPECT_EQ(StringToInt("0"), 0);
  EXPECT_EQ(StringToInt("42"), 42);
  EXPECT_EQ(StringToInt("-7"), -7);
  EXPECT_EQ(StringToInt("007"), 7);
  EXPECT_EQ(StringToInt("-007"), -7);
  EXPECT_EQ(StringToInt("0000"), 0);
  EXPECT_EQ(StringToInt("-0"), 0);
  EXPECT_EQ(StringToInt("2147483647"), 2147483647);
  EXPECT_EQ(StringToInt("-2147483647"), -2147483647);
  EXPECT_EQ(StringToInt("0002147483647"), 2147483647);
}

TEST(StringToInt, RefusesEverythingElse) {
  for (const char* text : {"", "+7", "7 ", " 7", "-", "--7", "-+7", "0-7", "00-", "7-", "0x10",
                           "1e3", "3.0", "abc", "2147483648", "-2147483648", "99999999999",
                           "0 ", "- 7", "\t1"}) {
    EXPECT_THROW(StringToInt(text), string_conversion_error) << '"' << text << '"';
  }
}

TEST(StringToU64, TakesPlainDigitsOverTheWholeRange) {
  EXPECT_EQ(StringToU64("0"), 0u);
  EXPECT_EQ(StringToU64("1"), 1u);
  EXPECT_EQ(StringToU64("18446744073709551615"), std::numeric_limits<std::uint64_t>::max());
  for (const char* text : {"", "007", "00", "-1", "+1", "1 ", "12a", "18446744073709551616",
                           "99999999999999999999", "35048813740048154620"}) {
    EXPECT_THROW(StringToU64(text), string_conversion_error) << '"' << text << '"';
  }
}

TEST(NumberToString, PlainDecimal) {
  EXPECT_EQ(IntToString(0), "0");
  EXPECT_EQ(IntToString(-42), "-42");
  EXPECT_EQ(IntToString(std::numeric_limits<std::int32_t>::min()), "-2147483648");
  EXPECT_EQ(I64ToString(std::numeric_limits<std::int64_t>::min()), "-9223372036854775808");
  EXPECT_EQ(I64ToString(1234567890123), "1234567890123");
  EXPECT_EQ(U64ToString(std::numeric_limits<std::uint64_t>::max()), "18446744073709551615");
}
