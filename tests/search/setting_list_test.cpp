#include "search/setting_bindings.h"

#include <gtest/gtest.h>

#include <string>

#include "search/optimize_data_types.h"

namespace OptimizeInterface {
namespace {

const SettingBinding* Find(std::string_view name) {
  for (const SettingBinding& binding : SearchSettingBindings())
    if (binding.name == name) return &binding;
  return nullptr;
}

// The list spells arrays with commas; settings files and the default text with single blanks.
TEST(SettingList, DefaultTextsAreSpelledAsSettingsFilesSpellThem) {
  const struct {
    std::string_view name;
    std::string_view text;
  } cases[] = {
      {"root_distance_multiplier", "64"},
      {"min_distance_for_mate_threat_test", "-64000"},
      {"enable_ettc", "false"},
      {"enable_search_extensions", "true"},
      {"checking_move_sorting_bonus_if_not_playing_for_mate", "0 15 10 65"},
      {"capture_move_sorting_bonus", "0 4 5 5 6 10"},
      {"score_checking_move_should_neglect_trade_knight_vs_bishop", "true"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.name));
    const SettingBinding* binding = Find(c.name);
    ASSERT_NE(binding, nullptr);
    EXPECT_EQ(binding->default_text, c.text);
  }
}

// Tests that change settings give them back, so the globals hold their starting values here.
TEST(SettingList, EveryGlobalStartsAtItsDefaultTextWithinItsRange) {
  for (const SettingBinding& binding : SearchSettingBindings()) {
    SCOPED_TRACE(std::string(binding.name));
    EXPECT_EQ(binding.Snapshot()->ToText(), binding.default_text);
    EXPECT_NO_THROW(binding.MakeEmpty()->SetFromText(binding.default_text));
    EXPECT_FALSE(binding.description.empty());
    EXPECT_LE(binding.description.size(), 60u) << "a description is a few words";
  }
}

}  // namespace
}  // namespace OptimizeInterface
