// brask-tbgen ENDGAME... [-o DIR]: solves endgames of three and four pieces by distance to mate
// and writes them as plain Nalimov tablebase files.
#include <chrono>
#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

#include "bitbases/retrograde_solver.h"

namespace {

int Usage() {
  std::cerr << "usage: brask-tbgen ENDGAME... [-o DIR]\n"
               "  ENDGAME: a table name of three or four pieces, such as kqk or kqkr\n";
  return 2;
}

bool BothSidesHavePawns(const std::string& name) {
  std::size_t second_king = name.find('k', 1);
  return name.find('p') < second_king && name.find('p', second_king) != std::string::npos;
}

}  // namespace

int main(int argc, char** argv) {
  std::vector<std::string> endgames;
  std::string directory = ".";
  for (int i = 1; i < argc; ++i) {
    std::string argument = argv[i];
    if (argument == "-o" && i + 1 < argc) directory = argv[++i];
    else if (!argument.empty() && argument[0] != '-') endgames.push_back(argument);
    else return Usage();
  }
  if (endgames.empty()) return Usage();
  std::error_code error;
  std::filesystem::create_directories(directory, error);
  if (error) {
    std::cerr << directory << ": " << error.message() << "\n";
    return 1;
  }

  NalimovTablebases::RetrogradeSolver solver;
  solver.SetVerbose(true);
  int failures = 0;
  for (const std::string& name : endgames) {
    if (name.size() > 5 || BothSidesHavePawns(name)) {
      std::cerr << name << ": not supported (three or four pieces, pawns on one side only)\n";
      ++failures;
      continue;
    }
    auto start = std::chrono::steady_clock::now();
    if (!solver.WriteTables(name, directory)) {
      std::cerr << name << ": unknown endgame or the file could not be written\n";
      ++failures;
      continue;
    }
    std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
    std::cout << name << " done in " << seconds.count() << " s" << std::endl;
  }
  return failures == 0 ? 0 : 1;
}
