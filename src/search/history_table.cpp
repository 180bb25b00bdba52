#include "search/history_table.h"

#include <algorithm>

#include "search/search_types.h"

HistoryTable::HistoryTable() : slots(new Slot[std::size_t(TABLES) * SLOTS]()) {}

std::uint32_t HistoryTable::Count(int table, int slot) const {
  const Slot* t = Table(table);
  return t[slot].age == t[0].age ? t[slot].count : 0;
}

void HistoryTable::Add(int table, int slot, std::uint32_t bonus) {
  Slot* t = Table(table);
  Slot& s = t[slot];
  if (s.age == t[0].age) {
    s.count = std::uint16_t(std::min<std::uint32_t>(s.count + bonus, 65535));
  } else {
    s = {t[0].age, std::uint16_t(bonus)};
  }
}

std::uint32_t HistoryTable::Value(Move move, int side, int ply) const {
  const int slot = SlotIndex(move, side);
  if (ply < 8) return Count(0, slot);
  const int k = ply >> 3;
  return Count(k - 1, slot) + Count(k, slot);
}

void HistoryTable::Update(Move move, int side, int distance, int ply) {
  const int plies = distance / ONE_PLY;
  const std::uint32_t bonus = distance >= ONE_PLY ? std::uint32_t(plies * plies + 1) : 1;
  const int slot = SlotIndex(move, side);
  // A cutoff teaches the band of its ply and the band before, which is the one the next
  // shallower subtrees read.
  const int k = ply >> 3;
  if (ply < 8) {
    Add(1, slot, bonus);
    Add(0, slot, bonus);
  } else {
    Add(k, slot, bonus);
    Add(k - 1, slot, bonus);
  }
}

void HistoryTable::Age(int ply) {
  const int table = ply == 0 ? 1 : ply >> 3;
  ++Table(table)[0].age;
}

void HistoryTable::NewSearch() {
  for (int table = 0; table < 10; ++table) ++Table(table)[0].age;
}
