#include <string>
#include <vector>

#include "shell/application.h"
#include "shell/log_file.h"
#include "shell/os_dependent.h"
#include "shell/startup.h"

int main(int argc, char* argv[]) {
  CheckPlatformArithmetic();
  OpenNumberedLog();
  WriteBitboardAlgorithms();
  ExecutableDirectory(argc > 0 && argv[0] != nullptr ? argv[0] : "");
  const std::vector<std::string> arguments = CommandLineArguments(argc, argv);

  Application application(arguments);
  application.Run();
  return 0;
}
