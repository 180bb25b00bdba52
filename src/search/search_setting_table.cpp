// The table that ties the settings to their globals, made from the list of settings.
#include "search/setting_bindings.h"

#include <cstddef>

#include "search/search_settings.h"

namespace OptimizeInterface {
namespace {

// A default as the list spells it ("0, 15, 10, 65") made into the text that settings files hold
// ("0 15 10 65"), at compile time; the template parameter object owns the characters.
template <std::size_t N>
struct SettingsFileText {
  char text[N]{};
  constexpr SettingsFileText(const char (&listed)[N]) {
    std::size_t length = 0;
    for (std::size_t i = 0; i + 1 < N; ++i)
      if (listed[i] != ',') text[length++] = listed[i];
  }
};

template <SettingsFileText listed>
constexpr std::string_view AS_FILE_TEXT{listed.text};

#define SEARCH_SETTING(type, name, minimum, maximum, description, ...) \
  BindSetting(#name, name, minimum, maximum, AS_FILE_TEXT<#__VA_ARGS__>, description),
constexpr SettingBinding BINDINGS[] = {
#include "search/search_setting_list.def"
};
#undef SEARCH_SETTING

static_assert(std::size(BINDINGS) == SEARCH_SETTING_COUNT,
              "a new setting changes the format of settings files: raise SEARCH_SETTING_COUNT");

}  // namespace

std::span<const SettingBinding, SEARCH_SETTING_COUNT> SearchSettingBindings() {
  return std::span<const SettingBinding, SEARCH_SETTING_COUNT>(BINDINGS);
}

}  // namespace OptimizeInterface
