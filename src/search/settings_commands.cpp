#include "search/settings_commands.h"

#include <vector>

#include "chess/string_helpers.h"
#include "chess/tokenizer.h"
#include "search/optimize_interface.h"
#include "shell/tee_stream.h"

namespace OptimizeInterface {
namespace {

std::string VariableLine(const DataType& variable) {
  return variable.Name() + "=" + variable.ToText() + "\n";
}

void ApplyAssignment(Settings& settings, std::string assignment) {
  BraskUtils::Trim(assignment, BraskUtils::WHITESPACE);
  const std::size_t separator = assignment.find('=');
  std::string name = assignment.substr(0, separator);
  std::string value = separator == std::string::npos ? "" : assignment.substr(separator + 1);
  BraskUtils::Trim(name, BraskUtils::WHITESPACE);
  BraskUtils::Trim(value, BraskUtils::WHITESPACE);
  if (separator == std::string::npos || name.empty() || value.empty())
    throw SettingsCommandError("seperator missing (';')");
  settings.Set(name, value);
}

}  // namespace

void WriteSearchSettings(const std::string& file_name) {
  try {
    Settings().Write(file_name);
  } catch (const Settings::IO_Exception& error) {
    throw SettingsCommandError(std::string("could not write search settings file ") +
                               error.what());
  }
}

void ReadSearchSettings(const std::string& file_name) {
  try {
    Settings(file_name).Apply();
  } catch (const Settings::IO_Exception& error) {
    throw SettingsCommandError(error.what());
  } catch (const Settings::InvalidData& error) {
    throw SettingsCommandError(std::string("file contained invalid data:\n") + error.what());
  }
}

void ModifySearchSettings(std::string_view assignments) {
  std::vector<std::string> pairs;
  try {
    pairs = BraskUtils::Tokenize(assignments, ";", BraskUtils::QUOTES, BraskUtils::QUOTES, {});
  } catch (const BraskUtils::tokenize_exception&) {
    throw SettingsCommandError("could not tokenize the input string");
  }
  Settings settings;
  try {
    for (const std::string& pair : pairs) ApplyAssignment(settings, pair);
  } catch (const Settings::SettingsException& error) {
    throw SettingsCommandError(error.what());
  }
  settings.Apply();
}

std::string SearchSettingsText(std::string_view names) {
  const Settings settings;
  std::vector<std::string> wanted = BraskUtils::Tokenize(names, "; \t\r\n", {}, {}, {});
  if (wanted.empty()) wanted.push_back("all");
  std::string text;
  try {
    for (const std::string& name : wanted) {
      if (name != "all") {
        text += name + "=" + settings.Get(name) + "\n";
        continue;
      }
      for (const auto& variable : settings.Variables()) text += VariableLine(*variable);
    }
  } catch (const Settings::SettingsException& error) {
    throw SettingsCommandError(error.what());
  }
  return text;
}

void DisplaySearchSettings(std::string_view names) {
  Output << SearchSettingsText(names);
  Output.Flush();
}

}  // namespace OptimizeInterface
