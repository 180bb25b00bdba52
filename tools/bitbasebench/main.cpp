// brask-bitbasebench [PROBES]: bitbase probes per second through the search's probe, for king and
// pawn against king (the built-in table) and for a generic four-piece bitbase (krp_kr, written
// with a synthetic content into a temporary directory). Warm: a few positions probed over and
// over, all in cache. Cold: positions drawn at random over the whole table, with a sweep through
// a large buffer between rounds so that no probe finds its line in cache.
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <random>
#include <string>
#include <vector>

#include "bitbases/bit_array.h"
#include "bitbases/generic_bitbase_index.h"
#include "bitbases/probe_generic_bitbases.h"
#include "chess/board.h"

namespace {

using namespace BraskBitbases;

constexpr int WARM_POSITIONS = 8;
constexpr int COLD_POSITIONS = 4096;
constexpr std::size_t CACHE_FLUSH_BYTES = 64 << 20;

// Random legal placements of the given white and black pieces, kings apart, side not in check
// of the other side's move.
std::vector<Board> RandomBoards(const std::vector<int>& pieces, int count,
                                std::mt19937_64& random) {
  std::vector<Board> boards;
  boards.reserve(std::size_t(count));
  while (int(boards.size()) < count) {
    std::int8_t squares[64] = {};
    const auto place = [&](int piece) {
      for (;;) {
        const int square = int(random() % 64);
        const bool pawn_rank = square >= 8 && square < 56;
        if (squares[square] == 0 && (std::abs(piece) != PAWN || pawn_rank)) {
          squares[square] = std::int8_t(piece);
          return;
        }
      }
    };
    place(KING);
    place(-KING);
    for (int piece : pieces) place(piece);
    Board board;
    if (board.Setup(squares, int(random() % 2), 0, 0) && board.IsValid()) boards.push_back(board);
  }
  return boards;
}

void FlushCaches() {
  static std::vector<char> sweep(CACHE_FLUSH_BYTES, 1);
  volatile char sink = 0;
  for (std::size_t i = 0; i < sweep.size(); i += 64) sink = char(sink + sweep[i]);
}

// Probes per second over `rounds` passes through the boards.
double Measure(const std::vector<Board>& boards, long probes, bool cold, long* found) {
  using Clock = std::chrono::steady_clock;
  const long rounds = std::max<long>(1, probes / long(boards.size()));
  double seconds = 0;
  int score = 0;
  for (long round = 0; round < rounds; ++round) {
    if (cold) FlushCaches();
    const auto start = Clock::now();
    for (const Board& board : boards) *found += ProbeBitbases(board, &score) == BITBASE_FOUND;
    seconds += std::chrono::duration<double>(Clock::now() - start).count();
  }
  return double(rounds) * double(boards.size()) / seconds;
}

// A krp_kr array whose entries follow the squares, in runs and scattered, like a real base.
void WriteSyntheticBitbase(const std::string& path) {
  const std::uint32_t bits = ClassBits(5, 1);
  BitArray array(bits);
  std::mt19937_64 random(7);
  for (std::uint32_t start = 0; start < bits; start += 4096 + std::uint32_t(random() % 65536)) {
    const std::uint32_t length = 2 * std::uint32_t(random() % 2048);
    array.SetRange(start, std::min(bits - 1, start + length), true);
  }
  for (int i = 0; i < 2000000; ++i) array.Set2(std::uint32_t(random() % (bits / 2)) * 2, 3);
  array.Save(path);
}

void Report(const char* name, const std::vector<int>& pieces, long probes,
            std::mt19937_64& random) {
  for (bool cold : {false, true}) {
    const std::vector<Board> boards =
        RandomBoards(pieces, cold ? COLD_POSITIONS : WARM_POSITIONS, random);
    long found = 0;
    const double rate = Measure(boards, probes, cold, &found);
    std::cout << name << (cold ? " cold: " : " warm: ") << long(rate) << " probes/s (" << found
              << " answered)\n";
  }
}

}  // namespace

int main(int argc, char** argv) {
  const long probes = argc > 1 ? std::atol(argv[1]) : 4000000;
  const std::filesystem::path directory =
      std::filesystem::temp_directory_path() / ("brask-bitbasebench-" + std::to_string(::getpid()));
  std::filesystem::create_directories(directory);
  WriteSyntheticBitbase((directory / "krp_kr.bgb").string());
  std::vector<PieceCounters> endgames = EnumerateEndgamesUpTo(3);
  PieceCounters krp_kr{};
  krp_kr[CounterIndex(WHITE, ROOK)] = krp_kr[CounterIndex(WHITE, PAWN)] = 1;
  krp_kr[CounterIndex(BLACK, ROOK)] = 1;
  endgames.push_back(krp_kr);
  BuildHandlerTable(endgames, 0, directory.string());
  std::cout << "krp_kr in memory: " << GetTotalMemoryUsage() << " bytes\n";
  std::filesystem::remove_all(directory);

  std::mt19937_64 random(1);
  Report("kp_k  ", {PAWN}, probes, random);
  Report("krp_kr", {ROOK, PAWN, -ROOK}, probes, random);
  Report("6 pieces (rejected)", {ROOK, PAWN, -ROOK, -PAWN}, probes, random);
  return 0;
}
