// What the commands write_settings, read_settings, modify_settings and display_settings do. Each
// throws SettingsCommandError with the message of the command's error; whether a command may run
// now (force mode) is the command's own check.
#pragma once

#include <string>
#include <string_view>

#include "shell/brask_exception.h"

namespace OptimizeInterface {

class SettingsCommandError : public BraskException {
 public:
  using BraskException::BraskException;
};

void WriteSearchSettings(const std::string& file_name);

// All or nothing: the globals change only if the whole file could be read.
void ReadSearchSettings(const std::string& file_name);

// `assignments` is "name=value" pairs separated by ";", all applied or none.
void ModifySearchSettings(std::string_view assignments);

// One "name=value" line per variable named in `names` (separated by ";" or blanks), or for all of
// them with "all" or no names. Unknown names fail before anything is written.
std::string SearchSettingsText(std::string_view names);
void DisplaySearchSettings(std::string_view names);

}  // namespace OptimizeInterface
