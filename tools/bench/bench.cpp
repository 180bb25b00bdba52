// brask-bench [DEPTH] [NAME=VALUE;...]: searches a fixed set of positions to a fixed depth with the default hash
// sizes and prints nodes, time and speed per position and in total. The node count is the
// same on every run of the same program, so it fingerprints the search; it stands alone on the
// last line. Settings changed on the command line show what a technique of the search costs or
// saves.
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <iostream>
#include <string>

#include "bench_positions.h"
#include "chess/user_board.h"
#include "search/hash.h"
#include "search/optimize_interface.h"
#include "search/search_serial.h"

namespace {
constexpr int DEFAULT_DEPTH = 6;

struct Totals {
  std::uint64_t nodes = 0;
  double seconds = 0.0;
};

double NodesPerSecond(std::uint64_t nodes, double seconds) {
  return seconds > 0.0 ? double(nodes) / seconds : 0.0;
}

// Every position starts from empty tables, so that no result depends on the ones before it.
void ClearTables() {
  TRANSPOSITION_TABLE.Clear();
  PAWN_HASH_TABLE.Clear();
  EVALUATION_HASH_TABLE.Clear();
}

void SearchPosition(SerialSearch& search, int index, const char* fen, int depth, Totals& totals) {
  UserBoard game;
  game.SetFEN(fen);
  ClearTables();
  SearchRequest request;
  request.max_depth = depth;
  const auto start = std::chrono::steady_clock::now();
  search.SearchWithoutHost(request, game);
  const double seconds =
      std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  totals.nodes += search.nodes;
  totals.seconds += seconds;
  const std::string best = search.best_line.empty() ? "-" : search.best_line.front().text;
  std::printf("%2d  %-8s %6d  %12llu nodes  %8.3f s  %10.0f nps\n", index + 1, best.c_str(),
              search.score, static_cast<unsigned long long>(search.nodes), seconds,
              NodesPerSecond(search.nodes, seconds));
}
// Changes the search settings by "name=value" pairs separated by ";".
bool ApplySettings(const std::string& text) {
  try {
    OptimizeInterface::Settings settings;
    std::size_t start = 0;
    while (start < text.size()) {
      std::size_t stop = text.find(';', start);
      if (stop == std::string::npos) stop = text.size();
      const std::string pair = text.substr(start, stop - start);
      const std::size_t equals = pair.find('=');
      if (equals == std::string::npos) {
        std::cerr << "not a setting: " << pair << "\n";
        return false;
      }
      settings.Set(pair.substr(0, equals), pair.substr(equals + 1));
      start = stop + 1;
    }
    settings.Apply();
    return true;
  } catch (const std::exception& error) {
    std::cerr << error.what() << "\n";
    return false;
  }
}
}  // namespace

int main(int argc, char** argv) {
  int depth = DEFAULT_DEPTH;
  if (argc > 1) {
    depth = std::atoi(argv[1]);
    if (depth < 1 || depth > 30) {
      std::cerr << "usage: brask-bench [DEPTH [NAME=VALUE;...]]   (DEPTH from 1 to 30, default "
                << DEFAULT_DEPTH << ")\n";
      return 1;
    }
  }
  if (argc > 2 && !ApplySettings(argv[2])) return 1;
  TRANSPOSITION_TABLE.Resize(DEFAULT_TRANSPOSITION_BYTES);
  PAWN_HASH_TABLE.Resize(DEFAULT_PAWN_HASH_BYTES);
  EVALUATION_HASH_TABLE.Resize(DEFAULT_EVALUATION_HASH_BYTES);

  SerialSearch search;
  Totals totals;
  for (std::size_t i = 0; i < BenchPositions::FENS.size(); ++i) {
    SearchPosition(search, int(i), BenchPositions::FENS[i], depth, totals);
  }
  std::printf("depth %d, %zu positions: %llu nodes in %.3f s, %.0f nps\n", depth,
              BenchPositions::FENS.size(), static_cast<unsigned long long>(totals.nodes),
              totals.seconds, NodesPerSecond(totals.nodes, totals.seconds));
  std::printf("total nodes: %llu\n", static_cast<unsigned long long>(totals.nodes));
  return 0;
}
