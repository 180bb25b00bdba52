#include "shell/startup.h"

#include "shell/tee_stream.h"

void WriteBitboardAlgorithms() {
  const bool terminal = Output.SetTerminal(false);
  Output << "Bitboard algorithms"
         << "\n- popcount:         Table lookup PopCount"
         << "\n- popcount_sparse:  Table lookup PopCount"
         << "\n- find_lowest_bit:  FindLowestBitViaFindHighestBit"
         << "\n- find_highest_bit: Table lookup (not inlined)"
         << "\n- find_next_bit:    FindHighestBit"
         << "\n\n";
  Output.SetTerminal(terminal);
  Output.Flush();
}

std::vector<std::string> CommandLineArguments(int argc, const char* const argv[]) {
  std::vector<std::string> arguments;
  for (int i = 1; i < argc; ++i) {
    if (argv[i] != nullptr && argv[i][0] != '\0') arguments.emplace_back(argv[i]);
  }
  return arguments;
}
