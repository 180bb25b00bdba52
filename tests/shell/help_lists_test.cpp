#include "shell/help_lists.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "shell/help_entry.h"
#include "shell/startup_command_names.h"

namespace BraskHelpScreen {
namespace {

std::vector<std::string> Commands(const std::vector<HelpEntry>& list) {
  std::vector<std::string> commands;
  for (const HelpEntry& entry : list) commands.push_back(entry.command);
  return commands;
}

TEST(SortedHelpList, IgnoresCaseKeepsTheFirstOfEqualCommandsAndPutsPunctuationFirst) {
  const std::vector<HelpEntry> entries = {{"b", ""},    {"?", ""},     {"Zeta", ""},
                                          {"alpha", ""}, {"\".\"", ""}, {"BETA", ""},
                                          {"_x", ""},    {"go", "1"},   {"Go", "2"}};
  // strcasecmp compares lower-cased bytes, so '_' (0x5F) comes before every letter.
  const std::vector<HelpEntry> list = SortedHelpList(entries);
  EXPECT_EQ(Commands(list), (std::vector<std::string>{"\".\"", "?", "_x", "alpha", "b", "BETA",
                                                      "go", "Zeta"}));
  EXPECT_EQ(list[6].description, "1");
  EXPECT_TRUE(SortedHelpList({}).empty());
}

// The full and start-up screens' order and contents are checked where the user sees them.
TEST(HelpLists, StartupCommandsAndTheEditList) {
  for (const std::string& name : Commands(StartupHelpList())) EXPECT_TRUE(IsStartupCommand(name));
  for (const char* name : {"go", "new", "Hash", "-hash", "", "hashx"})
    EXPECT_FALSE(IsStartupCommand(name)) << name;
  EXPECT_EQ(Commands(EditHelpList()), (std::vector<std::string>{"\".\"", "#", "c", "cancel",
                                                                "display", "help", "quit",
                                                                "restore", "s", "verify"}));
}

}  // namespace
}  // namespace BraskHelpScreen
