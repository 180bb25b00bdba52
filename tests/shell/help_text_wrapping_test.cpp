#include "shell/help_text_wrapping.h"

#include <gtest/gtest.h>

#include <string>

namespace BraskHelpScreen {
namespace {

void ExpectWrap(const std::string& description, int indent, int columns, const std::string& text,
                int lines) {
  const WrappedText wrapped = WrapDescription(description, indent, columns);
  EXPECT_EQ(wrapped.text, text) << '"' << description << "\" at " << indent << '/' << columns;
  EXPECT_EQ(wrapped.lines, lines) << '"' << description << "\" at " << indent << '/' << columns;
}

TEST(WrapDescription, FillsALineUpToTheLastColumnButOne) {
  // A word fits while indent + its length + the used width stays below columns - 1 = 19.
  ExpectWrap("aaaa bbbb cccc dddd", 4, 20, "aaaa bbbb cccc\n     dddd", 2);
  ExpectWrap("aaaa bbbb ccc dddd", 4, 20, "aaaa bbbb ccc\n     dddd", 2);
  ExpectWrap("aaaa bbbb cc d", 4, 20, "aaaa bbbb cc d", 1);
  ExpectWrap("aaaa bbbb ccccc", 4, 20, "aaaa bbbb ccccc", 1);
  ExpectWrap("aaaa bbbb cccccc", 4, 20, "aaaa bbbb\n     cccccc", 2);
}

TEST(WrapDescription, RunsOfBlanksAreOneGap) {
  ExpectWrap("  two   words  ", 4, 80, "two words", 1);
  ExpectWrap("", 4, 80, "", 1);
  ExpectWrap("   ", 4, 80, "", 1);
}

TEST(WrapDescription, NewlinesForceABreakAtTheDescriptionColumn) {
  ExpectWrap("ab\ncd", 3, 80, "ab\n    cd", 2);
  ExpectWrap("ab \n cd", 3, 80, "ab\n    cd", 2);
  ExpectWrap("a\n\nb", 2, 80, "a\n   \n   b", 3);
  ExpectWrap("a\n", 2, 80, "a\n   ", 2);
  // After a forced break the line is empty again, so the next word always fits first.
  ExpectWrap("aaaa bbbb cccc\ndddd eeee ffff gggg", 4, 20,
             "aaaa bbbb cccc\n     dddd eeee ffff\n     gggg", 3);
}

TEST(WrapDescription, LongWordsAreNeverSplit) {
  const std::string word(30, 'x');
  ExpectWrap("a " + word + " b", 4, 20, "a\n     " + word + "\n     b", 3);
  // Even as the first word it goes on a line of its own, leaving the first one empty.
  ExpectWrap(word, 4, 20, "\n     " + word, 2);
}

TEST(WrapDescription, NarrowPagesStayFinite) {
  ExpectWrap("a b", 10, 5, "\n           a\n           b", 3);
  ExpectWrap("a b", 0, 0, "\n a\n b", 3);
}

}  // namespace
}  // namespace BraskHelpScreen
