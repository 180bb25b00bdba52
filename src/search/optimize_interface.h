// The search settings for the outside world: a snapshot of all of them, in the order of settings
// files, that can be written, read, shown and changed without touching what the search uses until
// Apply.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "search/optimize_data_types.h"

namespace OptimizeInterface {

class Settings {
 public:
  class SettingsException : public BraskException {
   public:
    using BraskException::BraskException;
  };
  class IO_Exception : public SettingsException {
   public:
    using SettingsException::SettingsException;
  };
  class InvalidData : public SettingsException {
   public:
    using SettingsException::SettingsException;
  };
  class UnknownVariable : public SettingsException {
   public:
    using SettingsException::SettingsException;
  };

  // The present values of the globals.
  Settings();
  // Reads a settings file. Lines are expected in the order of the variables; a variable whose line
  // is missing gets its present value, with a warning on the output channel.
  explicit Settings(const std::string& file_name);

  Settings(Settings&&) = default;
  Settings& operator=(Settings&&) = default;

  void Write(const std::string& file_name) const;
  // Copies every value into the globals. Only between searches: nothing else is told.
  void Apply() const;
  void Set(std::string_view name, std::string_view text);
  std::string Get(std::string_view name) const;

  const std::vector<std::unique_ptr<DataType>>& Variables() const { return variables_; }

 private:
  DataType& Find(std::string_view name) const;

  std::vector<std::unique_ptr<DataType>> variables_;
};

}  // namespace OptimizeInterface
