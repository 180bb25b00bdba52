// brask-tbbench DIR [PROBES]: probes per second of the tablebases in DIR, from a warm cache and
// with a cache of one block, where nearly every probe reads and decodes a block of its file.
#include <chrono>
#include <iostream>
#include <random>
#include <string>
#include <vector>

#include "bitbases/nalimov_index.h"
#include "bitbases/tablebases.h"

namespace {

using BraskTablebases::TablebasePosition;

// Random placements of kqk, krk, kpk, kbnk and kqkr, pieces on distinct squares.
std::vector<TablebasePosition> RandomPositions(int count) {
  const std::vector<std::vector<std::pair<int, int>>> materials = {
      {{0, 5}}, {{0, 4}}, {{0, 1}}, {{0, 3}, {0, 2}}, {{0, 5}, {1, 4}}};  // (colour, type)
  std::mt19937_64 random(1);
  std::vector<TablebasePosition> positions;
  while (int(positions.size()) < count) {
    const auto& material = materials[random() % materials.size()];
    TablebasePosition p{};
    p.side = int(random() % 2);
    std::uint64_t used = 0;
    auto place = [&](bool pawn) {
      int square;
      do square = int(random() % 64);
      while ((used >> square & 1) || (pawn && (square < 8 || square > 55)));
      used |= std::uint64_t{1} << square;
      return square;
    };
    p.white[NalimovTablebases::KING_SLOT] = place(false);
    p.black[NalimovTablebases::KING_SLOT] = place(false);
    for (auto [colour, type] : material) {
      int* list = colour == 0 ? p.white : p.black;
      list[NalimovTablebases::FirstSlot(type)] = place(type == 1);
      ++p.counts[colour * 5 + type - 1];
    }
    positions.push_back(p);
  }
  return positions;
}

double ProbesPerSecond(const std::vector<TablebasePosition>& positions, int* found) {
  int score;
  *found = 0;
  auto start = std::chrono::steady_clock::now();
  for (const TablebasePosition& p : positions)
    *found += BraskTablebases::ProbeTablebase(p, &score) == BraskTablebases::TB_FOUND;
  std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
  return double(positions.size()) / seconds.count();
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) {
    std::cerr << "usage: brask-tbbench DIR [PROBES]\n";
    return 2;
  }
  int probes = argc > 2 ? std::stoi(argv[2]) : 1000000;
  std::vector<TablebasePosition> positions = RandomPositions(probes);
  try {
    for (std::uint64_t cache : {std::uint64_t{256} << 20, std::uint64_t{8260}}) {
      BraskTablebases::InitTablebases(argv[1], cache);
      int found;
      if (cache > 8260) ProbesPerSecond(positions, &found);  // fill the cache first
      double rate = ProbesPerSecond(positions, &found);
      std::cout << (cache > 8260 ? "warm cache:  " : "one block:   ") << rate << " probes/s ("
                << found << " of " << positions.size() << " found)\n";
    }
  } catch (const BraskTablebases::TB_Exception& e) {
    std::cerr << e.what() << "\n";
    return 1;
  }
  return 0;
}
