// The bytes of a table's files in memory, as the solver makes them and reads them back: one
// signed byte per entry, the distance to mate counted in moves.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace NalimovTablebases {

// The entry byte of a result for the side on move. Distances inside the solver are plies; a win
// always takes an odd number of them and a loss an even one, so moves say as much.
namespace EntryByte {
constexpr std::int8_t DRAW = 0;
constexpr std::int8_t ILLEGAL = 127;  // no position, or not one this table holds
constexpr int LONGEST_WIN_PLIES = 2 * 126 - 1;
constexpr int LONGEST_LOSS_PLIES = 2 * 125;

constexpr std::int8_t Win(int plies) { return std::int8_t(127 - (plies + 1) / 2); }
constexpr std::int8_t Loss(int plies) { return std::int8_t(plies / 2 - 126); }
constexpr bool IsWin(std::int8_t entry) { return entry > 0 && entry != ILLEGAL; }
constexpr bool IsLoss(std::int8_t entry) { return entry < 0 && entry >= -126; }
constexpr int Plies(std::int8_t entry) {
  return IsWin(entry) ? 2 * (127 - entry) - 1 : IsLoss(entry) ? 2 * (entry + 126) : 0;
}
// Moves to mate for the winner, or to being mated for the loser.
constexpr int Moves(std::int8_t entry) { return (Plies(entry) + 1) / 2; }
}  // namespace EntryByte

struct TableFiles {
  std::string name;
  int id = 0;
  std::vector<std::int8_t> bytes[2];  // by file side; a symmetric table has only White's

  std::int8_t At(int file_side, std::uint64_t index) const {
    const std::vector<std::int8_t>& file = bytes[file_side];
    return index < file.size() ? file[index] : EntryByte::ILLEGAL;
  }
};

// The path of a table's file: directory, name, ".nbw" or ".nbb".
std::string TableFilePath(const std::string& directory, const std::string& name, int file_side);

// Both files of the table from the directory, if they are there with the right lengths.
std::optional<TableFiles> LoadTableFiles(const std::string& directory, const std::string& name);

// Writes each file under a temporary name and renames it when it is complete, so that an
// interrupted run never leaves a file that a later one would take for a finished table. Throws
// BraskPortableIO::IOException.
void WriteTableFiles(const std::string& directory, const TableFiles& table);

}  // namespace NalimovTablebases
