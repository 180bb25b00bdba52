// The hot paths must never touch the heap. The test binary's operator new counts every
// allocation, so a search over a tree can prove it.
#include <gtest/gtest.h>

#include <cstdlib>
#include <new>

#include "chess/user_board.h"
#include "search/hash.h"
#include "search/position_type.h"
#include "search/search_board.h"
#include "search/search_node.h"
#include "search/search_serial.h"
#include "search/search_types.h"
#include "support/allocation_counter.h"

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

// The search allocates all it needs with its board; the tree itself must not touch the heap.
// Move generation, make and unmake, evaluation and the node itself all run in the tree.
TEST(HotPath, SearchTreeAllocatesNothing) {
  const std::size_t unused = allocations;
  ::operator delete(::operator new(16));
  ASSERT_GT(allocations, unused) << "the counting operator new is not in use";
  TRANSPOSITION_TABLE.Resize(std::uint64_t{4} << 20);
  SerialSearch search;
  SearchRequest request;
  request.max_depth = 3;
  const char* fens[] = {"r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1",
                        "8/5pk1/6p1/8/3R4/6P1/5PK1/3r4 w - - 0 1",
                        "2b3k1/Q4ppp/8/8/7N/8/1r3PPP/6K1 w - - 0 1"};
  for (const char* fen : fens) {
    UserBoard game;
    game.SetFEN(fen);
    search.SearchWithoutHost(request, game);  // whatever is made once is made now
    SearchBoard& board = *search.board;
    board.ResetForSearch(game.current);
    const int type = ClassifyPosition(board, UNCLASSIFIED);
    board.position_types[0] = board.position_types[1] = type;
    search.iteration = 7;
    const std::uint64_t nodes_before = search.nodes;
    const std::size_t before = allocations;
    for (Score beta : {-300, 0, 300}) {
      for (int node_type : {PV, CUT, ALL}) {
        TRANSPOSITION_TABLE.Clear();
        SearchNode(board, board.move_stack, beta, 5 * ONE_PLY, node_type, type, 0);
      }
    }
    EXPECT_EQ(allocations, before) << fen;
    // Local counts go over to the search at each poll.
    EXPECT_GT(search.nodes + board.nodes - nodes_before, 1000u) << fen;
  }
}

}  // namespace
