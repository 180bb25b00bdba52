// Solves endgames of three and four pieces by distance to mate, backwards from the mates, and
// writes the results as plain tablebase files. Captures and promotions lead into smaller
// endgames, which are solved first and kept in memory.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace NalimovTablebases {

// A result for the side on move, in plies: a win or a loss at a distance, a draw, or no position.
class PlyResult {
 public:
  static constexpr std::int16_t ILLEGAL = INT16_MIN;

  static PlyResult WinIn(int plies) { return PlyResult(std::int16_t(plies)); }
  static PlyResult LossIn(int plies) { return PlyResult(std::int16_t(-plies - 1)); }
  static PlyResult Draw() { return PlyResult(0); }
  static PlyResult Illegal() { return PlyResult(ILLEGAL); }

  bool IsIllegal() const { return code_ == ILLEGAL; }
  bool IsWin() const { return code_ > 0; }
  bool IsLoss() const { return code_ < 0 && code_ != ILLEGAL; }
  bool IsDraw() const { return code_ == 0; }
  int Plies() const { return code_ > 0 ? code_ : -code_ - 1; }
  // Moves to mate (for the winner) or to being mated (0 when mated now).
  int Moves() const { return IsWin() ? (Plies() + 1) / 2 : Plies() / 2; }
  // The byte of a plain table file.
  std::uint8_t FileByte() const;

  explicit PlyResult(std::int16_t code = 0) : code_(code) {}
  std::int16_t Code() const { return code_; }

 private:
  std::int16_t code_;
};

// The pieces of an endgame in a fixed order: the white king, the black king, then the others as
// the name lists them. A position of it is the squares of these pieces and the side on move.
struct SolverMaterial {
  std::string name;
  std::vector<int> colour;
  std::vector<int> type;

  static SolverMaterial FromName(const std::string& name);
  int Count() const { return int(type.size()); }
};

class SolvedEndgame {
 public:
  SolverMaterial material;
  std::vector<std::int16_t> results;  // by DenseIndex

  std::uint64_t DenseIndex(const int* squares, int side) const;
  PlyResult At(const int* squares, int side) const {
    return PlyResult(results[DenseIndex(squares, side)]);
  }
  // Squares of the dense index.
  void SquaresOf(std::uint64_t dense, int* squares, int* side) const;
};

class RetrogradeSolver {
 public:
  // name as in the table list ("kqkr"); the endgames it leads into are solved too.
  const SolvedEndgame& Solve(const std::string& name);

  // Writes name.nbw and, unless both sides own the same pieces, name.nbb into directory. False
  // when a file cannot be written.
  bool WriteTables(const std::string& name, const std::string& directory);

  // Progress lines to standard output.
  void SetVerbose(bool verbose) { verbose_ = verbose; }

 private:
  PlyResult ResultAfterExit(const std::vector<int>& colours, const std::vector<int>& types,
                            const std::vector<int>& squares, int side);
  void SolveInto(SolvedEndgame& endgame);

  std::map<std::string, std::unique_ptr<SolvedEndgame>> solved_;
  bool verbose_ = false;
};

}  // namespace NalimovTablebases
