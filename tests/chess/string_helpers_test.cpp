#include "chess/string_helpers.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <tuple>
#include <vector>

using namespace BraskUtils;

TEST(StringHelpers, TrimReplaceAllAndStartsWith) {
  for (const auto& [text, set, trimmed] :
       {std::tuple{" \t name=value \r\n", " \t\r\n", "name=value"}, {"a b", " ", "a b"},
        {"\r\n \n", " \r\n", ""}, {"", " ", ""}, {"xyx", "", "xyx"}}) {
    std::string copy = text;
    Trim(copy, set);
    EXPECT_EQ(copy, trimmed) << '"' << text << '"';
  }
  EXPECT_EQ(ReplaceAll("a_b_c", '_', ' '), "a b c");
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
