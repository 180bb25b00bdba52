#include "chess/tokenizer.h"

#include <gtest/gtest.h>

#include <functional>
#include <random>
#include <string>
#include <utility>
#include <variant>
#include <vector>

using BraskUtils::Tokenize;
using BraskUtils::tokenize_exception;
using BraskUtils::unterminated_embedded_string_exception;
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

namespace {

// The tokenizer written as the plain recursion that defines it, to check the engine's flat loop
// against on random texts.
struct Reference {
  std::string separators, opening, closing, kept;

  bool IsSeparator(char c) const { return separators.find(c) != std::string::npos; }
  bool IsKept(char c) const { return kept.find(c) != std::string::npos; }

  std::string Embedded(const std::string& text, std::size_t& pos, char closing_mark) const {
    const std::size_t from = IsKept(text[pos]) ? pos : pos + 1;
    const std::size_t close = text.find(closing_mark, pos + 1);
    if (close == std::string::npos) throw unterminated_embedded_string_exception();
    std::string result = text.substr(from, close - from);
    if (IsKept(closing_mark)) result += closing_mark;
    pos = close + 1;
    return result;
  }

  Tokens Glue(const std::string& head, const std::string& rest) const {
    Tokens tokens = Split(rest);
    tokens.at(0).insert(0, head);
    return tokens;
  }

  Tokens Split(const std::string& text) const {
    Tokens tokens;
    std::size_t pos = 0;
    for (;;) {
      if (pos >= text.size()) return tokens;
      pos = text.find_first_not_of(separators, pos);
      if (pos == std::string::npos) return tokens;
      std::string token;
      const std::size_t mark = opening.find(text[pos]);
      if (mark != std::string::npos) {
        token = Embedded(text, pos, closing[mark]);
      } else {
        const std::size_t end = text.find_first_of(separators, pos);
        const std::string word = text.substr(pos, end == std::string::npos ? end : end - pos);
        const std::size_t j = word.find_first_of(opening);
        if (j == std::string::npos) {
          tokens.push_back(word);
          if (end == std::string::npos) return tokens;
          pos = end;
          continue;
        }
        if (end == std::string::npos) {
          for (std::string& t : Glue(word.substr(0, j), text.substr(pos + j))) tokens.push_back(t);
          return tokens;
        }
        pos += j;
        token = word.substr(0, j) + Embedded(text, pos, closing[opening.find(text[pos])]);
      }
      if (pos >= text.size() || IsSeparator(text[pos])) {
        tokens.push_back(token);
        continue;
      }
      for (std::string& t : Glue(token, text.substr(pos))) tokens.push_back(t);
      return tokens;
    }
  }
};

std::variant<Tokens, bool> Outcome(const std::function<Tokens()>& tokenize) {
  try {
    return tokenize();
  } catch (const unterminated_embedded_string_exception&) {
    return true;
  }
}

}  // namespace

TEST(Tokenize, AgreesWithTheRecursiveDefinitionOnRandomTexts) {
  const Reference configurations[] = {
      {" \t", "\"'", "\"'", ""},
      {" ", "\"[", "\"]", "["},
      {" ,", "'(", "')", "')"},
  };
  const std::string alphabet = "ab  \t,\"'[]()";
  std::mt19937 random(20260101);
  for (int round = 0; round < 20000; ++round) {
    const Reference& reference = configurations[round % 3];
    std::string text(random() % 14, ' ');
    for (char& c : text) c = alphabet[random() % alphabet.size()];
    const auto expected = Outcome([&] { return reference.Split(text); });
    const auto actual = Outcome([&] {
      return Tokenize(text, reference.separators, reference.opening, reference.closing,
                      reference.kept);
    });
    ASSERT_EQ(actual, expected) << "text: [" << text << "] configuration " << round % 3;
  }
}
