// The transposition table: the working memory of a search that only runs null windows. Each entry
// keeps a lower and an upper bound with the distance at which each was proved, the best move, and
// what the node knew about itself. Two entries to a bucket; slot 0 holds the deepest entry of the
// current search.
#pragma once

#include <cstdint>

#include "chess/basic.h"
#include "search/hash_table.h"

constexpr std::int16_t NO_LOWER_BOUND = -MATE;
constexpr std::int16_t NO_UPPER_BOUND = MATE;
constexpr std::int16_t NO_DISTANCE = -32767;

// Answers of TranspositionTable::Probe.
constexpr int HASH_MISS = 0;
constexpr int HASH_BELOW_BETA = 1;     // the value is below beta
constexpr int HASH_AT_LEAST_BETA = 2;  // the value is at least beta
constexpr int HASH_UNDECIDED = 3;      // found, but only its move and facts can help

constexpr std::uint32_t LAST_GENERATION = 0x7FFFFF;

// Mate scores are kept relative to the node that stored them, so that the same position reached
// at another ply reads the mate distance from itself: a score from the root's view becomes
// node-relative by adding the ply to a mate and subtracting it from a mated score.
constexpr int ToNodeRelative(int score, int ply) {
  return score > MATE_THRESHOLD ? score + ply : score < -MATE_THRESHOLD ? score - ply : score;
}
constexpr int ToRootRelative(int score, int ply) {
  return score > MATE_THRESHOLD ? score - ply : score < -MATE_THRESHOLD ? score + ply : score;
}

struct TranspositionEntry {
  std::uint64_t key;
  std::int16_t lower;
  std::int16_t upper;
  std::int16_t lower_distance;
  std::int16_t upper_distance;
  // Bits 0-22 move, 24 lower_was_stored_last, 25-29 position type, 30-40 node flags,
  // 41-63 generation (0: pushed aside by a newer entry).
  std::uint64_t payload;

  Move move() const { return Move(payload & MOVE_MASK); }
  bool lower_was_stored_last() const { return (payload >> LOWER_LAST_SHIFT) & 1; }
  int position_type() const { return int((payload >> TYPE_SHIFT) & TYPE_MASK); }
  int node_flags() const { return int((payload >> FLAGS_SHIFT) & FLAGS_MASK); }
  std::uint32_t generation() const { return std::uint32_t(payload >> GENERATION_SHIFT); }
  // The depth the entry is good for: the deeper of its two bounds.
  int distance() const { return lower_distance > upper_distance ? lower_distance : upper_distance; }

  void SetGeneration(std::uint32_t generation) {
    payload = (payload & ~(~std::uint64_t{0} << GENERATION_SHIFT)) |
              std::uint64_t{generation} << GENERATION_SHIFT;
  }

  static constexpr std::uint64_t MOVE_MASK = 0x7FFFFF;
  static constexpr int LOWER_LAST_SHIFT = 24;
  static constexpr int TYPE_SHIFT = 25;
  static constexpr std::uint64_t TYPE_MASK = 31;
  static constexpr int FLAGS_SHIFT = 30;
  static constexpr std::uint64_t FLAGS_MASK = 0x7FF;
  static constexpr int GENERATION_SHIFT = 41;
};
static_assert(sizeof(TranspositionEntry) == 24);

// The payload without its generation, which the table writes on storing.
constexpr std::uint64_t MakePayload(Move move, bool lower_was_stored_last, int position_type,
                                    int node_flags) {
  using Entry = TranspositionEntry;
  return (move & Entry::MOVE_MASK) |
         std::uint64_t{lower_was_stored_last} << Entry::LOWER_LAST_SHIFT |
         (std::uint64_t(position_type) & Entry::TYPE_MASK) << Entry::TYPE_SHIFT |
         (std::uint64_t(node_flags) & Entry::FLAGS_MASK) << Entry::FLAGS_SHIFT;
}

// The entry of a search result: `value` is node-relative (see ToNodeRelative). A lower bound
// leaves the upper bound empty and the other way round.
TranspositionEntry MakeBoundEntry(std::uint64_t key, Move move, int position_type, int node_flags,
                                  int distance, int value, bool is_lower_bound);

// An entry that carries only a move of a known line, for positions the table has lost: it never
// decides a bound. Its node flags are the facts it is given, the queen's in either case.
TranspositionEntry MakePlaceholder(std::uint64_t key, Move move, int position_type,
                                   bool single_reply, bool queen_attacked, bool mate_threat);

struct TranspositionBucket {
  TranspositionEntry slot[2];
};

class TranspositionTable : public HashTableArray<TranspositionBucket, 256> {
 public:
  TranspositionTable();

  void Clear() override;
  std::uint64_t TotalSlots() const override { return SlotCountNow() * 2; }
  std::uint64_t FreeSlots() const override;
  std::uint64_t SlotSize() const override { return sizeof(TranspositionEntry); }
  void NewSearch() override;

  // HASH_MISS, or how the entry answers a search of `beta` at `distance` from `ply`; the move,
  // type and flags of a found entry are given out whatever the answer.
  int Probe(std::uint64_t key, int ply, int distance, int beta, Move& move, int& position_type,
            int& node_flags);
  // The move of a found entry and the deeper of its distances.
  bool ProbeMove(std::uint64_t key, Move& move, int& distance);
  void Store(TranspositionEntry entry);

  std::uint32_t generation = 1;

 private:
  TranspositionBucket& BucketOf(std::uint64_t key) { return SlotAt(std::uint32_t(key)); }
  const TranspositionEntry* Find(std::uint64_t key);
  bool IsCurrent(const TranspositionEntry& entry) const {
    return entry.generation() == generation;
  }
};
