#include "shell/help_screen.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include "shell/help_lists.h"
#include "shell/help_screens.h"
#include "support/terminal_capture.h"

namespace BraskHelpScreen {
namespace {

constexpr const char* PROMPT = "press enter to continue...";
// Written straight to the terminal by the injected wait, to show where the screen stopped.
constexpr const char* KEY = "<enter>\n";

class HelpScreenTest : public ::testing::Test {
 protected:
  std::string Show(const std::vector<HelpEntry>& entries, HelpPage page) {
    SimpleHelpScreenFormatter formatter(
        entries, [page] { return page; },
        [this] {
          ++waits_;
          std::cout << KEY;
        });
    formatter.Show();
    return terminal_.Text();
  }

  int waits_ = 0;
  TerminalCapture terminal_;
};

std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

TEST_F(HelpScreenTest, ShortCommandsGetTenColumnsAndDots) {
  const std::string text = Show({{"#", "Clears the board"}, {"cancel", "Leaves"}}, {0, 80});
  EXPECT_EQ(text,
            "command    description\n"
            "#..........Clears the board\n"
            "cancel.....Leaves\n");
  EXPECT_EQ(waits_, 0);
  EXPECT_GE(terminal_.Flushes(), 1);
}

TEST_F(HelpScreenTest, TheLongestCommandSetsTheColumn) {
  const std::string text =
      Show({{"a_long_command_x", "one two three"}, {"b", "four\nfive"}}, {0, 36});
  // Indent 16: a word fits while 16 + its length + the used width < 35.
  EXPECT_EQ(text,
            "command          description\n"
            "a_long_command_x.one two three\n"
            "b................four\n"
            "                 five\n");
}

TEST_F(HelpScreenTest, StopsBeforeTheEntryThatFillsThePage) {
  // Five rows: the screen stops once the entries since the last stop take four lines or more.
  const std::vector<HelpEntry> entries = {{"a", "1"},       {"b", "2\n2"}, {"c", "3"},
                                          {"d", "4\n4\n4"}, {"e", "5"},    {"f", "6"}};
  const std::string text = Show(entries, {5, 80});
  EXPECT_EQ(text,
            "command    description\n"
            "a..........1\n"
            "b..........2\n"
            "           2\n" +
                std::string(PROMPT) + KEY + "c..........3\n" + PROMPT + KEY +
                "d..........4\n"
                "           4\n"
                "           4\n" +
                PROMPT + KEY +
                "e..........5\n"
                "f..........6\n");
  EXPECT_EQ(waits_, 3);
}

TEST_F(HelpScreenTest, TheCommandListStopsWhereTwentyThreeLinesAreReached) {
  // On 24 rows the entries up to fritz take 20 lines; generate's eight would make 28.
  const std::string text = Show(CommandHelpList(), {24, 80});
  EXPECT_NE(text.find("fritz............Activates Fritz mode (not really supported)\n" +
                      std::string(PROMPT) + KEY + "generate.........Generates"),
            std::string::npos);
  EXPECT_GT(text.find(PROMPT), text.find("fritz"));
}

TEST_F(HelpScreenTest, AnEntryTallerThanThePageStillShows) {
  const std::string text = Show({{"a", "1\n1\n1\n1"}, {"b", "2"}}, {3, 80});
  EXPECT_EQ(waits_, 2);
  EXPECT_EQ(text, "command    description\n" + std::string(PROMPT) + KEY +
                      "a..........1\n           1\n           1\n           1\n" + PROMPT + KEY +
                      "b..........2\n");
}

TEST_F(HelpScreenTest, FlushesBeforeWaiting) {
  int flushes_at_wait = -1;
  SimpleHelpScreenFormatter formatter(
      std::vector<HelpEntry>{{"a", "1"}, {"b", "2"}},
      [] {
        return HelpPage{2, 80};
      },
      [&] { flushes_at_wait = terminal_.Flushes(); });
  formatter.Show();
  EXPECT_GE(flushes_at_wait, 1);
}

TEST_F(HelpScreenTest, WithoutATerminalThereAreEightyColumnsAndNoStops) {
  if (isatty(STDOUT_FILENO)) GTEST_SKIP() << "standard output is a terminal";
  const HelpPage page = StandardOutputPage();
  EXPECT_EQ(page.rows, 0);
  EXPECT_EQ(page.columns, 80);
  // The real screens then never wait for input, which would end a test run reading its stdin.
  CommandHelpScreen().Show();
  StartupHelpScreen().Show();
  EditHelpScreen().Show();
  EXPECT_EQ(terminal_.Text().find(PROMPT), std::string::npos);
  EXPECT_EQ(Lines(terminal_.Text()).front(), "command          description");
}

}  // namespace
}  // namespace BraskHelpScreen
