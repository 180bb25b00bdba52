#include "chess/string_helpers.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

using namespace BraskUtils;

TEST(Trim, TakesTheSetOffBothEnds) {
  std::string text = " \t name=value \r\n";
  Trim(text, " \t\r\n");
  EXPECT_EQ(text, "name=value");
  std::string inner = "a b";
  Trim(inner, " ");
  EXPECT_EQ(inner, "a b");
  std::string all = "\r\n \n";
  Trim(all, " \r\n");
  EXPECT_EQ(all, "");
  std::string empty;
  Trim(empty, " ");
  EXPECT_EQ(empty, "");
  std::string nothing_to_do = "xyx";
  Trim(nothing_to_do, "");
  EXPECT_EQ(nothing_to_do, "xyx");
}

TEST(StringHelpers, ReplaceAllAndStartsWith) {
  EXPECT_EQ(ReplaceAll("a_b_c", '_', ' '), "a b c");
  EXPECT_EQ(ReplaceAll("", 'a', 'b'), "");
  EXPECT_TRUE(StartsWith("protover 2", "protover"));
  EXPECT_TRUE(StartsWith("x", ""));
  EXPECT_FALSE(StartsWith("pro", "protover"));
  EXPECT_FALSE(StartsWith("Protover", "protover"));
}

TEST(StringHelpers, LessIgnoreCaseSortsCaseInsensitively) {
  std::vector<std::string> names = {"beta", "Alpha", "gamma", "ALPHA2", "Beta"};
  std::stable_sort(names.begin(), names.end(), LessIgnoreCase);
  EXPECT_EQ(names, (std::vector<std::string>{"Alpha", "ALPHA2", "beta", "Beta", "gamma"}));
  EXPECT_FALSE(LessIgnoreCase("ABC", "abc"));
  EXPECT_FALSE(LessIgnoreCase("abc", "ABC"));
}
