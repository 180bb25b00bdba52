#include "bitbases/table_provider.h"

#include <stdexcept>

namespace NalimovTablebases {

std::shared_ptr<const TableFiles> TableProvider::Provide(const std::string& name, bool fresh) {
  std::optional<TableMaterial> material = TableMaterial::Of(name);
  if (!material) throw std::invalid_argument(name + ": not a table of three to five pieces");
  if (!fresh || made_.count(name)) {
    if (auto held = held_.find(name); held != held_.end()) return held->second;
    if (std::optional<TableFiles> loaded = LoadTableFiles(directory_, name)) {
      auto table = std::make_shared<const TableFiles>(std::move(*loaded));
      held_[name] = table;
      return table;
    }
  }
  std::vector<std::string> needed = TablesAfterExits(*material);
  // Solving one of them may let go of another that was read before; the second round reads it
  // back from its file.
  for (const std::string& other : needed) Provide(other);
  std::vector<std::shared_ptr<const TableFiles>> exits;
  std::vector<const TableFiles*> views;
  for (const std::string& other : needed) {
    exits.push_back(Provide(other));
    views.push_back(exits.back().get());
  }
  auto table = std::make_shared<const TableFiles>(SolveTable(*material, views, options_));
  exits.clear();
  held_.clear();
  WriteTableFiles(directory_, *table);
  made_.insert(name);
  held_[name] = table;
  return table;
}

}  // namespace NalimovTablebases
