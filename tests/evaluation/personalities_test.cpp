#include "evaluation/personalities.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "evaluation/evaluate.h"
#include "search/hash.h"
#include "search/position_type.h"
#include "support/random_positions.h"

namespace {

std::optional<std::int32_t> Parsed(const std::string& text) {
  std::int32_t value = 12345;
  if (!ParsePersonality(text, value)) return std::nullopt;
  return value;
}

}  // namespace

TEST(Personality, NamesNumbersAndTheSecondTryInCapitals) {
  const struct {
    const char* text;
    std::optional<std::int32_t> value;
  } cases[] = {
      {"Brask", 0},        {"Default", 0},     {"Nurz", 1000},    {"nurz", 1000},
      {"Vessimar", -1000}, {"jorlund", -15},   {"Torvane", 11},   {"-7", -7},
      {"5000", 5000},      {"NURZ", {}},       {"15x", {}},       {"", {}},
      {"nobody", {}},      {"-brask", {}},     {" Brask", {}},
  };
  for (const auto& c : cases) EXPECT_EQ(Parsed(c.text), c.value) << '"' << c.text << '"';
}

TEST(Personality, RandomInBothSpellingsStaysInReasonableBounds) {
  for (const char* text : {"Random", "random"})
    for (int draw = 0; draw < 200; ++draw) {
      const std::optional<std::int32_t> value = Parsed(text);
      ASSERT_TRUE(value.has_value());
      EXPECT_GE(*value, -20);
      EXPECT_LE(*value, 20);
    }
}

TEST(Personality, AValueIsShownByItsFirstName) {
  EXPECT_EQ(PersonalityName(0), "Brask");
  EXPECT_EQ(PersonalityName(1000), "Nurz");
  EXPECT_EQ(PersonalityName(-12), "Sorvath");
  EXPECT_EQ(PersonalityName(7), "Custom");
  for (const auto& [name, value] : NamedPersonalities())
    EXPECT_EQ(Parsed(PersonalityName(value)), value) << name;
  EXPECT_EQ(NamedPersonalities().size(), 18u);
}

TEST(Personality, EndingsDoNotKnowIt) {
  EVALUATION_HASH_TABLE.Clear();
  int endings = 0;
  for (const Board& board : RandomPositions(600, 4)) {
    const int type = ClassifyPosition(board, UNCLASSIFIED);
    if (type == OPENING || type == MIDDLEGAME) continue;
    ++endings;
    int values[2];
    for (int i = 0; i < 2; ++i) {
      EVALUATION_HASH_TABLE.Clear();
      EvaluationState evaluation;
      evaluation.settings->personality = std::int16_t(i == 0 ? 1000 : -1000);
      values[i] = EvaluateExact(evaluation, board, type);
    }
    EXPECT_EQ(values[0], values[1]) << "type " << type;
  }
  EXPECT_GT(endings, 50);
  EVALUATION_HASH_TABLE.Clear();
}
