// The pawn hash table: one entry per pawn structure and position type, simply overwritten. The
// entry itself is the evaluation's business.
#pragma once

#include <cstdint>

#include "chess/basic.h"
#include "evaluation/pawn_hash_entry.h"
#include "search/hash_table.h"

class PawnHashTable : public HashTableArray<PawnHashEntry, 64> {
 public:
  PawnHashTable();

  std::uint64_t TotalSlots() const override { return SlotCountNow(); }
  std::uint64_t FreeSlots() const override;
  std::uint64_t SlotSize() const override { return sizeof(PawnHashEntry); }

  // The entry of this pawn structure and type, or nullptr. An entry whose sets are not all made
  // of the pawns on the board comes from a colliding key and counts as a miss.
  const PawnHashEntry* Probe(std::uint64_t key, int position_type, Bitboard white_pawns,
                             Bitboard black_pawns);
  void Store(const PawnHashEntry& entry);

 private:
  std::uint64_t IndexOf(std::uint64_t key, int position_type) const;
};
