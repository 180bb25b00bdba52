#include "search/null_move.h"

#include "search/node_state.h"
#include "search/search_board.h"
#include "search/search_node.h"
#include "search/search_settings.h"
#include "search/search_types.h"

namespace {
// The kinds of game in which passing is a fair test, as a mask of `1 << type`: the opening, the
// middle game, the endings with equal pieces or queens, and the other endings. In the simple
// endings zugzwang is too common.
constexpr unsigned NULL_MOVE_TYPES = ~0x1FFE8u;
// Where a mate threat cannot arise often enough to pay for the test: the endings of minor pieces
// and of pawns.
constexpr unsigned NO_MATE_THREAT_TEST_TYPES = 0x99E0;
// A null-move child runs no null move, no recapture extension and no perpetual check test, and
// none of it reaches its children either.
constexpr std::uint32_t NULL_MOVE_CHILD_FLAGS = SKIP_NULL_MOVE | SKIP_RECAPTURE_EXTENSION |
                                                SKIP_PERPETUAL_CHECK_TEST | UNUSED_FLAG |
                                                CHILD_SKIP_PERPETUAL_CHECK_TEST | CHILD_UNUSED_FLAG;

bool MayPass(const NodeState& node) {
  const SearchBoard& board = node.board;
  return !(node.flags & SKIP_NULL_MOVE) && !(node.node_flags & THREATS) && !node.IsPv() &&
         node.distance >= min_distance_for_null_move && node.ply >= min_ply_for_null_move &&
         node.ply <= max_ply_for_null_move && !board.InCheck() &&
         ((NULL_MOVE_TYPES >> node.position_type) & 1) &&
         !(skip_null_move_if_side_on_move_is_searching_for_mate && node.beta > MATE_THRESHOLD) &&
         !(skip_null_move_if_enemy_is_searching_for_mate && node.beta < -MATE_THRESHOLD) &&
         node.beta <= board.Material() + maximum_material_margin_for_null_move;
}

std::uint32_t NullMoveChildFlags() {
  std::uint32_t flags = NULL_MOVE_CHILD_FLAGS;
  if (skip_enhanced_transposition_cutoff_if_searching_null_move) flags |= SKIP_ETTC;
  if (skip_razoring_if_searching_null_move) flags |= SKIP_RAZORING;
  if (skip_extended_futility_pruning_if_searching_null_move) flags |= SKIP_EXTENDED_FUTILITY;
  if (skip_lmr_at_the_next_depth_if_searching_null_move) flags |= SKIP_LMR;
  if (skip_lmr_at_the_depth_after_the_next_if_searching_null_move) flags |= CHILD_SKIP_LMR;
  return flags;
}

void UndoNullMove(SearchBoard& board) {
  --board.ply;
  board.side_on_move ^= 1;
}

// With the null move on the board: can the opponent mate within the set number of moves?
bool OpponentThreatensMate(NodeState& node) {
  if (node.distance < min_distance_for_mate_threat_test ||
      ((NO_MATE_THREAT_TEST_TYPES >> node.position_type) & 1)) {
    return false;
  }
  std::int32_t test_distance = maximum_distance_for_null_move_mate_threat_test;
  if (limit_distance_for_null_move_mate_threat_test && node.distance < test_distance) {
    test_distance = node.distance;
  }
  const Score test_beta = MateBound(node.ply) - 2 * extend_if_mate_in_x_moves_threat;
  const Score result = SearchNode(node.board, node.ChildMoves(), test_beta, test_distance,
                                  -node.node_type, node.position_type, SKIP_ALL_SELECTIVE);
  return result == test_beta;
}
}  // namespace

bool NullMoveCutsOff(NodeState& node) {
  if (!MayPass(node)) return false;
  SearchBoard& board = node.board;
  const std::int32_t reduction = node.distance < null_move_reduction_critical_distance
                                     ? min_null_move_search_reduction
                                     : max_null_move_search_reduction;
  board.played_moves[node.ply + 1] = INVALID;
  board.MakeNullMove();
  // The child's beta is one above the usual 1 - beta: passing must prove a value above beta.
  const Score result = SearchNode(board, node.ChildMoves(), -node.beta, node.distance - reduction,
                                  -node.node_type, node.position_type, NullMoveChildFlags());
  if (result != -node.beta) {
    UndoNullMove(board);
    return true;
  }
  if (OpponentThreatensMate(node)) node.node_flags |= MATE_THREAT;
  UndoNullMove(board);
  return false;
}
