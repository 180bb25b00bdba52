#include "search/setting_bindings.h"

#include <gtest/gtest.h>

#include <string>

#include "search/default_settings_file.h"
#include "search/optimize_data_types.h"

namespace OptimizeInterface {
namespace {

// The defaults of the list, spelled as settings files spell them, must give the reference file:
// a slip in a default, or in turning the list's commas into blanks, shows here.
TEST(SettingList, DefaultTextsSpellTheDefaultSettingsFile) {
  std::string listed;
  for (const SettingBinding& binding : SearchSettingBindings())
    listed += std::string(binding.name) + "=" + std::string(binding.default_text) + "\n";
  EXPECT_EQ(listed, DEFAULT_SETTINGS_FILE);
}

TEST(SettingList, EveryDefaultFitsItsRangeAndEverySettingIsDescribed) {
  for (const SettingBinding& binding : SearchSettingBindings()) {
    SCOPED_TRACE(std::string(binding.name));
    const auto variable = binding.MakeEmpty();
    EXPECT_NO_THROW(variable->SetFromText(binding.default_text));
    EXPECT_FALSE(binding.description.empty());
    EXPECT_LE(binding.description.size(), 60u) << "a description is a few words";
  }
}

}  // namespace
}  // namespace OptimizeInterface
