#include "search/setting_bindings.h"

#include <gtest/gtest.h>

#include <string>

#include "search/optimize_data_types.h"

namespace OptimizeInterface {
namespace {

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
