// How much memory the machine has, so that a table is never made larger than the machine can hold.
#pragma once

#include <cstdint>

// The installed memory in bytes; the largest u64 where the system does not tell.
std::uint64_t PhysicalMemoryBytes();
