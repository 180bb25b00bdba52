#include "search/selective_pruning.h"

#include "search/node_state.h"
#include "search/position_type.h"
#include "search/search_board.h"
#include "search/search_settings.h"
#include "search/search_types.h"

namespace {
// Late move reduction: fixed limits.
constexpr std::int32_t MIN_DISTANCE_FOR_LMR = 3 * ONE_PLY;
constexpr std::int32_t MIN_DISTANCE_FOR_EXTENDED_LMR = 5 * ONE_PLY;
constexpr int FIRST_REDUCED_MOVE = 4;
constexpr int FIRST_MOVE_OF_EXTENDED_LMR = 8;

bool SearchesForMate(Score beta) { return beta > MATE_THRESHOLD; }

// How many pieces the opponent still has to attack with: a minor counts one, a rook one, a queen
// two.
int EnemyPieces(const SearchBoard& board) {
  const PieceSet& enemy = board.Enemy();
  return enemy.minor_points / 3 + enemy.major_count;
}

void TryLimitedRazoring(NodeState& node) {
  const bool enabled = node.IsPv() ? enable_limited_razoring_if_searching_pv_move
                                   : enable_limited_razoring_if_not_searching_pv_move;
  if (!enabled || node.distance < min_distance_for_limited_razoring ||
      node.distance > max_distance_for_limited_razoring || (node.flags & SKIP_RAZORING) ||
      (skip_limited_razoring_if_searching_for_mate && SearchesForMate(node.beta)) ||
      EnemyPieces(node.board) < minimum_enemy_pieces_left_for_limited_razoring ||
      node.beta <= node.board.Material() + limited_razoring_margin) {
    return;
  }
  const std::int32_t new_distance = limited_razoring_reduction_independent_of_current_distance
                                        ? limited_razoring_static_reduced_distance
                                        : node.distance - limited_razoring_dynamic_reduction_factor;
  node.razor_reduction = node.distance - new_distance;
  node.distance = new_distance;
}

void TryExtendedFutility(NodeState& node) {
  const bool enabled = node.IsPv() ? enable_extended_futility_pruning_if_searching_pv_move
                                   : enable_extended_futility_pruning_if_not_searching_pv_move;
  const Score base = node.board.Material() + extended_futility_pruning_margin;
  if (!enabled || node.distance < min_distance_for_extended_futility_pruning ||
      node.distance > max_distance_for_extended_futility_pruning ||
      (node.flags & SKIP_EXTENDED_FUTILITY) ||
      (skip_extended_futility_pruning_if_searching_for_mate && SearchesForMate(node.beta)) ||
      node.beta <= base) {
    return;
  }
  node.prune = true;
  node.prune_base = base;
}

// Near the horizon (and in quiescence, where the distance test always holds).
void TryFutility(NodeState& node) {
  const bool enabled = node.IsPv() ? enable_futility_pruning_if_searching_pv_move
                                   : enable_futility_pruning_if_not_searching_pv_move;
  const Score base = node.board.Material() + futility_pruning_margin;
  if (!enabled || node.distance > max_distance_for_futility_pruning ||
      (skip_futility_pruning_if_searching_for_mate && SearchesForMate(node.beta)) ||
      node.beta <= base) {
    return;
  }
  node.prune = true;
  node.prune_base = base;
}
}  // namespace

void PrepareSelectivePruning(NodeState& node) {
  node.razor_reduction = 0;
  node.prune = false;
  node.prune_base = 0;
  if (node.distance < 1) {
    TryFutility(node);
    return;
  }
  // A threat or a simple ending is where the static picture misleads most.
  if (disable_selective_techniques_if_threats_exist && (node.node_flags & THREATS)) return;
  if (disable_selective_techniques_if_searching_simple_endgames &&
      IsSimpleEndgame(node.given_position_type)) {
    return;
  }
  TryLimitedRazoring(node);
  TryExtendedFutility(node);
  TryFutility(node);
}

bool IsFutile(const NodeState& node, Move move) {
  if (!node.prune || GivesCheck(move)) return false;
  Score gain = PieceValue[CapturedType(move)];
  if (IsPromotion(move)) gain += PieceValue[PromotionType(move)] - PieceValue[PAWN];
  return node.beta > gain + node.prune_base;
}

std::int32_t LateMoveReduction(const NodeState& node, Move move, int move_count) {
  if ((skip_late_move_reduction_if_extended && node.extension_flags != 0) ||
      !enable_late_move_reduction || node.distance < MIN_DISTANCE_FOR_LMR || GivesCheck(move) ||
      move_count < FIRST_REDUCED_MOVE || (node.flags & SKIP_LMR) || (node.node_flags & THREATS) ||
      (skip_late_move_reduction_if_in_principal_variation && node.IsPv()) ||
      node.board.InCheck()) {
    return 0;
  }
  // After a tactical hash move failed, the quiet moves far down the list are the least likely.
  if (enable_extended_late_move_reduction && node.distance >= MIN_DISTANCE_FOR_EXTENDED_LMR &&
      IsTactical(node.hash_move) && move_count >= FIRST_MOVE_OF_EXTENDED_LMR && !IsTactical(move)) {
    return extended_late_move_reduction;
  }
  return standard_late_move_reduction;
}
