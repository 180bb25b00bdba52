#include "chess/memory_size.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

#include "shell/conversions.h"

using BraskUtils::FormatMemorySize;
using BraskUtils::ParseMemorySize;

TEST(ParseMemorySize, BytesAndBinaryUnitsInEitherCase) {
  EXPECT_EQ(ParseMemorySize("0"), 0u);
  EXPECT_EQ(ParseMemorySize("1"), 1u);
  EXPECT_EQ(ParseMemorySize("1000"), 1000u);
  EXPECT_EQ(ParseMemorySize("1M"), 1048576u);
  EXPECT_EQ(ParseMemorySize("32m"), 32u << 20);
  EXPECT_EQ(ParseMemorySize("512k"), 512u << 10);
  EXPECT_EQ(ParseMemorySize("4K"), 4096u);
  EXPECT_EQ(ParseMemorySize("2G"), std::uint64_t{2} << 30);
  EXPECT_EQ(ParseMemorySize("1t"), std::uint64_t{1} << 40);
  EXPECT_EQ(ParseMemorySize("16777215T"), std::uint64_t{16777215} << 40);
  EXPECT_EQ(ParseMemorySize("18446744073709551615"), std::numeric_limits<std::uint64_t>::max());
}

TEST(ParseMemorySize, RefusesMalformedZeroAndOverflowingSizes) {
  for (const char* text : {"", "M", "0M", "0k", "01M", "-1M", "1.5M", "1 M", "1MB", "1X", "M1",
                           "18446744073709551616", "16777216T", "16777218T", "17179869184G",
                           "17592186044416M"}) {
    EXPECT_THROW(ParseMemorySize(text), string_conversion_error) << '"' << text << '"';
  }
}

TEST(FormatMemorySize, TwoTruncatedDecimalsInTheLargestFittingUnit) {
  EXPECT_EQ(FormatMemorySize(0), "0 byte");
  EXPECT_EQ(FormatMemorySize(1023), "1023 byte");
  EXPECT_EQ(FormatMemorySize(1024), "1.00 kilobyte");
  EXPECT_EQ(FormatMemorySize(1075), "1.04 kilobyte");
  EXPECT_EQ(FormatMemorySize(1536), "1.50 kilobyte");
  EXPECT_EQ(FormatMemorySize((1u << 20) - 1), "1023.99 kilobyte");
  EXPECT_EQ(FormatMemorySize(1u << 20), "1.00 megabyte");
  EXPECT_EQ(FormatMemorySize(33554432), "32.00 megabyte");
  EXPECT_EQ(FormatMemorySize(std::uint64_t{3} << 29), "1.50 gigabyte");
  EXPECT_EQ(FormatMemorySize(std::uint64_t{1} << 40), "1024.00 gigabyte");
  EXPECT_EQ(FormatMemorySize(std::numeric_limits<std::uint64_t>::max()),
            "17179869183.99 gigabyte");
}
