#include "bitbases/table_files.h"

#include <unistd.h>

#include <cstdio>
#include <fstream>

#include "bitbases/portable_io.h"
#include "bitbases/table_material.h"
#include "bitbases/tablebase_descriptors.h"

namespace NalimovTablebases {

std::string TableFilePath(const std::string& directory, const std::string& name, int file_side) {
  std::string path = directory;
  if (!path.empty() && path.back() != '/') path += '/';
  return path + name + (file_side == 0 ? ".nbw" : ".nbb");
}

std::optional<TableFiles> LoadTableFiles(const std::string& directory, const std::string& name) {
  int id = TableIdOf(name);
  if (id == 0) return std::nullopt;
  TableFiles table{name, id, {}};
  int sides = Descriptors[id].IsSymmetric() ? 1 : 2;
  for (int side = 0; side < sides; ++side) {
    std::ifstream in(TableFilePath(directory, name, side), std::ios::binary | std::ios::ate);
    if (!in) return std::nullopt;
    std::uint64_t expected = Descriptors[id].entries[side];
    if (std::uint64_t(in.tellg()) != expected) return std::nullopt;
    in.seekg(0);
    table.bytes[side].resize(expected);
    if (!in.read(reinterpret_cast<char*>(table.bytes[side].data()), std::streamsize(expected)))
      return std::nullopt;
  }
  return table;
}

void WriteTableFiles(const std::string& directory, const TableFiles& table) {
  int sides = Descriptors[table.id].IsSymmetric() ? 1 : 2;
  for (int side = 0; side < sides; ++side) {
    std::string path = TableFilePath(directory, table.name, side);
    std::string temporary = path + ".part" + std::to_string(::getpid());
    const std::vector<std::int8_t>& bytes = table.bytes[side];
    try {
      BraskPortableIO::WriteFile(temporary, reinterpret_cast<const std::uint8_t*>(bytes.data()),
                                 bytes.size());
    } catch (...) {
      std::remove(temporary.c_str());
      throw;
    }
    if (std::rename(temporary.c_str(), path.c_str()) != 0) {
      std::remove(temporary.c_str());
      throw BraskPortableIO::IOException("Could not rename " + temporary + " to " + path);
    }
  }
}

}  // namespace NalimovTablebases
