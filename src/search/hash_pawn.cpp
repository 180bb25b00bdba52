#include "search/hash_pawn.h"

#include "chess/board_tables.h"
#include "search/position_type.h"
#include "shell/checked_assert.h"

PawnHashTable::PawnHashTable() { Resize(7168); }

std::uint64_t PawnHashTable::FreeSlots() const {
  std::uint64_t free = 0;
  for (std::uint64_t i = 0; i < SlotCountNow(); ++i) free += slots[i].key == 0;
  return free;
}

// One pawn structure has an entry per position type; mixing a per-type key into the index keeps
// those entries from evicting each other.
std::uint64_t PawnHashTable::IndexOf(std::uint64_t key, int position_type) const {
  return std::uint32_t(key) ^ std::uint32_t(BoardTables.ZobristPiece[position_type][0]);
}

const PawnHashEntry* PawnHashTable::Probe(std::uint64_t key, int position_type,
                                          Bitboard white_pawns, Bitboard black_pawns) {
  ++probes;
  const PawnHashEntry& entry = SlotAt(IndexOf(key, position_type));
  if (entry.key != key || entry.position_type != std::uint32_t(position_type)) return nullptr;
  // Every classified set is made of pawns; anything else is another structure with the same key.
  if ((PawnSetsOf(entry) & ~(white_pawns | black_pawns)) != 0) return nullptr;
  ++hits;
  return &entry;
}

void PawnHashTable::Store(const PawnHashEntry& entry) {
  CHECKED_ASSERT(entry.position_type != ENDGAME_NO_PAWNS_LEFT,
                 "PAWN_HASH_ENTRY::Construct: unexpected position_type");
  SlotAt(IndexOf(entry.key, int(entry.position_type))) = entry;
}
