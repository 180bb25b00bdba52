#include "search/hash_transposition.h"

#include <utility>

#include "search/search_types.h"

namespace {

// The bound of `from` replaces that of `into` only where it is tighter, proved at least as deep,
// and consistent with the other bound of `into`.
void MergeBounds(TranspositionEntry& into, const TranspositionEntry& from) {
  if (into.lower < from.lower && into.lower_distance <= from.lower_distance &&
      from.lower <= into.upper) {
    into.lower = from.lower;
    into.lower_distance = from.lower_distance;
  }
  if (from.upper < into.upper && into.upper_distance <= from.upper_distance &&
      from.upper >= into.lower) {
    into.upper = from.upper;
    into.upper_distance = from.upper_distance;
  }
}

// How a found entry answers `beta` at `distance`. The bound written last is asked first: it is
// the one the node's last search proved.
int Classify(const TranspositionEntry& entry, int ply, int distance, int beta) {
  if (distance > entry.distance()) return HASH_UNDECIDED;
  const int low = ToRootRelative(entry.lower, ply);
  const int up = ToRootRelative(entry.upper, ply);
  if (entry.lower_was_stored_last()) {
    if (beta <= low) return HASH_AT_LEAST_BETA;
    if (beta <= up || entry.upper_distance < distance) return HASH_UNDECIDED;
    return HASH_BELOW_BETA;
  }
  if (beta > up) return HASH_BELOW_BETA;
  if (beta > low || entry.lower_distance < distance) return HASH_UNDECIDED;
  return HASH_AT_LEAST_BETA;
}

}  // namespace

TranspositionEntry MakeBoundEntry(std::uint64_t key, Move move, int position_type, int node_flags,
                                  int distance, int value, bool is_lower_bound) {
  const std::uint64_t payload = MakePayload(move, is_lower_bound, position_type, node_flags);
  TranspositionEntry entry{key, NO_LOWER_BOUND, NO_UPPER_BOUND, NO_DISTANCE, NO_DISTANCE, payload};
  if (is_lower_bound) {
    entry.lower = std::int16_t(value);
    entry.lower_distance = std::int16_t(distance);
  } else {
    entry.upper = std::int16_t(value);
    entry.upper_distance = std::int16_t(distance);
  }
  return entry;
}

TranspositionEntry MakePlaceholder(std::uint64_t key, Move move, int position_type,
                                   bool single_reply, bool queen_attacked, bool mate_threat) {
  const std::uint32_t queen = queen_attacked ? QUEEN_ATTACKED : QUEEN_NOT_ATTACKED;
  const int node_flags =
      int(queen | (single_reply ? SINGLE_REPLY : 0) | (mate_threat ? MATE_THREAT : 0));
  return {key,         NO_LOWER_BOUND, NO_UPPER_BOUND, NO_DISTANCE,
          NO_DISTANCE, MakePayload(move, true, position_type, node_flags)};
}

TranspositionTable::TranspositionTable() { Resize(12288); }

void TranspositionTable::Clear() {
  HashTableArray::Clear();
  generation = 1;
}

std::uint64_t TranspositionTable::FreeSlots() const {
  std::uint64_t free = 0;
  for (std::uint64_t i = 0; i < SlotCountNow(); ++i)
    for (const TranspositionEntry& entry : slots[i].slot) free += entry.key == 0;
  return free;
}

void TranspositionTable::NewSearch() {
  AbstractHashTable::NewSearch();
  // Generation 0 marks entries pushed aside, so the counter wraps to 1.
  generation = generation == LAST_GENERATION ? 1 : generation + 1;
}

const TranspositionEntry* TranspositionTable::Find(std::uint64_t key) {
  ++probes;
  const TranspositionBucket& bucket = BucketOf(key);
  const TranspositionEntry* found = bucket.slot[0].key == key   ? &bucket.slot[0]
                                    : bucket.slot[1].key == key ? &bucket.slot[1]
                                                                : nullptr;
  hits += found != nullptr;
  return found;
}

int TranspositionTable::Probe(std::uint64_t key, int ply, int distance, int beta, Move& move,
                              int& position_type, int& node_flags) {
  const TranspositionEntry* entry = Find(key);
  if (entry == nullptr) return HASH_MISS;
  move = entry->move();
  position_type = entry->position_type();
  node_flags = entry->node_flags();
  return Classify(*entry, ply, distance, beta);
}

bool TranspositionTable::ProbeMove(std::uint64_t key, Move& move, int& distance) {
  const TranspositionEntry* entry = Find(key);
  if (entry == nullptr) return false;
  move = entry->move();
  distance = entry->distance();
  return true;
}

void TranspositionTable::Store(TranspositionEntry entry) {
  entry.SetGeneration(generation);
  TranspositionEntry* slot = BucketOf(entry.key).slot;
  const int found = slot[0].key == entry.key ? 0 : slot[1].key == entry.key ? 1 : -1;

  // A shallower result for a known position only tightens the bounds of what is there.
  if (found >= 0 && entry.distance() < slot[found].distance()) {
    MergeBounds(slot[found], entry);
    slot[found].SetGeneration(generation);
    if (found == 1 && !(IsCurrent(slot[0]) && slot[0].distance() >= slot[1].distance())) {
      if (!IsCurrent(slot[0])) slot[0].SetGeneration(0);
      std::swap(slot[0], slot[1]);
    }
    return;
  }

  // Slot 0 keeps the deepest entry of this search; an entry of an earlier search goes first.
  int place = found == 0 ? 0 : 1;
  if (place == 1 && !IsCurrent(slot[1]) && !IsCurrent(slot[0])) {
    slot[0].SetGeneration(0);
    place = 0;
  } else if (place == 1) {
    place = slot[0].distance() > entry.distance() ? 1 : 0;
  }
  if (found >= 0) MergeBounds(entry, slot[found]);
  if (place == 0 && found != 0) slot[1] = slot[0];
  slot[place] = entry;
}
