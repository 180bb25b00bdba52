#include "shell/log_file.h"

#include "shell/conversions.h"
#include "shell/os_dependent.h"
#include "shell/tee_stream.h"

std::string NumberedLogName(int number) {
  std::string digits = IntToString(number);
  if (digits.size() < 3) digits.insert(0, 3 - digits.size(), '0');
  return "logfile." + digits;
}

std::string FirstFreeLogName(const std::function<bool(const std::string&)>& exists, int numbers) {
  for (int number = 0; number < numbers; ++number) {
    std::string name = NumberedLogName(number);
    if (!exists(name)) return name;
  }
  return "logfile.max";
}

void OpenNumberedLog() { Output.OpenLog(FirstFreeLogName(FileExists)); }
