// Move generation and make/unmake are the hot path: they must never touch the heap. The test
// binary's operator new counts every allocation, so a walk of a move tree can prove it.
#include <gtest/gtest.h>

#include <cstdlib>
#include <new>

#include "support/allocation_counter.h"
#include "support/perft.h"
#include "support/test_positions.h"

// The replacements below pair malloc with free themselves; the compiler cannot see that through
// its knowledge of the standard operators.
#pragma GCC diagnostic ignored "-Wmismatched-new-delete"

namespace {
std::size_t allocations = 0;
}  // namespace

void* operator new(std::size_t size) {
  ++allocations;
  if (void* memory = std::malloc(size ? size : 1)) return memory;
  throw std::bad_alloc();
}
void* operator new[](std::size_t size) { return operator new(size); }
// The forms that don't throw must come from the same heap, or a sanitizer sees mixed pairs.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  ++allocations;
  return std::malloc(size ? size : 1);
}
void* operator new[](std::size_t size, const std::nothrow_t& tag) noexcept {
  return operator new(size, tag);
}
void operator delete(void* memory, const std::nothrow_t&) noexcept { std::free(memory); }
void operator delete[](void* memory, const std::nothrow_t&) noexcept { std::free(memory); }
void operator delete(void* memory) noexcept { std::free(memory); }
std::size_t AllocationCount() { return allocations; }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { std::free(memory); }

namespace {

TEST(HotPath, MoveTreeWalkAllocatesNothing) {
  const std::size_t unused = allocations;
  ::operator delete(::operator new(16));
  ASSERT_GT(allocations, unused) << "the counting operator new is not in use";
  for (const char* fen : {"r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1",
                          "8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - - 0 1",
                          "rnbq1k1r/pp1Pbppp/2p5/8/2B5/8/PPP1NnPP/RNBQK2R w KQ - 1 8"}) {
    Board board = BoardFromFen(fen);
    const std::size_t before = allocations;
    const std::uint64_t leaves = Perft::CountLeaves(board, 3);
    Move buffer[MOVE_BUFFER_SIZE];
    for (int mask : {GEN_CAPTURES | GEN_QUEEN_PROMOTIONS, GEN_ALL_CHECKS, GEN_CASTLING})
      GenerateMoves(buffer, board, mask);
    EXPECT_EQ(allocations, before) << fen;
    EXPECT_GT(leaves, 0u);
  }
}

}  // namespace
