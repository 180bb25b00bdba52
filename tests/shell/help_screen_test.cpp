#include "shell/help_screen.h"

#include <gtest/gtest.h>

#include <iostream>
#include <string>
#include <vector>

#include "shell/help_entry.h"
#include "shell/help_lists.h"
#include "shell/help_text_wrapping.h"
#include "shell/startup_command_names.h"
#include "support/terminal_capture.h"

namespace BraskHelpScreen {
namespace {

constexpr const char* PROMPT = "press enter to continue...";
// Written straight to the terminal by the injected wait, to show where the screen stopped.
constexpr const char* KEY = "<enter>\n";

// Shows the entries on a page of the given size, with a wait that writes KEY and checks that the
// screen was flushed before it.
std::string Show(const std::vector<HelpEntry>& entries, HelpPage page, int& waits) {
  TerminalCapture terminal;
  SimpleHelpScreenFormatter formatter(
      entries, [page] { return page; },
      [&] {
        ++waits;
        EXPECT_GE(terminal.Flushes(), 1) << "waits before the screen is flushed";
        std::cout << KEY;
      });
  formatter.Show();
  EXPECT_GE(terminal.Flushes(), 1);
  return terminal.Text();
}

// Columns, dots, the filling of lines and the lists are checked on the real screens by the
// transcript tests; here the stops, which a pipe never sees. The screen stops before the entry
// that fills the page, and an entry taller than a page still shows.
TEST(HelpScreen, StopsBeforeTheEntryThatFillsThePage) {
  const std::string stop = std::string(PROMPT) + KEY;
  const struct {
    std::vector<HelpEntry> entries;
    HelpPage page;
    std::string text;
    int waits;
  } cases[] = {
      // Five rows: the screen stops once the entries since the last stop take four lines.
      {{{"a", "1"}, {"b", "2\n2"}, {"c", "3"}, {"d", "4\n4\n4"}, {"e", "5"}, {"f", "6"}},
       {5, 80},
       "command    description\na..........1\nb..........2\n           2\n" + stop +
           "c..........3\n" + stop + "d..........4\n           4\n           4\n" + stop +
           "e..........5\nf..........6\n",
       3},
      {{{"a", "1\n1\n1\n1"}, {"b", "2"}},
       {3, 80},
       "command    description\n" + stop +
           "a..........1\n           1\n           1\n           1\n" + stop + "b..........2\n",
       2},
      // The longest command sets the column.
      {{{"a_long_command_x", "one"}, {"b", "two"}},
       {0, 80},
       "command          description\na_long_command_x.one\nb................two\n",
       0},
  };
  for (const auto& c : cases) {
    int waits = 0;
    EXPECT_EQ(Show(c.entries, c.page, waits), c.text);
    EXPECT_EQ(waits, c.waits) << c.text;
  }
}

TEST(HelpLists, TheFirstOfEqualCommandsAndTheStartupList) {
  const std::vector<HelpEntry> entries = {{"go", "1"}, {"b", ""}, {"Go", "2"}};
  const std::vector<HelpEntry> list = SortedHelpList(entries);
  ASSERT_EQ(list.size(), 2u);
  EXPECT_EQ(list[1].description, "1");
  for (const HelpEntry& entry : StartupHelpList()) EXPECT_TRUE(IsStartupCommand(entry.command));
}

// A word fits while indent + its length + the used width stays below the last column; runs of
// blanks are one gap, newlines force a break, and long words are never split.
TEST(WrapDescription, BreaksFillsAndGaps) {
  const std::string word(30, 'x');
  const struct {
    std::string description;
    int indent, columns;
    std::string text;
    int lines;
  } cases[] = {
      {"aaaa bbbb cccccc", 4, 20, "aaaa bbbb\n     cccccc", 2},
      {"", 4, 80, "", 1},
      {"ab \n cd", 3, 80, "ab\n    cd", 2},
      {"a\n\nb", 2, 80, "a\n   \n   b", 3},
      // After a forced break the line is empty again, so the next word always fits first.
      {"aaaa bbbb cccc\ndddd eeee ffff gggg", 4, 20,
       "aaaa bbbb cccc\n     dddd eeee ffff\n     gggg", 3},
      {"a " + word + " b", 4, 20, "a\n     " + word + "\n     b", 3},
      // Even as the first word it goes on a line of its own, leaving the first one empty.
      {word, 4, 20, "\n     " + word, 2},
      {"a b", 10, 5, "\n           a\n           b", 3},  // narrow pages stay finite
      {"a b", 0, 0, "\n a\n b", 3},
  };
  for (const auto& c : cases) {
    const WrappedText wrapped = WrapDescription(c.description, c.indent, c.columns);
    EXPECT_EQ(wrapped.text, c.text) << '"' << c.description << "\" at " << c.columns;
    EXPECT_EQ(wrapped.lines, c.lines) << '"' << c.description << "\" at " << c.columns;
  }
}

}  // namespace
}  // namespace BraskHelpScreen
