// The pieces of a Nalimov table in the order the solver keeps them, and the way from pieces on
// squares to a table and an entry: a position after a capture or a promotion may belong to a
// table that is stored with the colours reversed.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace NalimovTablebases {

constexpr int MAX_TABLE_PIECES = 5;

// White's king, Black's king, then White's pieces and Black's as the name lists them.
struct TableMaterial {
  std::string name;
  int id = 0;
  int count = 0;
  std::array<int, MAX_TABLE_PIECES> colour{};
  std::array<int, MAX_TABLE_PIECES> type{};

  // Empty for a name that is not in the table list.
  static std::optional<TableMaterial> Of(std::string_view name);

  bool Symmetric() const;
  bool HasPawns() const;
  bool PawnsOnBothSides() const;
};

// Where a position is found: the table, the file (side on move in the stored colours) and the
// entry. index is NO_INDEX when the position has no entry.
struct TableEntry {
  int id = 0;
  int file_side = 0;
  std::uint64_t index = 0;
};

// The table name of the pieces with White's first, whether or not the list has it.
std::string MaterialName(const int* colour, const int* type, int count);

// The table that holds the pieces, and whether it holds them with the colours reversed.
struct TableOfMaterial {
  int id = 0;
  bool reversed = false;
};
TableOfMaterial FindTable(const int* colour, const int* type, int count);

// The entry of pieces given as parallel arrays (kings among them) in a table found for them.
TableEntry EntryIn(TableOfMaterial table, const int* colour, const int* type, const int* square,
                   int count, int side);

int TableIdOf(std::string_view name);

}  // namespace NalimovTablebases
