#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>

#include "bitbases/retrograde_solver.h"
#include "bitbases/tablebases.h"
#include "chess/basic.h"
#include "chess/board.h"
#include "support/datacomp_writer.h"
#include "support/temporary_directory.h"

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
  TemporaryDirectory plain, compressed;
  for (std::string name : {"kqk", "krk", "kpk"}) {
    ASSERT_TRUE(Solver().WriteTables(name, plain.Path()));
    for (std::string ext : {".nbw", ".nbb"}) {
      std::vector<std::uint8_t> bytes = ReadAll(plain.File(name + ext));
      WriteBytes(compressed.File(name + ext + ".emd"), CompressTablebase(bytes));
    }
  }
  for (const TemporaryDirectory* dir : {&plain, &compressed}) {
    ASSERT_EQ(BraskTablebases::InitTablebases(dir->Path(), 1 << 20), 3);
    for (std::string name : {"kqk", "krk", "kpk"}) {
      int mated = 0;
      EXPECT_EQ(ProbeMismatches(Solver().Solve(name), &mated), 0) << name;
      if (name != "kpk") {  // a lone pawn never mates
        EXPECT_GT(mated, 0) << name;
      }
    }
  }
}

namespace {

Board MakeBoard(std::initializer_list<std::pair<int, int>> pieces, int side, int castling = 0) {
  std::int8_t squares[64] = {};
  for (auto [square, piece] : pieces) squares[square] = std::int8_t(piece);
  Board board;
  board.Setup(squares, side, 0, castling);
  return board;
}

}  // namespace

TEST(RetrogradeSolver, ProbesOfBoards) {
  TemporaryDirectory dir;
  for (std::string name : {"kqk", "kpk"}) ASSERT_TRUE(Solver().WriteTables(name, dir.Path()));
  ASSERT_EQ(BraskTablebases::InitTablebases(dir.Path(), 1 << 16), 3);
  int score = 0;
  // Mated: white queen g7 protected by the king on f6, black king h8.
  Board mated = MakeBoard({{F6, KING}, {G7, QUEEN}, {H8, -KING}}, BLACK);
  EXPECT_EQ(BraskTablebases::ProbeTablebase(mated, &score), BraskTablebases::TB_FOUND);
  EXPECT_EQ(score, -32767);
  EXPECT_FALSE(BraskTablebases::TablebaseMateIsFar(mated));
  // The same with the colours reversed reaches kqk through its negative id.
  Board reversed = MakeBoard({{F3, -KING}, {G2, -QUEEN}, {H1, KING}}, WHITE);
  EXPECT_EQ(BraskTablebases::ProbeTablebase(reversed, &score), BraskTablebases::TB_FOUND);
  EXPECT_EQ(score, -32767);
  // A black pawn: kpk with the lists reversed and the ranks inverted.
  Board black_pawn = MakeBoard({{E6, -KING}, {E5, -PAWN}, {E8, KING}}, WHITE);
  Board white_pawn = MakeBoard({{E3, KING}, {E4, PAWN}, {E1, -KING}}, BLACK);
  int mirrored = 0;
  ASSERT_EQ(BraskTablebases::ProbeTablebase(black_pawn, &score), BraskTablebases::TB_FOUND);
  ASSERT_EQ(BraskTablebases::ProbeTablebase(white_pawn, &mirrored), BraskTablebases::TB_FOUND);
  EXPECT_EQ(score, mirrored);
  EXPECT_LT(score, 0);  // the pawn wins, whoever moves
  // No table, or rights that the tables know nothing of.
  Board castling = MakeBoard({{E1, KING}, {H1, ROOK}, {E8, -KING}}, WHITE, WHITE_SHORT);
  EXPECT_EQ(BraskTablebases::ProbeTablebase(castling, &score), BraskTablebases::TB_NOT_AVAILABLE);
  Board bare = MakeBoard({{E1, KING}, {E8, -KING}}, WHITE);
  EXPECT_EQ(BraskTablebases::ProbeTablebase(bare, &score), BraskTablebases::TB_NOT_AVAILABLE);
  Board queens = MakeBoard({{E1, KING}, {A2, QUEEN}, {B2, QUEEN}, {C2, QUEEN}, {E8, -KING}}, WHITE);
  EXPECT_EQ(BraskTablebases::ProbeTablebase(queens, &score), BraskTablebases::TB_NOT_AVAILABLE);
  Board rook = MakeBoard({{E1, KING}, {A2, ROOK}, {E8, -KING}}, WHITE);  // krk not loaded
  EXPECT_EQ(BraskTablebases::ProbeTablebase(rook, &score), BraskTablebases::TB_NOT_AVAILABLE);
  // A long way from mate: the deepest loss of krk, 32 plies.
  ASSERT_TRUE(Solver().WriteTables("krk", dir.Path()));
  ASSERT_EQ(BraskTablebases::InitTablebases(dir.Path(), 1 << 16), 3);
  const SolvedEndgame& krk = Solver().Solve("krk");
  std::uint64_t deepest = 0;
  while (!PlyResult(krk.results[deepest]).IsLoss() || PlyResult(krk.results[deepest]).Plies() != 32)
    ++deepest;
  int squares[3], side;
  krk.SquaresOf(deepest, squares, &side);
  Board far = MakeBoard({{squares[0], KING}, {squares[1], -KING}, {squares[2], ROOK}}, side);
  EXPECT_TRUE(BraskTablebases::TablebaseMateIsFar(far));
}
