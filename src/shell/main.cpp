#include <string>
#include <vector>

#include "bitbases/special_bitbases.h"
#include "search/hash.h"
#include "shell/application.h"
#include "shell/log_file.h"
#include "shell/os_dependent.h"
#include "shell/startup.h"

int main(int argc, char* argv[]) {
  CheckPlatformArithmetic();
  OpenNumberedLog();
  WriteBitboardAlgorithms();
  TRANSPOSITION_TABLE.Resize(DEFAULT_TRANSPOSITION_BYTES);
  PAWN_HASH_TABLE.Resize(DEFAULT_PAWN_HASH_BYTES);
  EVALUATION_HASH_TABLE.Resize(DEFAULT_EVALUATION_HASH_BYTES);
  ExecutableDirectory(argc > 0 && argv[0] != nullptr ? argv[0] : "");
  BraskBitbases::LoadBitbases();
  const std::vector<std::string> arguments = CommandLineArguments(argc, argv);

  Application application(arguments);
  application.Run();
  return 0;
}
