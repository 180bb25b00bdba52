#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>

#include "bitbases/retrograde_solver.h"
#include "bitbases/tablebases.h"
#include "chess/basic.h"
#include "support/datacomp_writer.h"
#include "support/temp_directory.h"

using namespace NalimovTablebases;

namespace {

// One solver for the whole suite: each endgame is solved once.
RetrogradeSolver& Solver() {
  static RetrogradeSolver solver;
  return solver;
}

int LongestWin(const SolvedEndgame& endgame) {
  int longest = 0;
  for (std::int16_t code : endgame.results)
    if (PlyResult(code).IsWin()) longest = std::max(longest, PlyResult(code).Moves());
  return longest;
}

std::vector<std::uint8_t> ReadAll(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

// The score a probe should give for a solved result.
int ExpectedScore(PlyResult result) {
  if (result.IsDraw()) return 0;
  return result.IsWin() ? 32767 - 2 * result.Moves() : -(32767 - 2 * result.Moves());
}

BraskTablebases::TablebasePosition ToProbe(const SolvedEndgame& endgame, const int* squares,
                                           int side) {
  BraskTablebases::TablebasePosition p{};
  p.side = side;
  int* lists[2] = {p.white, p.black};
  for (int i = 0; i < endgame.material.Count(); ++i) {
    int colour = endgame.material.colour[i], type = endgame.material.type[i];
    if (type == KING) {
      lists[colour][15] = squares[i];
      continue;
    }
    int& count = p.counts[colour * 5 + type - 1];
    lists[colour][3 * (type - 1) + count++] = squares[i];
  }
  return p;
}

// Probes every legal position of the endgame and counts answers that differ from the solver.
int ProbeMismatches(const SolvedEndgame& endgame, int* mated_positions) {
  int mismatches = 0, squares[4], side;
  for (std::uint64_t state = 0; state < endgame.results.size(); ++state) {
    PlyResult result(endgame.results[state]);
    if (result.IsIllegal()) continue;
    endgame.SquaresOf(state, squares, &side);
    int score = 1;
    int status = BraskTablebases::ProbeTablebase(ToProbe(endgame, squares, side), &score);
    mismatches += status != BraskTablebases::TB_FOUND || score != ExpectedScore(result);
    if (result.IsLoss() && result.Plies() == 0) {
      ++*mated_positions;
      mismatches += score != -32767;
    }
  }
  return mismatches;
}

}  // namespace

TEST(RetrogradeSolver, LongestMatesOfThreePieceEndings) {
  EXPECT_EQ(LongestWin(Solver().Solve("kqk")), 10);
  EXPECT_EQ(LongestWin(Solver().Solve("krk")), 16);
  EXPECT_EQ(LongestWin(Solver().Solve("kbk")), 0);
}

TEST(RetrogradeSolver, KingAndPawnAgainstKing) {
  const SolvedEndgame& kpk = Solver().Solve("kpk");
  int legal = 0, pawn_side_wins = 0;
  for (std::uint64_t state = 0; state < kpk.results.size(); ++state) {
    PlyResult result(kpk.results[state]);
    if (result.IsIllegal()) continue;
    ++legal;
    bool white_on_move = state < kpk.results.size() / 2;
    pawn_side_wins += white_on_move ? result.IsWin() : result.IsLoss();
  }
  EXPECT_EQ(legal, 331352);
  EXPECT_EQ(pawn_side_wins, 222564);
}

TEST(RetrogradeSolver, FileBytes) {
  EXPECT_EQ(PlyResult::Draw().FileByte(), 0);
  EXPECT_EQ(PlyResult::WinIn(1).FileByte(), 126);
  EXPECT_EQ(PlyResult::WinIn(19).FileByte(), 117);
  EXPECT_EQ(PlyResult::LossIn(0).FileByte(), std::uint8_t(-126));
  EXPECT_EQ(PlyResult::LossIn(18).FileByte(), std::uint8_t(-117));
  EXPECT_EQ(PlyResult::Illegal().FileByte(), 127);
}

TEST(RetrogradeSolver, ReaderAnswersWhatTheSolverFoundFromPlainAndCompressedFiles) {
  TempDirectory plain, compressed;
  for (std::string name : {"kqk", "krk", "kpk"}) {
    ASSERT_TRUE(Solver().WriteTables(name, plain.Path()));
    for (std::string ext : {".nbw", ".nbb"}) {
      std::vector<std::uint8_t> bytes = ReadAll(plain.File(name + ext));
      WriteBytes(compressed.File(name + ext + ".emd"), CompressTablebase(bytes));
    }
  }
  for (const TempDirectory* dir : {&plain, &compressed}) {
    ASSERT_EQ(BraskTablebases::InitTablebases(dir->Path(), 1 << 20), 3);
    for (std::string name : {"kqk", "krk", "kpk"}) {
      int mated = 0;
      EXPECT_EQ(ProbeMismatches(Solver().Solve(name), &mated), 0) << name;
      if (name != "kpk") EXPECT_GT(mated, 0) << name;  // a lone pawn never mates
    }
  }
}
