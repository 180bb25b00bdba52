#include "search/optimize_interface.h"

#include <fstream>

#include "search/setting_bindings.h"

namespace OptimizeInterface {

Settings::Settings() {
  for (const SettingBinding& binding : SearchSettingBindings())
    variables_.push_back(binding.Snapshot());
}

void Settings::Write(const std::string& file_name) const {
  std::ofstream file(file_name, std::ios::out | std::ios::trunc);
  if (!file) throw IO_Exception("could not open file: " + file_name);
  for (const std::unique_ptr<DataType>& variable : variables_)
    file << variable->Name() << '=' << variable->ToText() << '\n';
  file.flush();
  if (!file) throw IO_Exception("could not write file: " + file_name);
}

void Settings::Apply() const {
  const auto bindings = SearchSettingBindings();
  for (std::size_t i = 0; i < bindings.size(); ++i) bindings[i].Store(*variables_[i]);
}

void Settings::Set(std::string_view name, std::string_view text) {
  DataType& variable = Find(name);
  try {
    variable.SetFromText(text);
  } catch (const DataType::DataTypeException& error) {
    throw InvalidData(std::string("could not parse new value: ") + error.what());
  }
}

std::string Settings::Get(std::string_view name) const { return Find(name).ToText(); }

DataType& Settings::Find(std::string_view name) const {
  for (const std::unique_ptr<DataType>& variable : variables_)
    if (variable->Name() == name) return *variable;
  throw UnknownVariable("unknown variable: " + std::string(name));
}

}  // namespace OptimizeInterface
