// The text helpers under the command parsers: the tokenizer, trimming and prefixes. The sorting
// without regard to case shows in the order of the help screen.
#include "chess/tokenizer.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "chess/string_helpers.h"

using namespace BraskUtils;
using Tokens = std::vector<std::string>;

// Quoted parts keep separators and join the tokens they touch; inside them all is literal.
TEST(Tokenize, SeparatorsQuotesAndEmptyTokens) {
  const std::pair<const char*, Tokens> cases[] = {
      {"", {}}, {" \t\r\n  ", {}}, {"  go\t sd  12\r\n", {"go", "sd", "12"}},
      {"single", {"single"}}, {"a \"b c\"", {"a", "b c"}}, {"\"b c\"d", {"b cd"}},
      {"ab\"c d\"e", {"abc de"}}, {"x'1 2'\"3 4\"y z", {"x1 23 4y", "z"}},
      {"a\"b\"c\"d e\"f g", {"abcd ef", "g"}},
      {"pgn \"my games.pgn\" 3", {"pgn", "my games.pgn", "3"}},
      {"\"\"", {""}}, {"a \"\" b", {"a", "", "b"}}, {"''\"\"", {""}},
      {"\"it's\"", {"it's"}}, {"'say \"hi\"'", {"say \"hi\""}},
      {"\"a\\\" b", {"a\\", "b"}},  // no escape character
  };
  for (const auto& [text, tokens] : cases) EXPECT_EQ(Tokenize(text), tokens) << text;
  for (const char* text : {"\"", "setboard \"rnbqkbnr", "ok \"fine\" x'"})
    EXPECT_THROW(Tokenize(text), unterminated_embedded_string_exception) << text;
  EXPECT_THROW(Tokenize("a\"b c"), tokenize_exception);  // callers catch the base class
}

TEST(Tokenize, LongInputsStayFast) {
  std::string glued;
  for (int i = 0; i < 200000; ++i) glued += "\"q\"";
  EXPECT_EQ(Tokenize(glued), Tokens{std::string(200000, 'q')});
  std::string words;
  for (int i = 0; i < 100000; ++i) words += "w ";
  EXPECT_EQ(Tokenize(words).size(), 100000u);
}

// Other marks: kept marks stay in the token, and a mark with no closing partner closes itself.
TEST(Tokenize, MarksOfTheCallersChoice) {
  const struct {
    const char *text, *separators, *opening, *closing, *kept;
    Tokens tokens;
  } cases[] = {
      {"a [b c]d \"e\"", " ", "\"[", "\"]", "[", {"a", "[b cd", "e"}},
      {"x,(a b),'c d'", " ,", "'(", "')", "')", {"x", "a b)", "'c d'"}},
      {"|a b|c,d", ",", "|", "", "", {"a bc", "d"}},
  };
  for (const auto& c : cases)
    EXPECT_EQ(Tokenize(c.text, c.separators, c.opening, c.closing, c.kept), c.tokens) << c.text;
  EXPECT_THROW(Tokenize("a (b", " ", "(", ")", ""), unterminated_embedded_string_exception);
}

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
