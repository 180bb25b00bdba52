#include "shell/physical_memory.h"

#include <unistd.h>

#include <limits>

std::uint64_t PhysicalMemoryBytes() {
  const long pages = sysconf(_SC_PHYS_PAGES);
  const long page_size = sysconf(_SC_PAGE_SIZE);
  if (pages <= 0 || page_size <= 0) return std::numeric_limits<std::uint64_t>::max();
  const auto count = static_cast<std::uint64_t>(pages);
  const auto size = static_cast<std::uint64_t>(page_size);
  if (count > std::numeric_limits<std::uint64_t>::max() / size)
    return std::numeric_limits<std::uint64_t>::max();
  return count * size;
}
