// What the three hash tables share: sizing to a power of two, clearing, the fill statistics of the
// "hash" report, and the probe and hit counters of one search.
#pragma once

#include <cstdint>
#include <cstring>
#include <memory>
#include <new>
#include <type_traits>

class AbstractHashTable {
 public:
  AbstractHashTable() = default;
  AbstractHashTable(const AbstractHashTable&) = delete;
  AbstractHashTable& operator=(const AbstractHashTable&) = delete;
  virtual ~AbstractHashTable() = default;

  // Sizes the table to at most `bytes` (never below its minimum). False, with the table and its
  // contents unchanged, when the memory cannot be had; true and an empty table otherwise.
  virtual bool Resize(std::uint64_t bytes) = 0;
  virtual void Clear() = 0;
  virtual std::uint64_t TotalSlots() const = 0;
  virtual std::uint64_t FreeSlots() const = 0;
  virtual std::uint64_t SlotSize() const = 0;
  std::uint64_t MemoryUsage() const { return TotalSlots() * SlotSize(); }
  // Called at the start of every search: the counters cover one search.
  virtual void NewSearch() { probes = hits = 0; }

  // hits / probes, 0.0 before the first probe.
  double HitRatio() const { return probes == 0 ? 0.0 : double(hits) / double(probes); }

  std::uint64_t probes = 0;
  std::uint64_t hits = 0;

 protected:
  std::uint64_t mask = 0;  // number of buckets or entries minus 1
};

// The number of buckets or entries for a request of `bytes`: as many as fit, at least `minimum`,
// rounded down to a power of two so that the index is a mask. Never more than 2^32, since every
// table indexes with the low 32 bits of its key.
std::uint64_t SlotCount(std::uint64_t bytes, std::uint64_t slot_size, std::uint64_t minimum);

// False for a table larger than the installed memory.
bool FitsInPhysicalMemory(std::uint64_t bytes);

// The array behind a table: `Slot` is what one index of the mask selects (a bucket or an entry).
// A slot whose key is 0 is free, so zeroed memory is an empty table.
template <typename Slot, std::uint64_t MINIMUM_SLOTS>
class HashTableArray : public AbstractHashTable {
  static_assert(std::is_trivially_copyable_v<Slot>);

 public:
  bool Resize(std::uint64_t bytes) override {
    const std::uint64_t count = SlotCount(bytes, sizeof(Slot), MINIMUM_SLOTS);
    // With the usual overcommitting kernel a huge allocation succeeds and the process is killed
    // later, when Clear touches the pages; so more than the machine has is refused up front.
    if (!FitsInPhysicalMemory(count * sizeof(Slot))) return false;
    std::unique_ptr<Slot[]> array(new (std::nothrow) Slot[count]);
    if (!array) return false;
    slots = std::move(array);
    mask = count - 1;
    Clear();
    return true;
  }

  void Clear() override {
    std::memset(static_cast<void*>(slots.get()), 0, SlotCountNow() * sizeof(Slot));
  }

 protected:
  Slot& SlotAt(std::uint64_t index) { return slots[index & mask]; }
  const Slot& SlotAt(std::uint64_t index) const { return slots[index & mask]; }
  std::uint64_t SlotCountNow() const { return mask + 1; }

  std::unique_ptr<Slot[]> slots;
};
