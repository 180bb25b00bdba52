// Ties each named setting to its global: its place in settings files, its elements and its range.
// The table is data; snapshots, reading and writing all walk it.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string_view>

namespace OptimizeInterface {

class DataType;

struct SettingBinding {
  std::string_view name;
  std::int32_t* integers = nullptr;  // the global's elements for an integer setting,
  bool* booleans = nullptr;          // or for a boolean one
  std::int32_t size = 1;
  std::int32_t minimum = 0;
  std::int32_t maximum = 0;
  std::string_view default_text;  // the value at program start, as a settings file writes it
  std::string_view description;   // what the setting steers, in a few words

  // A variable of the right type and range, without a value.
  std::unique_ptr<DataType> MakeEmpty() const;
  // A variable holding the global's present value.
  std::unique_ptr<DataType> Snapshot() const;
  // Copies the variable's value into the global.
  void Store(const DataType& variable) const;
};

constexpr SettingBinding BindSetting(std::string_view name, std::int32_t& global,
                                     std::int32_t minimum, std::int32_t maximum,
                                     std::string_view default_text, std::string_view description) {
  return {name, &global, nullptr, 1, minimum, maximum, default_text, description};
}

template <std::size_t N>
constexpr SettingBinding BindSetting(std::string_view name, std::int32_t (&global)[N],
                                     std::int32_t minimum, std::int32_t maximum,
                                     std::string_view default_text, std::string_view description) {
  const auto size = static_cast<std::int32_t>(N);
  return {name, global, nullptr, size, minimum, maximum, default_text, description};
}

// A boolean's range is always false .. true; the list spells it for the sake of one shape.
constexpr SettingBinding BindSetting(std::string_view name, bool& global, bool, bool,
                                     std::string_view default_text, std::string_view description) {
  return {name, nullptr, &global, 1, 0, 1, default_text, description};
}

inline constexpr std::size_t SEARCH_SETTING_COUNT = 173;

// All settings in the order of settings files.
std::span<const SettingBinding, SEARCH_SETTING_COUNT> SearchSettingBindings();

}  // namespace OptimizeInterface
