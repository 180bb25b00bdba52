// Solves a table by distance to mate, backwards from the mates: every position is counted once
// forward (its moves, and the results of those that leave the table by a capture or a
// promotion), then results spread ply by ply from the positions known to their predecessors.
// En-passant rights are positions of their own, kept beside the table, since its files hold
// none of them.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "bitbases/table_files.h"
#include "bitbases/table_material.h"

namespace NalimovTablebases {

// The tables that positions of this one reach by a capture or a promotion.
std::vector<std::string> TablesAfterExits(const TableMaterial& material);

struct SolveOptions {
  int threads = 1;
  std::ostream* progress = nullptr;
};

// exits: every table of TablesAfterExits. Throws std::runtime_error when one is missing or
// answers nothing for a position that a legal move reaches.
TableFiles SolveTable(const TableMaterial& material, const std::vector<const TableFiles*>& exits,
                      const SolveOptions& options);

// The result of a position for the side on move, as a solved table gives it.
class PlyResult {
 public:
  explicit PlyResult(std::int8_t entry) : entry_(entry) {}
  bool IsIllegal() const { return entry_ == EntryByte::ILLEGAL; }
  bool IsDraw() const { return entry_ == EntryByte::DRAW; }
  bool IsWin() const { return EntryByte::IsWin(entry_); }
  bool IsLoss() const { return EntryByte::IsLoss(entry_); }
  int Plies() const { return EntryByte::Plies(entry_); }
  int Moves() const { return EntryByte::Moves(entry_); }

 private:
  std::int8_t entry_;
};

// A solved table, asked by the squares of its pieces in the order of its material (White's
// king, Black's king, then the others as the name lists them).
struct SolvedEndgame {
  TableMaterial material;
  std::shared_ptr<const TableFiles> files;

  // Illegal for pieces that share a square and for positions the table does not hold.
  PlyResult At(const int* squares, int side) const;
};

// Solves tables in memory, each once, with the tables they lead into; for tests and tools that
// want results without files.
class RetrogradeSolver {
 public:
  explicit RetrogradeSolver(SolveOptions options = {}) : options_(options) {}
  // name as in the table list ("kqkr"). Throws std::invalid_argument for any other.
  const SolvedEndgame& Solve(const std::string& name);

 private:
  SolveOptions options_;
  std::map<std::string, SolvedEndgame> solved_;
};

}  // namespace NalimovTablebases
