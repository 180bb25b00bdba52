#include "search/hash_pawn.h"

#include "chess/bitboard.h"
#include "chess/board_tables.h"
#include "search/position_type.h"
#include "shell/checked_assert.h"

namespace {

// A majority's files are contiguous from the edge of its wing, so its outermost file says it all.
struct WingMasks {
  Bitboard queenside[8];  // files a up to the index
  Bitboard kingside[8];   // files from the index up to h
};

constexpr WingMasks MakeWingMasks() {
  WingMasks masks{};
  for (int last = 0; last < 8; ++last)
    for (int file = 0; file < 8; ++file) {
      if (file <= last) masks.queenside[last] |= FileMask(file);
      if (file >= last) masks.kingside[last] |= FileMask(file);
    }
  return masks;
}

constexpr WingMasks MajorityMasks = MakeWingMasks();

std::uint32_t PackWing(const PawnMajority& majority, bool kingside) {
  if (majority.kind == 0) return 0;
  const Bitboard first_rank = majority.mask & RANK_1;
  const int edge_file = first_rank == 0 ? 0 : kingside ? File(FindLowestBit(first_rank))
                                                       : File(FindHighestBit(first_rank));
  return std::uint32_t(majority.kind & 3) | std::uint32_t(majority.files & 7) << 2 |
         std::uint32_t(majority.opposing_pawns & 7) << 5 | std::uint32_t(edge_file) << 8;
}

PawnMajority UnpackWing(std::uint32_t bits, bool kingside) {
  const int kind = int(bits & 3);
  if (kind == 0) return {};
  const int edge_file = int((bits >> 8) & 7);
  return {kind, int((bits >> 2) & 7), int((bits >> 5) & 7),
          kingside ? MajorityMasks.kingside[edge_file] : MajorityMasks.queenside[edge_file]};
}

// Sign in the low bit, magnitude in the nine above it.
std::uint32_t PackSigned(int value) {
  return value < 0 ? 1u | std::uint32_t(-value & 511) << 1 : std::uint32_t(value & 511) << 1;
}
int UnpackSigned(std::uint32_t bits) {
  const int magnitude = int((bits >> 1) & 511);
  return bits & 1 ? -magnitude : magnitude;
}

constexpr int KINGSIDE_SHIFT = 11;
constexpr int OPENNESS_SHIFT = 22;

}  // namespace

std::uint32_t PackCounts(const PawnMajority majority[2], int openness) {
  return PackWing(majority[0], false) | PackWing(majority[1], true) << KINGSIDE_SHIFT |
         std::uint32_t(openness & 1023) << OPENNESS_SHIFT;
}

void UnpackCounts(std::uint32_t packed, PawnMajority majority[2], int& openness) {
  majority[0] = UnpackWing(packed & 0x7FF, false);
  majority[1] = UnpackWing((packed >> KINGSIDE_SHIFT) & 0x7FF, true);
  openness = int(packed >> OPENNESS_SHIFT);
}

std::uint32_t PackScoreWord(int a, int b, int c) {
  return PackSigned(a) | PackSigned(b) << 10 | PackSigned(c) << 20;
}

void UnpackScoreWord(std::uint32_t word, int& a, int& b, int& c) {
  a = UnpackSigned(word);
  b = UnpackSigned(word >> 10);
  c = UnpackSigned(word >> 20);
}

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
  const Bitboard pawns = white_pawns | black_pawns;
  const Bitboard sets =
      entry.passed | entry.isolated | entry.backward | entry.backward_low | entry.obstructed;
  if ((sets & ~pawns) != 0) return nullptr;
  ++hits;
  return &entry;
}

void PawnHashTable::Store(const PawnHashEntry& entry) {
  CHECKED_ASSERT(entry.position_type != ENDGAME_NO_PAWNS_LEFT,
                 "PAWN_HASH_ENTRY::Construct: unexpected position_type");
  SlotAt(IndexOf(entry.key, int(entry.position_type))) = entry;
}
