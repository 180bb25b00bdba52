// Solves a table by distance to mate, backwards from the mates: every position is counted once
// forward (its moves, and the results of those that leave the table by a capture or a
// promotion), then results spread ply by ply from the positions known to their predecessors.
// En-passant rights are positions of their own, kept beside the table, since its files hold
// none of them.
#pragma once

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

}  // namespace NalimovTablebases
