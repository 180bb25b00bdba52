// The small vocabulary of the tree search: node types, the search flags that switch techniques
// off in a node and its children, the node flags that describe a position, and the sort value
// carried in the upper bits of a move word.
#pragma once

#include <cstdint>

#include "chess/basic.h"

// What a node is expected to do; it steers heuristics only.
constexpr int PV = 0;
constexpr int CUT = 1;   // expected to fail high
constexpr int ALL = -1;  // expected to fail low

// Search flags. The low bits act in the node; bits 8-12 are bits 3-7 for the children.
constexpr std::uint32_t SKIP_NULL_MOVE = 1;
constexpr std::uint32_t SKIP_ETTC = 2;
constexpr std::uint32_t SKIP_RECAPTURE_EXTENSION = 4;
constexpr std::uint32_t SKIP_RAZORING = 8;
constexpr std::uint32_t SKIP_EXTENDED_FUTILITY = 16;
constexpr std::uint32_t SKIP_PERPETUAL_CHECK_TEST = 32;
constexpr std::uint32_t UNUSED_FLAG = 64;  // read by nothing, but part of the fixed flag words
constexpr std::uint32_t SKIP_LMR = 128;
constexpr std::uint32_t CHILD_SKIP_RAZORING = SKIP_RAZORING << 5;
constexpr std::uint32_t CHILD_SKIP_EXTENDED_FUTILITY = SKIP_EXTENDED_FUTILITY << 5;
constexpr std::uint32_t CHILD_SKIP_PERPETUAL_CHECK_TEST = SKIP_PERPETUAL_CHECK_TEST << 5;
constexpr std::uint32_t CHILD_UNUSED_FLAG = UNUSED_FLAG << 5;
constexpr std::uint32_t CHILD_SKIP_LMR = SKIP_LMR << 5;
// Everything selective off in the node itself, and nothing handed further down.
constexpr std::uint32_t SKIP_ALL_SELECTIVE = 0x7F;

// The switches a node hands on: its bits 8-12 become the child's bits 3-7.
constexpr std::uint32_t FlagsForChildren(std::uint32_t flags) { return (flags & 0x1F00) >> 5; }

// Node flags: facts about the position. Those up to 16 are kept in the transposition table.
constexpr std::uint32_t SINGLE_REPLY = 1;
constexpr std::uint32_t MATE_THREAT = 2;
constexpr std::uint32_t QUEEN_ATTACKED = 4;
constexpr std::uint32_t QUEEN_NOT_ATTACKED = 8;
constexpr std::uint32_t PIN_THREAT = 16;
constexpr std::uint32_t PERPETUAL_CHECK_THREAT = 32;
constexpr std::uint32_t STORED_NODE_FLAGS = 31;
// A node with any of these threats takes no selective short cut.
constexpr std::uint32_t THREATS = SINGLE_REPLY | MATE_THREAT | QUEEN_ATTACKED | PIN_THREAT |
                                  PERPETUAL_CHECK_THREAT;

// The sort value lives in bits 23-31 of a move word, so that comparing words as unsigned numbers
// compares the values first.
constexpr int SORT_SHIFT = 23;
constexpr Move MOVE_MASK = (Move{1} << SORT_SHIFT) - 1;
constexpr int MAX_SORT_VALUE = 511;
constexpr Move WithSortValue(Move move, int value) {
  return (move & MOVE_MASK) | Move(value) << SORT_SHIFT;
}
constexpr int SortValue(Move move) { return int(move >> SORT_SHIFT); }
constexpr bool SameMove(Move a, Move b) { return ((a ^ b) & MOVE_MASK) == 0; }

// Tactical: a capture, a promotion or a check (bits 15-22).
constexpr Move TACTICAL_BITS = Move{0xFF} << 15;
constexpr bool IsTactical(Move move) { return (move & TACTICAL_BITS) != 0; }
// 0 no check, 1 direct, 2 discovered, 3 double.
constexpr int CheckKind(Move move) { return int((move >> 21) & 3); }

// Scores: MATE and MATE_THRESHOLD of the chess vocabulary. A node searches for mate when its beta
// lies beyond the threshold.
constexpr bool IsMateScore(Score value) { return value > MATE_THRESHOLD || value < -MATE_THRESHOLD; }
// Mated at this ply is the worst a node can find; it also marks "no move searched yet".
constexpr Score MatedAt(int ply) { return ply - MATE; }
constexpr Score MateBound(int ply) { return MATE - ply; }
// Every answer of a node is one of two values: beta if `value` reaches it, else beta - 1.
constexpr Score Answer(Score beta, Score value) { return beta <= value ? beta : beta - 1; }

// Distance is counted in 64ths of a ply, so that extensions can be fractions of one.
constexpr std::int32_t ONE_PLY = 64;
