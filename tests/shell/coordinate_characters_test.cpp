#include "chess/coordinate_characters.h"

#include <gtest/gtest.h>

TEST(CoordinateCharacters, RecogniseOnlyBoardCoordinates) {
  for (char c : {'a', 'h', 'A', 'H', 'e'}) EXPECT_TRUE(IsFileLetter(c)) << c;
  for (char c : {'`', 'i', '@', 'I', '1', ' ', '\0'}) EXPECT_FALSE(IsFileLetter(c)) << c;
  for (char c : {'1', '8'}) EXPECT_TRUE(IsRankDigit(c)) << c;
  for (char c : {'0', '9', 'a', ' '}) EXPECT_FALSE(IsRankDigit(c)) << c;
}

TEST(CoordinateCharacters, ConvertBothWays) {
  for (int i = 0; i < 8; ++i) {
    EXPECT_EQ(FileFromLetter(FileLetter(i)), i);
    EXPECT_EQ(FileFromLetter(char('A' + i)), i);
    EXPECT_EQ(RankFromDigit(RankDigit(i)), i);
  }
  EXPECT_EQ(FileLetter(0), 'a');
  EXPECT_EQ(RankDigit(7), '8');
  EXPECT_EQ(SquareFromLetters('a', '1'), A1);
  EXPECT_EQ(SquareFromLetters('e', '4'), E4);
  EXPECT_EQ(SquareFromLetters('H', '8'), H8);
  EXPECT_EQ(DigitValue('0'), 0);
  EXPECT_EQ(DigitValue('9'), 9);
}
