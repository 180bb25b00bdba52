#include "search/hash_evaluation.h"

EvaluationHashTable::EvaluationHashTable() { Resize(384); }

std::uint64_t EvaluationHashTable::FreeSlots() const {
  std::uint64_t free = 0;
  for (std::uint64_t i = 0; i < SlotCountNow(); ++i) free += slots[i].key() == 0;
  return free;
}

int EvaluationHashTable::Probe(std::uint64_t key, int beta) {
  ++probes;
  const EvaluationHashEntry& entry = SlotAt(std::uint32_t(key));
  if (entry.key() != key) return EVALUATION_MISS;
  ++hits;
  return beta > entry.score ? EVALUATION_BELOW_BETA : EVALUATION_AT_LEAST_BETA;
}

void EvaluationHashTable::Store(std::uint64_t key, int score) {
  SlotAt(std::uint32_t(key)) = {std::uint32_t(key), std::uint32_t(key >> 32), std::int16_t(score)};
}
