// The pawn hash table: what the pawn-structure evaluation found out for one pawn structure and
// position type. Each of the five classified sets is stored as the union of the white and the
// black set (every pawn has one colour, so an AND with a side's pawns splits it again), which is
// how 112 bytes hold twice the sets they seem to have room for.
#pragma once

#include <cstdint>

#include "chess/basic.h"
#include "search/hash_table.h"

struct PawnHashEntry {
  std::uint64_t key;  // pawn key
  std::uint32_t position_type;
  std::uint32_t packed_counts;  // majorities and openness, see PackCounts
  Bitboard passed;
  Bitboard isolated;
  Bitboard backward;
  Bitboard backward_low;
  Bitboard obstructed;
  Bitboard safe_advance[2];
  Bitboard unreachable_centre[2];
  // The first two only for the opening and middlegame types, the third only for the others.
  std::int16_t pawn_positional;
  std::int16_t pawn_reckless;
  std::int16_t pawn_ending;
  // The twelve king-safety units of the pawns, three to a word (see PackScoreWord); only for the
  // opening and middlegame types.
  std::uint32_t units[4];
};
static_assert(sizeof(PawnHashEntry) == 112);

// A majority of one wing as the pawn evaluation finds it. `mask` is not stored but rebuilt from
// its outermost file.
struct PawnMajority {
  std::int32_t kind;  // 0 none, 1 White has it, 2 Black
  std::int32_t files;
  std::int32_t opposing_pawns;
  Bitboard mask;
};

// Bits 0-1 kind, 2-4 files, 5-7 opposing pawns, 8-10 highest file of the mask, of the queenside;
// 11-12, 13-15, 16-18 and 19-21 (the lowest file of the mask) of the kingside; 22-31 openness.
std::uint32_t PackCounts(const PawnMajority majority[2], int openness);
void UnpackCounts(std::uint32_t packed, PawnMajority majority[2], int& openness);

// Three signed values up to 511 in size, each as a sign bit and nine bits of magnitude.
std::uint32_t PackScoreWord(int a, int b, int c);
void UnpackScoreWord(std::uint32_t word, int& a, int& b, int& c);

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
