// The Nalimov tablebase reader: finds the files of each table on a list of directories, checks
// them, and reads single entries through the block cache. A file that turns out broken is
// reported and left out; nothing a file holds can end the process or read out of bounds.
#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "bitbases/block_cache.h"
#include "bitbases/datacomp_file.h"
#include "bitbases/material_lookup.h"
#include "bitbases/tablebase_descriptors.h"
#include "shell/brask_exception.h"

namespace NalimovTablebases {

class NalimovException : public BraskException {
 public:
  using BraskException::BraskException;
};

// Entry values: 0 a draw, c + 32640 or c - 32640 for a stored byte c, and this for no result.
constexpr int NO_RESULT = 32767;
constexpr int ENTRY_VALUE_OFFSET = 32640;

inline constexpr const char* NO_TABLES_LOG =
    "Error! Could not initialize tablebases!\nIs the path correct?";
inline constexpr const char* NO_TABLES_TEXT = "Could not open tablebases. Is the path correct?";
inline constexpr const char* SMALL_CACHE_LOG =
    "Error! Could not initialize tablebases!\nIncrease the cache size.";
inline constexpr const char* SMALL_CACHE_TEXT =
    "Increase the cache size, because it is too small.";

class Reader {
 public:
  // Registers the tables found on paths (separated by ',', ';' or ':'), replacing all earlier
  // registrations, and sets a cache of cache_bytes. Returns the largest number of pieces found.
  // Throws NalimovException when no table is found or the cache is too small.
  int Initialize(const std::string& paths, std::size_t cache_bytes);

  // The table of a material: 0 none, -id for the table with the colours reversed.
  int Find(const PieceCounts& counts) const { return lookup_.Find(counts); }
  bool IsRegistered(int id, int side) const { return Part(id, side).registered; }
  // The entry value, or NO_RESULT.
  int ReadEntry(int id, int side, std::uint64_t index);

  std::size_t CacheEntries() const { return cache_.Entries(); }
  int RegisteredFiles() const;
  const std::string& FileName(int id, int side) const { return Part(id, side).file_name; }

 private:
  struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };
  using File = std::unique_ptr<std::FILE, FileCloser>;

  // One table and side on move: one file.
  struct TablePart {
    bool registered = false;
    std::string file_name;
    File file;
    std::unique_ptr<DatacompDecoderInfo> decoder;  // null for a plain file
  };

  TablePart& Part(int id, int side) { return parts_[std::size_t(id)][Side(id, side)]; }
  const TablePart& Part(int id, int side) const { return parts_[std::size_t(id)][Side(id, side)]; }
  static std::size_t Side(int id, int side) { return Descriptors[id].IsSymmetric() ? 0 : side; }

  void Forget();
  void CloseFiles();
  bool Register(const std::string& directory, int id, int side);
  bool CheckCompressedFile(std::FILE* file, const std::string& name, std::uint64_t length,
                           std::uint64_t expected, TablePart& part);
  bool OpenPart(TablePart& part);
  bool FillBlock(int id, int side, std::uint32_t block, std::uint8_t* out);
  void MarkAbsent(TablePart& part);

  MaterialLookup lookup_;
  std::vector<std::array<TablePart, 2>> parts_ = std::vector<std::array<TablePart, 2>>(TABLE_COUNT + 1);
  BlockCache cache_;
  std::vector<std::uint8_t> decode_buffer_;
};

// The length of a table part as the descriptor lists it.
inline std::uint64_t EntriesOf(int id, int side) { return Descriptors[id].entries[side]; }

}  // namespace NalimovTablebases
