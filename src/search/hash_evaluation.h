// The evaluation hash table: the exact static value of a position, from the side on move's view,
// stored after every evaluation that ran to its end.
#pragma once

#include <cstdint>

#include "search/hash_table.h"

// The key in two halves keeps the alignment at 4 and the entry at 12 bytes.
struct EvaluationHashEntry {
  std::uint32_t key_low;
  std::uint32_t key_high;
  std::int16_t score;

  std::uint64_t key() const { return std::uint64_t{key_high} << 32 | key_low; }
};
static_assert(sizeof(EvaluationHashEntry) == 12);

// Answers of EvaluationHashTable::Probe.
constexpr int EVALUATION_MISS = 0;
constexpr int EVALUATION_BELOW_BETA = 1;
constexpr int EVALUATION_AT_LEAST_BETA = 2;

class EvaluationHashTable : public HashTableArray<EvaluationHashEntry, 32> {
 public:
  EvaluationHashTable();

  std::uint64_t TotalSlots() const override { return SlotCountNow(); }
  std::uint64_t FreeSlots() const override;
  std::uint64_t SlotSize() const override { return sizeof(EvaluationHashEntry); }

  int Probe(std::uint64_t key, int beta);
  void Store(std::uint64_t key, int score);
};
