// Tables on demand for the generator: a table with pawns needs the tables its captures and
// promotions lead into, and those need theirs. What is already on disk is read; what is missing
// is solved and written, smallest first. Only the tables the next solve needs stay in memory.
#pragma once

#include <map>
#include <memory>
#include <set>
#include <string>

#include "bitbases/retrograde_solver.h"
#include "bitbases/table_files.h"

namespace NalimovTablebases {

class TableProvider {
 public:
  TableProvider(std::string directory, SolveOptions options)
      : directory_(std::move(directory)), options_(options) {}

  // The table, from the directory or solved and written there. fresh: solve it even when its
  // files exist, unless this provider made them (what it needs is still read when present). Throws
  // std::invalid_argument for a name that is not in the table list, std::runtime_error and
  // BraskPortableIO::IOException.
  std::shared_ptr<const TableFiles> Provide(const std::string& name, bool fresh = false);

 private:
  std::string directory_;
  SolveOptions options_;
  std::map<std::string, std::shared_ptr<const TableFiles>> held_;
  std::set<std::string> made_;
};

}  // namespace NalimovTablebases
