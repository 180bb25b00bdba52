#include "search/hash_table.h"

#include <algorithm>
#include <bit>

#include "shell/physical_memory.h"

std::uint64_t SlotCount(std::uint64_t bytes, std::uint64_t slot_size, std::uint64_t minimum) {
  constexpr std::uint64_t INDEXABLE = std::uint64_t{1} << 32;
  const std::uint64_t wanted = std::clamp(bytes / slot_size, minimum, INDEXABLE);
  return std::bit_floor(wanted);
}

bool FitsInPhysicalMemory(std::uint64_t bytes) { return bytes <= PhysicalMemoryBytes(); }
