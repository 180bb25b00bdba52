// brask-tbgen [-o DIR] [-j THREADS] [--time-only] ENDGAME...: solves tables of three to five
// pieces by distance to mate and writes them as plain Nalimov files. An ENDGAME is a table name
// (krpkr) or a number of pieces (3, 4, 5) for all tables of that size. The tables a requested one
// leads into are read from DIR when they are there and made first when they are not.
// --time-only measures the solving of the named tables alone: what they lead into is read from DIR
// where it is there and is otherwise a stand-in that calls every position drawn; nothing is
// written.
#include <chrono>
#include <filesystem>
#include <iostream>
#include <string>
#include <thread>
#include <vector>

#include "bitbases/table_provider.h"
#include "bitbases/tablebase_descriptors.h"

namespace {

int Usage() {
  std::cerr << "usage: brask-tbgen [-o DIR] [-j THREADS] [--time-only] ENDGAME...\n"
               "  ENDGAME: a table name such as kqkr or krpkr, or 3, 4 or 5 for every table of\n"
               "  that many pieces\n";
  return 2;
}

void AddEndgames(const std::string& argument, std::vector<std::string>& endgames) {
  if (argument.size() == 1 && argument[0] >= '3' && argument[0] <= '5') {
    for (int id = 1; id <= NalimovTablebases::TABLE_COUNT; ++id)
      if (NalimovTablebases::Descriptors[id].name.size() == std::size_t(argument[0] - '0'))
        endgames.emplace_back(NalimovTablebases::Descriptors[id].name);
    return;
  }
  endgames.push_back(argument);
}

int TimeOnly(const std::string& name, const std::string& directory, int threads) {
  using namespace NalimovTablebases;
  std::optional<TableMaterial> material = TableMaterial::Of(name);
  if (!material) {
    std::cerr << name << ": not a table of three to five pieces\n";
    return 1;
  }
  std::vector<TableFiles> exits;
  for (const std::string& other : TablesAfterExits(*material)) {
    if (std::optional<TableFiles> loaded = LoadTableFiles(directory, other)) {
      exits.push_back(std::move(*loaded));
      continue;
    }
    std::cout << "stand-in for " << other << std::endl;
    TableFiles stand_in{other, TableIdOf(other), {}};
    for (int side = 0; side < 2; ++side)
      stand_in.bytes[side].assign(Descriptors[stand_in.id].entries[side], EntryByte::DRAW);
    exits.push_back(std::move(stand_in));
  }
  std::vector<const TableFiles*> views;
  for (const TableFiles& table : exits) views.push_back(&table);
  auto start = std::chrono::steady_clock::now();
  SolveTable(*material, views, {threads, &std::cout});
  std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
  std::cout << name << " solved in " << seconds.count() << " s, nothing written" << std::endl;
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  std::vector<std::string> endgames;
  std::string directory = ".";
  bool time_only = false;
  int threads = int(std::max(1u, std::thread::hardware_concurrency()));
  for (int i = 1; i < argc; ++i) {
    std::string argument = argv[i];
    if (argument == "-o" && i + 1 < argc)
      directory = argv[++i];
    else if (argument == "-j" && i + 1 < argc)
      threads = std::max(1, std::atoi(argv[++i]));
    else if (argument == "--time-only")
      time_only = true;
    else if (!argument.empty() && argument[0] != '-')
      AddEndgames(argument, endgames);
    else
      return Usage();
  }
  if (endgames.empty()) return Usage();
  std::error_code error;
  std::filesystem::create_directories(directory, error);
  if (error) {
    std::cerr << directory << ": " << error.message() << "\n";
    return 1;
  }

  if (time_only) {
    int failures = 0;
    for (const std::string& name : endgames) failures += TimeOnly(name, directory, threads);
    return failures == 0 ? 0 : 1;
  }

  NalimovTablebases::TableProvider provider(directory, {threads, &std::cout});
  int failures = 0;
  for (const std::string& name : endgames) {
    auto start = std::chrono::steady_clock::now();
    try {
      provider.Provide(name, true);
    } catch (const std::invalid_argument& e) {
      std::cerr << e.what() << "\n";
      ++failures;
      continue;
    } catch (const std::exception& e) {
      std::cerr << name << ": " << e.what() << "\n";
      return 1;
    }
    std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
    std::cout << name << " done in " << seconds.count() << " s" << std::endl;
  }
  return failures == 0 ? 0 : 1;
}
