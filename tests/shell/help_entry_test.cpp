#include "shell/help_entry.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace BraskHelpScreen {
namespace {

std::vector<std::string> Commands(const std::vector<HelpEntry>& list) {
  std::vector<std::string> commands;
  for (const HelpEntry& entry : list) commands.push_back(entry.command);
  return commands;
}

TEST(SortedHelpList, IgnoresCaseAndPutsPunctuationBeforeLetters) {
  const std::vector<HelpEntry> entries = {{"b", ""},     {"?", ""},    {"Zeta", ""}, {"alpha", ""},
                                          {"\".\"", ""}, {"BETA", ""}, {"_x", ""}};
  // strcasecmp compares lower-cased bytes, so '_' (0x5F) comes before every letter, where
  // comparing upper-cased ones would put it after them.
  EXPECT_EQ(Commands(SortedHelpList(entries)),
            (std::vector<std::string>{"\".\"", "?", "_x", "alpha", "b", "BETA", "Zeta"}));
}

TEST(SortedHelpList, KeepsTheFirstOfEqualCommands) {
  const std::vector<HelpEntry> entries = {
      {"go", "first"}, {"new", "only"}, {"Go", "second"}, {"go", "third"}};
  const std::vector<HelpEntry> list = SortedHelpList(entries);
  ASSERT_EQ(list.size(), 2u);
  EXPECT_EQ(list[0].command, "go");
  EXPECT_EQ(list[0].description, "first");
  EXPECT_EQ(list[1].description, "only");
}

TEST(SortedHelpList, EmptyStaysEmpty) { EXPECT_TRUE(SortedHelpList({}).empty()); }

}  // namespace
}  // namespace BraskHelpScreen
