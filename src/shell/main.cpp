#include <string>
#include <vector>

#include "shell/log_file.h"
#include "shell/os_dependent.h"
#include "shell/startup.h"

int main(int argc, char* argv[]) {
  CheckPlatformArithmetic();
  OpenNumberedLog();
  WriteBitboardAlgorithms();
  ExecutableDirectory(argc > 0 && argv[0] != nullptr ? argv[0] : "");
  const std::vector<std::string> arguments = CommandLineArguments(argc, argv);

  // Until the main loop stands, the engine only reads (and so logs) its input to the end.
  while (ReadLine() != "quit") {
  }
  return 0;
}
