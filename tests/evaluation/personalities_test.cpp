#include "evaluation/personalities.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <utility>

namespace {

std::optional<std::int32_t> Parsed(const std::string& text) {
  std::int32_t value = 12345;
  if (!ParsePersonality(text, value)) return std::nullopt;
  return value;
}

}  // namespace

TEST(Personality, NamesNumbersAndTheSecondTryInCapitals) {
  const std::pair<const char*, std::optional<std::int32_t>> cases[] = {
      {"Brask", 0},        {"Default", 0},     {"Nurz", 1000},    {"nurz", 1000},
      {"Vessimar", -1000}, {"jorlund", -15},   {"Torvane", 11},   {"-7", -7},
      {"5000", 5000},      {"NURZ", {}},       {"15x", {}},       {"", {}},
      {"nobody", {}},      {"-brask", {}},     {" Brask", {}},
  };
  for (const auto& [text, value] : cases) EXPECT_EQ(Parsed(text), value) << '"' << text << '"';
}

TEST(Personality, AValueIsShownByItsFirstNameAndRandomStaysInReasonableBounds) {
  EXPECT_EQ(PersonalityName(0), "Brask");
  EXPECT_EQ(PersonalityName(1000), "Nurz");
  EXPECT_EQ(PersonalityName(-12), "Sorvath");
  EXPECT_EQ(PersonalityName(7), "Custom");
  for (const auto& [name, value] : NamedPersonalities())
    EXPECT_EQ(Parsed(PersonalityName(value)), value) << name;
  EXPECT_EQ(NamedPersonalities().size(), 18u);
  for (const char* text : {"Random", "random"})
    for (int draw = 0; draw < 200; ++draw) {
      const std::optional<std::int32_t> value = Parsed(text);
      ASSERT_TRUE(value.has_value());
      EXPECT_TRUE(*value >= -20 && *value <= 20) << *value;
    }
}
