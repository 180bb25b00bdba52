#include <gtest/gtest.h>

#include <vector>

#include "bitbases/huffman_code.h"

using NalimovTablebases::BitReader;
using NalimovTablebases::HuffmanCode;
using NalimovTablebases::ReadCodeLengths;

TEST(HuffmanCode, OnlyCompleteCodesAndTheTwoSpecialCasesBuild) {
  HuffmanCode code;
  std::vector<std::uint8_t> none(8, 0);
  ASSERT_TRUE(code.Build(none.data(), 8, 4));
  std::uint8_t bytes[] = {0xFF, 0xFF};
  BitReader bits(bytes, sizeof bytes);
  EXPECT_EQ(code.Decode(bits), 0);
  EXPECT_EQ(bits.Peek(16), 0xFFFFu);  // nothing consumed

  std::vector<std::uint8_t> single = {0, 0, 1, 0};
  ASSERT_TRUE(code.Build(single.data(), 4, 4));
  EXPECT_EQ(code.Decode(bits), 2);
  EXPECT_EQ(bits.Peek(16), 0xFFFFu);
  single[2] = 2;
  EXPECT_FALSE(code.Build(single.data(), 4, 4));

  std::vector<std::uint8_t> incomplete = {1, 2, 0};
  EXPECT_FALSE(code.Build(incomplete.data(), 3, 4));
  std::vector<std::uint8_t> oversubscribed = {1, 1, 1};
  EXPECT_FALSE(code.Build(oversubscribed.data(), 3, 4));
  std::vector<std::uint8_t> too_long = {1, 32};
  EXPECT_FALSE(code.Build(too_long.data(), 2, 4));
}

TEST(HuffmanCode, CanonicalCodesLongerThanTheFirstLevel) {
  // Lengths 1, 2, 3, 5, 5, 5, 5: codes 0, 10, 110, 11100, 11101, 11110, 11111.
  std::vector<std::uint8_t> lengths = {1, 2, 3, 5, 5, 5, 5};
  HuffmanCode code;
  ASSERT_TRUE(code.Build(lengths.data(), 7, 3));
  // 0 10 110 11100 11111 11101, then padding.
  std::uint8_t bytes[] = {0b01011011, 0b10011111, 0b11101000};
  BitReader bits(bytes, sizeof bytes);
  for (int expected : {0, 1, 2, 3, 6, 4}) EXPECT_EQ(code.Decode(bits), expected);
  EXPECT_FALSE(bits.Overrun());
}

TEST(HuffmanCode, CodeLengthsThatRunPastTheEndAreRefused) {
  // Direct form: bit 0, width 3, the length 0 and a run of 15 more zeros, for a list of 10.
  std::uint8_t bytes[] = {0b00001100, 0b01111000};
  BitReader bits(bytes, sizeof bytes);
  std::uint8_t lengths[10];
  EXPECT_FALSE(ReadCodeLengths(bits, lengths, 10));
  // Bit 1: all lengths 0.
  std::uint8_t all_zero[] = {0x80};
  BitReader zero_bits(all_zero, 1);
  ASSERT_TRUE(ReadCodeLengths(zero_bits, lengths, 10));
  EXPECT_EQ(lengths[9], 0);
}
