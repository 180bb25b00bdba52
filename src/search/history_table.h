// The history heuristic: how often a quiet move (by piece, side, from and to) caused a cutoff,
// counted in tables that belong to bands of eight plies, so that the history of deep plies stays
// local to the subtree it was learned in.
#pragma once

#include <cstdint>
#include <memory>

#include "chess/basic.h"

class HistoryTable {
 public:
  static constexpr int TABLES = 11;  // the last one is never used; it keeps the block's size
  static constexpr int SLOTS = 12 * 4096;

  HistoryTable();

  // The count of the move for the side at the ply; above 65535 (two tables summed) it saturates
  // the sort value, which the caller tests with IsSaturated.
  std::uint32_t Value(Move move, int side, int ply) const;
  void Update(Move move, int side, int distance, int ply);
  // Entering a node at a ply that is a multiple of 8 starts a fresh table for its subtree.
  void Age(int ply);
  // No history survives from one search to the next.
  void NewSearch();

 private:
  // Slot 0 is no move, so its age doubles as the age of the whole table: a slot whose age differs
  // counts as empty, and a table is cleared by one increment.
  struct Slot {
    std::uint16_t age;
    std::uint16_t count;
  };
  static int SlotIndex(Move move, int side) {
    return ((MovedType(move) - 1 + 6 * side) << 12) + int(move & 0xFFF);
  }
  std::uint32_t Count(int table, int slot) const;
  void Add(int table, int slot, std::uint32_t bonus);
  Slot* Table(int table) const { return slots.get() + std::size_t(table) * SLOTS; }

  std::unique_ptr<Slot[]> slots;
};
