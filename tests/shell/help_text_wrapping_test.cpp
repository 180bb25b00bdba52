#include "shell/help_text_wrapping.h"

#include <gtest/gtest.h>

#include <string>

namespace BraskHelpScreen {
namespace {

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
      {"aaaa bbbb cccc dddd", 4, 20, "aaaa bbbb cccc\n     dddd", 2},
      {"aaaa bbbb ccc dddd", 4, 20, "aaaa bbbb ccc\n     dddd", 2},
      {"aaaa bbbb cc d", 4, 20, "aaaa bbbb cc d", 1},
      {"aaaa bbbb ccccc", 4, 20, "aaaa bbbb ccccc", 1},
      {"aaaa bbbb cccccc", 4, 20, "aaaa bbbb\n     cccccc", 2},
      {"  two   words  ", 4, 80, "two words", 1},
      {"", 4, 80, "", 1},
      {"   ", 4, 80, "", 1},
      {"ab\ncd", 3, 80, "ab\n    cd", 2},
      {"ab \n cd", 3, 80, "ab\n    cd", 2},
      {"a\n\nb", 2, 80, "a\n   \n   b", 3},
      {"a\n", 2, 80, "a\n   ", 2},
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
