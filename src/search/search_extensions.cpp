#include "search/search_extensions.h"

#include <algorithm>

#include "chess/board_tables.h"
#include "search/node_state.h"
#include "search/position_type.h"
#include "search/search_board.h"
#include "search/search_settings.h"
#include "search/search_types.h"
#include "search/threat_detection.h"

namespace {
// A pair of settings: the full size and the limited one.
struct Bonus {
  const std::int32_t& full;
  const std::int32_t& limited;
  std::int32_t For(bool full_extension) const { return full_extension ? full : limited; }
};

const Bonus DIRECT_CHECK{full_simple_check_extension_bonus, limited_simple_check_extension_bonus};
const Bonus DISCOVERED_CHECK{full_discovered_check_extension_bonus,
                             limited_discovered_check_extension_bonus};
const Bonus DOUBLE_CHECK{full_double_check_extension_bonus, limited_double_check_extension_bonus};
const Bonus SINGLE_MOVE{full_single_move_extension_bonus, limited_single_move_extension_bonus};
const Bonus RECAPTURE{full_recapture_extension_bonus, limited_recapture_extension_bonus};
const Bonus PASSER_SIXTH_MIDDLEGAME{full_passer_6th_rank_extension_bonus__non_endgame,
                                    limited_passer_6th_rank_extension_bonus__non_endgame};
const Bonus PASSER_SIXTH_ENDGAME{full_passer_6th_rank_extension_bonus__endgame,
                                 limited_passer_6th_rank_extension_bonus__endgame};
const Bonus PAWN_SEVENTH_MIDDLEGAME{full_passer_7th_rank_extension_bonus__non_endgame,
                                    limited_passer_7th_rank_extension_bonus__non_endgame};
const Bonus PAWN_SEVENTH_ENDGAME{full_passer_7th_rank_extension_bonus__endgame,
                                 limited_passer_7th_rank_extension_bonus__endgame};
const Bonus ROOK_SEVENTH{full_rook_on_7th_rank_extension_bonus,
                         limited_rook_on_7th_rank_extension_bonus};
const Bonus QUEEN_ATTACKED_BONUS{full_queen_attacked_extension_bonus,
                                 limited_queen_attacked_extension_bonus};
const Bonus PERPETUAL_CHECK{full_perpetual_check_threat_extension_bonus,
                            limited_perpetual_check_threat_extension_bonus};
const Bonus NEW_PIN{full_pin_threat_extension_bonus__new_pin,
                    limited_pin_threat_extension_bonus__new_pin};
const Bonus TIGHTENED_PIN{full_pin_threat_extension_bonus__tightend_pin,
                          limited_pin_threat_extension_bonus__tightend_pin};
const Bonus HASHED_PIN{full_pin_threat_extension_bonus__hashed_pin,
                       limited_pin_threat_extension_bonus__hashed_pin};
const Bonus MATE_THREAT_BONUS{full_mate_threat_extension_bonus,
                              limited_mate_threat_extension_bonus};
const Bonus DELAYED_CAP{full_delayed_extensions_bonus, limited_delayed_extensions_bonus};
const Bonus INSTANT_CAP{full_instant_extensions_bonus, limited_instant_extensions_bonus};
const Bonus TOTAL_CAP{full_total_extensions_bonus, limited_total_extensions_bonus};

// Above these distances a change of the kind of game counts half as much again.
constexpr std::int32_t LONG_DISTANCE_PV = 384;
constexpr std::int32_t LONG_DISTANCE = 512;

bool IsMiddlegameType(int position_type) { return position_type < ENDGAME_EQUAL_PIECES; }

// Near the root the full sizes apply: up to a ply that grows with the iteration.
bool IsFullExtension(const NodeState& node, int iteration) {
  if (node.distance <= 0) {
    const bool never = node.IsPv() ? never_full_extension_in_quiescence_if_searching_pv_move
                                   : never_full_extension_in_quiescence_if_not_searching_pv_move;
    if (never) return false;
  }
  const int limit = iteration * full_extension_root_depth_related_factor_multiplicator /
                        full_extension_root_depth_related_factor_divisor +
                    full_extension_minimum_depth;
  return node.ply <= limit;
}

// The threats the node faces, as found by the null move, the detectors and the table.
void ExtendForThreats(NodeState& node) {
  const bool full = node.full_extension;
  if (node.node_flags & MATE_THREAT) {
    node.node_extension += MATE_THREAT_BONUS.For(full);
    node.extension_flags |= EXTENDED_MATE_THREAT;
  }
  if (node.node_flags & PERPETUAL_CHECK_THREAT) {
    node.node_extension += PERPETUAL_CHECK.For(full);
    node.extension_flags |= EXTENDED_PERPETUAL_CHECK;
  }
  if (node.node_flags & PIN_THREAT) {
    node.extension_flags |= EXTENDED_PIN;
    const Bonus* pin = &HASHED_PIN;
    if (!always_assume_that_pin_threat_was_hashed) {
      if (node.pin_state == PIN_NEW) pin = &NEW_PIN;
      if (node.pin_state == PIN_TIGHTENED) pin = &TIGHTENED_PIN;
    }
    node.node_extension += pin->For(full);
  }
  if (!(node.node_flags & (QUEEN_ATTACKED | QUEEN_NOT_ATTACKED))) {
    node.node_flags |= node.board.IsQueenAttackedByLesser() ? QUEEN_ATTACKED : QUEEN_NOT_ATTACKED;
  }
  if (node.node_flags & QUEEN_ATTACKED) {
    node.node_extension += QUEEN_ATTACKED_BONUS.For(full);
    node.extension_flags |= EXTENDED_QUEEN_ATTACKED;
  }
}

// A change of the kind of game is worth a look deeper (a pawn ending), or less (an ending without
// pawns, which is long and clear); staying in it goes on by small steps.
void ExtendForPositionType(NodeState& node, bool too_shallow) {
  SearchBoard& board = node.board;
  const int previous = board.position_types[node.ply];
  std::int32_t adjust;
  if (previous == node.position_type) {
    adjust = TypeKeptExtension[previous];
  } else {
    board.position_types[node.ply + 1] = node.position_type;
    adjust = TypeChangedExtension[node.position_type];
    if (adjust > 0) {
      const std::int32_t long_distance = node.IsPv() ? LONG_DISTANCE_PV : LONG_DISTANCE;
      if (node.distance > long_distance) adjust += adjust >> 1;
      if (!node.IsPv()) adjust >>= 1;
    }
  }
  if (too_shallow) {
    if (adjust < 0) node.node_extension += adjust;
    return;
  }
  if (adjust > 0 && !node.full_extension) adjust >>= 2;
  node.node_extension += adjust;
}

bool IsSeventhOrSecond(int square) { return Rank(square) == 6 || Rank(square) == 1; }
bool IsSixthOrThird(int square) { return Rank(square) == 5 || Rank(square) == 2; }

std::int32_t PawnExtension(NodeState& node, Move move) {
  const SearchBoard& board = node.board;
  const int to = To(move);
  const bool middlegame = IsMiddlegameType(node.position_type);
  const bool full = node.full_extension;
  if (IsSeventhOrSecond(to)) {
    node.extension_flags |= EXTENDED_PAWN_SEVENTH;
    return (middlegame ? PAWN_SEVENTH_MIDDLEGAME : PAWN_SEVENTH_ENDGAME).For(full);
  }
  if (!IsSixthOrThird(to)) return 0;
  if (passer_must_reach_6th_rank_by_non_capture_move && IsCapture(move)) return 0;
  const int side = int(board.side_on_move);
  if (side == WHITE ? to < A6 : to > H3) return 0;
  if (BoardTables.PassedPawnMask[side][to] & board.Enemy().pawns) return 0;
  node.extension_flags |= EXTENDED_PASSER_SIXTH;
  return (middlegame ? PASSER_SIXTH_MIDDLEGAME : PASSER_SIXTH_ENDGAME).For(full);
}

// A rook that arrives on the seventh rank, where the enemy king is held on its back ranks.
std::int32_t RookExtension(NodeState& node, Move move) {
  const SearchBoard& board = node.board;
  if (!IsSeventhOrSecond(To(move)) || IsSeventhOrSecond(From(move))) return 0;
  const int king = int(board.Enemy().king_square);
  if (board.side_on_move == WHITE ? king < A7 : king > H2) return 0;
  node.extension_flags |= EXTENDED_ROOK_SEVENTH;
  return ROOK_SEVENTH.For(node.full_extension);
}

std::int32_t RecaptureExtension(NodeState& node, Move move) {
  const int captured = CapturedType(move);
  const Move last = node.board.played_moves[node.ply];
  if (captured < min_captured_piece_for_recapture_extension ||
      (node.flags & SKIP_RECAPTURE_EXTENSION) || node.ply == 0 ||
      PiecePoints[captured] != PiecePoints[CapturedType(last)]) {
    return 0;
  }
  if (capture_and_recapture_must_be_on_the_same_sq && To(move) != To(last)) return 0;
  node.extension_flags |= EXTENDED_RECAPTURE;
  return RECAPTURE.For(node.full_extension);
}

std::int32_t CheckExtension(NodeState& node, Move move) {
  const bool full = node.full_extension;
  switch (CheckKind(move)) {
    case 1: node.extension_flags |= EXTENDED_DIRECT_CHECK; return DIRECT_CHECK.For(full);
    case 2: node.extension_flags |= EXTENDED_DISCOVERED_CHECK; return DISCOVERED_CHECK.For(full);
    case 3: node.extension_flags |= EXTENDED_DOUBLE_CHECK; return DOUBLE_CHECK.For(full);
    default: return 0;
  }
}
}  // namespace

void ExtendNode(NodeState& node, int iteration) {
  SearchBoard& board = node.board;
  board.position_types[node.ply + 1] = board.position_types[node.ply];
  node.full_extension = false;
  node.node_extension = 0;
  node.extension_flags = 0;
  if (!enable_search_extensions) return;

  const std::int32_t min_depth = node.IsPv()
                                     ? min_depth_for_search_extensions_if_searching_pv_move
                                     : min_depth_for_search_extensions_if_not_searching_pv_move;
  const bool too_shallow = node.distance < min_depth;
  if (!too_shallow) {
    node.full_extension = IsFullExtension(node, iteration);
    ExtendForThreats(node);
  }
  if (enable_position_type_dependent_search_extensions &&
      !IsTactical(board.played_moves[node.ply])) {
    ExtendForPositionType(node, too_shallow);
  }
  node.node_extension = std::min(node.node_extension, DELAYED_CAP.For(node.full_extension));
}

std::int32_t ExtendMove(NodeState& node, Move move) {
  node.extension_flags &= ~EXTENDED_CHECKS;
  std::int32_t extension = CheckExtension(node, move);
  extension += RecaptureExtension(node, move);
  if (MovedType(move) == PAWN) extension += PawnExtension(node, move);
  if (MovedType(move) == ROOK) extension += RookExtension(node, move);
  if (node.node_flags & SINGLE_REPLY) {
    extension += SINGLE_MOVE.For(node.full_extension);
    node.extension_flags |= EXTENDED_SINGLE_REPLY;
  }
  const bool full = node.full_extension;
  extension = std::min(extension, INSTANT_CAP.For(full));
  const std::int32_t total = std::min(extension + node.node_extension, TOTAL_CAP.For(full));
  return node.distance + total;
}
