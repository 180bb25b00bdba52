// What one node of the tree knows about itself while it runs: its window and distance, what the
// table and the threat detectors found, and what the selective steps before the move loop leave
// for it. It lives on the stack of SearchNode; the steps in the other files of the node read and
// write it.
#pragma once

#include <cstdint>

#include "chess/basic.h"
#include "search/search_types.h"

class SearchBoard;

struct NodeState {
  SearchBoard& board;
  int ply;
  Score beta;
  // Lowered by razoring for the rest of the node, the hash entry included.
  std::int32_t distance;
  int node_type;
  // The type the parent handed down, and the one this node works with after the table or a
  // classification refined it.
  int given_position_type;
  int position_type;
  std::uint32_t flags;
  std::uint32_t node_flags = 0;
  Move hash_move = INVALID;

  // The move list: [moves, end), with end == moves while none has been generated.
  Move* moves = nullptr;
  Move* end = nullptr;
  bool generated = false;
  // The list comes from the transposition cutoff test, which may have taken refuted moves out.
  bool list_from_cutoff_test = false;

  // 1 new pin, 2 tightened pin, 0 a pin that stands, negative: none to extend (threat detection).
  int pin_state = -3;

  // Left by razoring and futility for the move loop.
  std::int32_t razor_reduction = 0;
  bool prune = false;
  Score prune_base = 0;

  // Left by the extensions of the node for those of each move.
  bool full_extension = false;
  std::int32_t node_extension = 0;
  std::uint32_t extension_flags = 0;

  bool IsPv() const { return node_type == PV; }
  // Where a child may write its move list.
  Move* ChildMoves() const { return end; }
};

// Reasons of extensions, kept in extension_flags until the node ends (but for the checks, which
// belong to one move).
constexpr std::uint32_t EXTENDED_DIRECT_CHECK = 1;
constexpr std::uint32_t EXTENDED_DISCOVERED_CHECK = 2;
constexpr std::uint32_t EXTENDED_DOUBLE_CHECK = 4;
constexpr std::uint32_t EXTENDED_CHECKS = 7;
constexpr std::uint32_t EXTENDED_SINGLE_REPLY = 8;
constexpr std::uint32_t EXTENDED_RECAPTURE = 16;
constexpr std::uint32_t EXTENDED_PASSER_SIXTH = 32;
constexpr std::uint32_t EXTENDED_PAWN_SEVENTH = 64;
constexpr std::uint32_t EXTENDED_ROOK_SEVENTH = 128;
constexpr std::uint32_t EXTENDED_QUEEN_ATTACKED = 256;
constexpr std::uint32_t EXTENDED_PERPETUAL_CHECK = 512;
constexpr std::uint32_t EXTENDED_PIN = 1024;
constexpr std::uint32_t EXTENDED_MATE_THREAT = 2048;
