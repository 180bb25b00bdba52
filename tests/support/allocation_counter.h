// The test binary replaces operator new with one that counts: hot paths can prove that they
// never touch the heap.
#pragma once

#include <cstddef>

// Allocations made so far by the whole test binary.
std::size_t AllocationCount();
