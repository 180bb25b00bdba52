#include <stdexcept>

#include "bitbases/retrograde_solver.h"

namespace NalimovTablebases {

PlyResult SolvedEndgame::At(const int* squares, int side) const {
  for (int i = 0; i < material.count; ++i)
    for (int j = 0; j < i; ++j)
      if (squares[i] == squares[j]) return PlyResult(EntryByte::ILLEGAL);
  TableEntry entry = EntryIn({material.id, false}, material.colour.data(), material.type.data(),
                             squares, material.count, side);
  return PlyResult(files->At(entry.file_side, entry.index));
}

const SolvedEndgame& RetrogradeSolver::Solve(const std::string& name) {
  if (auto found = solved_.find(name); found != solved_.end()) return found->second;
  std::optional<TableMaterial> material = TableMaterial::Of(name);
  if (!material) throw std::invalid_argument(name + ": not a table of three to five pieces");
  std::vector<const TableFiles*> exits;
  for (const std::string& other : TablesAfterExits(*material))
    exits.push_back(Solve(other).files.get());
  auto files = std::make_shared<const TableFiles>(SolveTable(*material, exits, options_));
  return solved_[name] = SolvedEndgame{*material, files};
}

}  // namespace NalimovTablebases
