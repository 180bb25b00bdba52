#include "shell/help_lists.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "chess/string_helpers.h"
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

std::size_t LongestCommand(const std::vector<HelpEntry>& list) {
  std::size_t longest = 0;
  for (const HelpEntry& entry : list) longest = std::max(longest, entry.command.size());
  return longest;
}

TEST(CommandHelpList, HasEverySixtyTwoEntrySortedWithoutDuplicates) {
  const std::vector<std::string> commands = Commands(CommandHelpList());
  EXPECT_EQ(commands.size(), 62u);
  EXPECT_TRUE(StrictlySorted(commands));
  ASSERT_GE(commands.size(), 2u);
  EXPECT_EQ(commands[0], "\".\"");
  EXPECT_EQ(commands[1], "?");
  EXPECT_EQ(commands.back(), "xboard");
  EXPECT_EQ(LongestCommand(CommandHelpList()), 16u);
}

TEST(CommandHelpList, DescriptionsKeepTheirExactText) {
  const auto description = [](const std::string& command) {
    for (const HelpEntry& entry : CommandHelpList()) {
      if (entry.command == command) return entry.description;
    }
    return std::string("<missing>");
  };
  EXPECT_EQ(description("\".\""), "Sends a request for the current search status");
  EXPECT_EQ(description("version"), "Displays informations about the current program version");
  EXPECT_EQ(description("hash"),
            "If given no parameters, it will display the status of all hashtables (used memory, "
            "fill percentage). Otherwise it modifies the size of the specified table (trans, "
            "pawn, eval).\nExample: \"hash trans 256M\"");
  EXPECT_NE(description("next").find("make all moves  at once"), std::string::npos);
  const auto forced_breaks = [&](const std::string& command) {
    const std::string text = description(command);
    return std::count(text.begin(), text.end(), '\n');
  };
  EXPECT_EQ(forced_breaks("personality"), 2);
  EXPECT_EQ(forced_breaks("verify"), 3);
  EXPECT_EQ(forced_breaks("go"), 0);
}

TEST(StartupHelpList, IsTheCommandListCutToTheStartupNames) {
  const std::vector<std::string> commands = Commands(StartupHelpList());
  EXPECT_EQ(commands.size(), 24u);
  EXPECT_TRUE(StrictlySorted(commands));
  for (std::string_view name : STARTUP_COMMAND_NAMES) {
    EXPECT_NE(std::find(commands.begin(), commands.end(), name), commands.end()) << name;
  }
  EXPECT_EQ(commands.front(), "contempt");
  EXPECT_EQ(StartupHelpList().front().description.substr(0, 24), "Sets the contempt value.");
}

TEST(StartupCommandNames, AreExactlyTheTwentyFour) {
  // clang-format off
  const std::set<std::string_view> documented = {
      "xboard", "protover", "easy", "eval", "contempt", "hash", "help", "id", "level",
      "modify_settings", "personality", "probe", "quit", "sd", "setboard", "st", "tb", "tc",
      "version", "read_fen", "read_pgn", "read_settings", "generate", "verify"};
  // clang-format on
  EXPECT_EQ(std::set<std::string_view>(STARTUP_COMMAND_NAMES.begin(), STARTUP_COMMAND_NAMES.end()),
            documented);
  for (std::string_view name : documented) EXPECT_TRUE(IsStartupCommand(name)) << name;
  for (const char* name : {"go", "new", "force", "Hash", "-hash", "", "hashx", "x"}) {
    EXPECT_FALSE(IsStartupCommand(name)) << name;
  }
}

TEST(EditHelpList, HasTheTenEditCommandsSorted) {
  const std::vector<std::string> commands = Commands(EditHelpList());
  EXPECT_EQ(commands, (std::vector<std::string>{"\".\"", "#", "c", "cancel", "display", "help",
                                                "quit", "restore", "s", "verify"}));
  EXPECT_EQ(EditHelpList().front().description,
            "Leaves edit mode and confirms the changes that were made");
  EXPECT_EQ(EditHelpList().back().description, "Checks if the current position is legal");
}

}  // namespace
}  // namespace BraskHelpScreen
