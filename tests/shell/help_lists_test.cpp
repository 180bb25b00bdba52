#include "shell/help_lists.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "chess/string_helpers.h"
#include "shell/help_entry.h"
#include "shell/startup_command_names.h"

namespace BraskHelpScreen {
namespace {

std::vector<std::string> Commands(const std::vector<HelpEntry>& list) {
  std::vector<std::string> commands;
  for (const HelpEntry& entry : list) commands.push_back(entry.command);
  return commands;
}

bool StrictlySorted(const std::vector<std::string>& commands) {
  return std::adjacent_find(commands.begin(), commands.end(),
                            [](const std::string& a, const std::string& b) {
                              return !BraskUtils::LessIgnoreCase(a, b);
                            }) == commands.end();
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

TEST(HelpLists, AreSortedAndComplete) {
  const std::vector<std::string> commands = Commands(CommandHelpList());
  EXPECT_EQ(commands.size(), 62u);
  EXPECT_TRUE(StrictlySorted(commands));
  EXPECT_EQ(commands.front(), "\".\"");
  EXPECT_EQ(commands.back(), "xboard");
  // The start-up screen is the full list cut to the start-up commands, all of them.
  const std::vector<std::string> startup = Commands(StartupHelpList());
  EXPECT_EQ(startup.size(), STARTUP_COMMAND_NAMES.size());
  EXPECT_TRUE(StrictlySorted(startup));
  for (const std::string& name : startup) {
    EXPECT_TRUE(IsStartupCommand(name)) << name;
    EXPECT_NE(std::find(commands.begin(), commands.end(), name), commands.end()) << name;
  }
  for (const char* name : {"go", "new", "Hash", "-hash", "", "hashx"})
    EXPECT_FALSE(IsStartupCommand(name)) << name;
  EXPECT_EQ(Commands(EditHelpList()), (std::vector<std::string>{"\".\"", "#", "c", "cancel",
                                                                "display", "help", "quit",
                                                                "restore", "s", "verify"}));
}

}  // namespace
}  // namespace BraskHelpScreen
