#include "search/internal_iterative_deepening.h"

#include <algorithm>

#include "search/node_state.h"
#include "search/search_board.h"
#include "search/search_node.h"
#include "search/search_settings.h"
#include "search/search_types.h"

namespace {
// The reduced search only looks for a move: no null move, no transposition cutoff, no perpetual
// check test.
constexpr std::uint32_t IID_FLAGS = SKIP_NULL_MOVE | SKIP_ETTC | SKIP_PERPETUAL_CHECK_TEST |
                                    UNUSED_FLAG;

std::int32_t ReducedDistance(const NodeState& node) {
  std::int32_t distance = node.distance < iid_critical_distance
                              ? node.distance - iid_min_reduction
                              : node.distance - iid_max_reduction;
  if (node.IsPv()) distance -= iid_extra_reduction_if_not_searching_pv_move;
  return std::max(distance, 1);
}

bool IsInList(const NodeState& node, Move move) {
  return std::any_of(node.moves, node.end, [move](Move listed) { return SameMove(listed, move); });
}
}  // namespace

bool FindMoveByInternalDeepening(NodeState& node) {
  const std::int32_t min_depth = node.IsPv() ? min_depth_for_iid_if_searching_pv_move
                                             : min_depth_for_iid_if_not_searching_pv_move;
  if (node.hash_move != INVALID || node.distance < min_depth) return true;
  std::uint32_t flags = node.flags | IID_FLAGS;
  if (skip_razoring_if_doing_iid) flags |= SKIP_RAZORING;
  if (skip_extended_futility_pruning_if_doing_iid) flags |= SKIP_EXTENDED_FUTILITY;
  SearchNode(node.board, node.ChildMoves(), node.beta, ReducedDistance(node), node.node_type,
             node.given_position_type, flags);
  node.hash_move = node.board.principal_variation[node.ply][0];
  // Every legal move is in a full list unless the cutoff test refuted it.
  return !(node.list_from_cutoff_test && node.hash_move != INVALID &&
           !IsInList(node, node.hash_move));
}
