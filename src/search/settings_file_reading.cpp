// Reading a settings file. The reader does not look names up: it walks the variables in order and
// expects each one's line where it stands, so a file is always read the same way, and an older
// file with fewer variables still gives a complete set.
#include <fstream>
#include <optional>

#include "chess/string_helpers.h"
#include "search/optimize_interface.h"
#include "search/setting_bindings.h"
#include "shell/conversions.h"
#include "shell/tee_stream.h"

namespace OptimizeInterface {
namespace {

constexpr std::string_view LINE_WHITESPACE = " \t\r\n";

// What an empty line or the end of the file gives; no variable has this name.
struct SettingsLine {
  std::string name = "invalid";
  std::string value = "invalid";
};

SettingsLine ReadSettingsLine(std::istream& file) {
  std::string text;
  if (!std::getline(file, text)) return {};
  const std::size_t separator = text.find('=');
  if (separator == std::string::npos) {
    BraskUtils::Trim(text, LINE_WHITESPACE);
    if (!text.empty()) throw Settings::IO_Exception("seperator missing ('=')");
    return {};
  }
  return {text.substr(0, separator), text.substr(separator + 1)};
}

void SetFromLine(DataType& variable, const std::string& value, int line_number) {
  try {
    variable.SetFromText(value);
  } catch (const DataType::DataTypeException& error) {
    std::string text = "Parse error in line #" + IntToString(line_number);
    if (*error.what() != '\0') text += std::string(" (") + error.what() + ")";
    throw Settings::InvalidData(text);
  }
}

void ReportMissingVariable(const DataType& variable, const std::string& default_text,
                           const std::string& received_name, bool first_mismatch) {
  if (first_mismatch) {
    Output << "Expected variable: " << variable.Name() << ";\nReceived variable: "
           << received_name << '\n';
  }
  Output << "Warning: Initialized missing variable <" << variable.Name()
         << "> with default value ('" << default_text << "')\n";
  Output.Flush();
}

}  // namespace

Settings::Settings(const std::string& file_name) {
  std::ifstream file(file_name);
  if (!file) throw IO_Exception("could not open file: " + file_name);
  // The present values stand in for missing lines; taken only when one is missing.
  std::optional<Settings> defaults;
  SettingsLine line;
  bool line_pending = false;  // a line that didn't match stays to be compared with the next name
  int line_number = 0;
  bool first_mismatch = true;
  for (const SettingBinding& binding : SearchSettingBindings()) {
    variables_.push_back(binding.MakeEmpty());
    DataType& variable = *variables_.back();
    if (!line_pending) {
      line = ReadSettingsLine(file);
      ++line_number;
      line_pending = true;
    }
    if (line.name == variable.Name()) {
      SetFromLine(variable, line.value, line_number);
      line_pending = false;
      continue;
    }
    if (!defaults) defaults.emplace();
    const std::string default_text = defaults->variables_[variables_.size() - 1]->ToText();
    variable.SetFromText(default_text);
    ReportMissingVariable(variable, default_text, line.name, first_mismatch);
    first_mismatch = false;
  }
}

}  // namespace OptimizeInterface
