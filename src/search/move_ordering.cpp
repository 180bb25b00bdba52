#include "search/move_ordering.h"

#include <algorithm>
#include <utility>

#include "chess/board_tables.h"
#include "chess/random_numbers.h"
#include "search/quiescence_filter.h"
#include "search/search_settings.h"
#include "search/search_types.h"
#include "search/square_value_tables.h"
#include "search/static_exchange.h"

namespace {
const std::int32_t* CheckBonuses(bool playing_for_mate) {
  return playing_for_mate ? checking_move_sorting_bonus_if_playing_for_mate
                          : checking_move_sorting_bonus_if_not_playing_for_mate;
}

// The low 16 bits of the engine's one random stream: the ordering draws from it in list order,
// so a run stays repeatable.
int Random16() { return RandomNumber() & 0xFFFF; }

Move* FindMove(Move* begin, Move* end, Move move) {
  for (Move* m = begin; m != end; ++m) {
    if (SameMove(*m, move)) return m;
  }
  return nullptr;
}

// Moves the word at `from` to `to`; the words in between move up one place to make room.
void RotateTo(Move* to, Move* from) {
  if (to <= from) {
    std::rotate(to, from, from + 1);
  } else {
    std::rotate(from, from + 1, to + 1);
  }
}

std::int32_t SafeCheckBonus(Move move, int near) {
  if (MovedType(move) != QUEEN) return safe_non_queen_check_sorting_bonus;
  if (near == 1) return safe_queen_check_very_close_to_king_sorting_bonus;
  if (near == 2) return safe_queen_check_quite_close_to_king_sorting_bonus;
  return safe_queen_check_not_close_to_king_sorting_bonus;
}

// The sort value of a capture, promotion or check, from its exchange and the threats it makes.
int TacticalValue(Move move, const SortContext& context, const std::int32_t* checks) {
  const Board& board = context.board;
  const int kind = CheckKind(move);
  std::int32_t base = checks[kind] + tactical_moves_default_sorting_value;
  std::int32_t gain = 0;
  const int near = BoardTables.Distance[board.Enemy().king_square][To(move)];
  bool judged = false;
  if (IsPromotion(move)) {
    if (PromotionType(move) == QUEEN) {
      gain = 920;
    } else if (PromotionType(move) == KNIGHT && GivesDirectCheck(move)) {
      gain = 205;
    } else {
      gain = PieceValue[PromotionType(move)] - 1020;
      judged = true;
    }
  }
  if (!judged) {
    base += capture_move_sorting_bonus[CapturedType(move)];
    const std::int32_t see = StaticExchange(move, board);
    // A losing capture that uncovers a check away from the king is judged by the check alone.
    const bool check_only = see <= 0 && kind > 1 && near > 1;
    if (!check_only) gain += see;
    if (kind != 0) {
      if (see >= -10) {
        if (GivesDirectCheck(move)) base += SafeCheckBonus(move, near);
        gain += ThreatAfterMove(move, board);
      } else if (near > 1 && kind > 1) {
        gain += ThreatAfterMove(move, board);
      }
    }
  }
  return std::clamp(base + ValueOfGain(gain), tactical_moves_minimum_sorting_value,
                    MAX_SORT_VALUE);
}

// Tactical moves get their values and go to the front, the hash move goes behind the list, and
// the promising tactical moves are gathered and sorted at the very front.
void PrepareList(SortState& state, const SortContext& context, Move* moves, Move*& end) {
  const std::int32_t* checks = CheckBonuses(context.beta > MATE_THRESHOLD);
  state.tactical_end = moves;
  for (Move* m = moves; m != end; ++m) {
    if (!IsTactical(*m)) continue;
    *m = WithSortValue(*m, TacticalValue(*m, context, checks));
    std::swap(*m, *state.tactical_end++);
  }
  if (context.hash_move != INVALID) {
    const bool tactical = IsTactical(context.hash_move);
    Move* found = tactical ? FindMove(moves, state.tactical_end, context.hash_move)
                           : FindMove(state.tactical_end, end, context.hash_move);
    if (found != nullptr) {
      if (tactical) std::swap(*found, *--state.tactical_end), found = state.tactical_end;
      std::swap(*found, *--end);
    }
  }
  state.promising_end = moves;
  for (Move* m = moves; m != state.tactical_end; ++m) {
    if (SortValue(*m) >= promising_move_minimum_sorting_value) std::swap(*m, *state.promising_end++);
  }
  SortMovesDescending(moves, state.promising_end);
}

// A quiet killer joins the tactical part, at its border with the quiet moves.
Move* AdmitQuietKiller(SortState& state, Move* killer) {
  if (killer < state.tactical_end) return killer;
  std::swap(*killer, *state.tactical_end);
  return state.tactical_end++;
}

void PlaceFirstKiller(SortState& state, Move* moves, Move* killer) {
  if (if_killer1_is_promising_tactical_move_then_search_first && killer < state.promising_end) {
    RotateTo(moves, killer);
    return;
  }
  const long promising_before = state.promising_end - moves;
  killer = AdmitQuietKiller(state, killer);
  if (killer >= state.promising_end) {
    std::swap(*killer, *state.promising_end);
    killer = state.promising_end++;
  }
  // At most so many promising moves are tried before the first killer.
  RotateTo(moves + std::min<long>(promising_before, max_promising_tacticals_before_killer_one),
           killer);
}

void PlaceSecondKiller(SortState& state, Move* killer) {
  if (killer < state.promising_end) return;
  killer = AdmitQuietKiller(state, killer);
  std::swap(*killer, *state.promising_end++);
}

// A killer is looked for where a move of its kind stands; one that is not there is illegal here.
Move* FindKiller(const SortState& state, Move* moves, Move* end, Move killer) {
  if (killer == INVALID) return nullptr;
  return IsTactical(killer) ? FindMove(moves, state.tactical_end, killer)
                            : FindMove(state.tactical_end, end, killer);
}

void PlaceKillers(SortState& state, const SortContext& context, Move* moves, Move* end) {
  Move killer1 = context.killer1;
  Move killer2 = context.killer2;
  if (SameMove(killer1, context.hash_move)) {
    killer1 = INVALID;
  } else if (SameMove(killer2, context.hash_move)) {
    killer2 = INVALID;
  }
  if (Move* found = FindKiller(state, moves, end, killer1)) PlaceFirstKiller(state, moves, found);
  if (Move* found = FindKiller(state, moves, end, killer2)) PlaceSecondKiller(state, found);
}

// Quiet moves with a history value get it as sort value and go to the front of the quiet part.
void PartitionHistoryMoves(SortState& state, const SortContext& context, Move* end) {
  state.history_end = state.tactical_end;
  const int side = int(context.board.side_on_move);
  const int ply = int(context.board.ply);
  for (Move* m = state.tactical_end; m != end; ++m) {
    const std::uint32_t count = context.history.Value(*m, side, ply);
    if (count == 0) continue;
    const int value = count > 65535 ? MAX_SORT_VALUE : std::max(1, int(count >> 7));
    *m = WithSortValue(*m, std::min(value, MAX_SORT_VALUE));
    std::swap(*m, *state.history_end++);
  }
}

bool HistoryBeforeTacticalsEnabled(const SortContext& context) {
  if (!enable_best_history_moves_before_remaining_tacticals) return false;
  if (max_history_moves_before_remaining_tacticals == 0) return false;
  if (search_all_tacticals_first_if_playing_for_mate && context.beta > MATE_THRESHOLD) {
    return false;
  }
  // At its limit the margin switches the stage off instead of letting every position in.
  if (max_material_margin_to_search_history_moves_before_tacticals == MATERIAL_MARGIN_LIMIT) {
    return false;
  }
  const std::int32_t needed = context.beta - context.board.Material() -
                              QuiescenceMargin[context.position_type];
  return needed <= max_material_margin_to_search_history_moves_before_tacticals;
}

// The best few history moves, moved in front of the remaining tactical moves. Returns how many.
int PromoteBestHistoryMoves(SortState& state, const SortContext& context, Move* end) {
  PartitionHistoryMoves(state, context, end);
  if (state.whole_list) {
    SortMovesDescending(state.tactical_end, state.history_end);
    state.history_sorted = true;
  }
  int added = 0;
  while (added < max_history_moves_before_remaining_tacticals &&
         state.tactical_end != state.history_end) {
    Move* best = std::max_element(state.tactical_end, state.history_end);
    std::swap(*best, *state.tactical_end);
    std::swap(*state.tactical_end, *state.promising_end);
    ++state.promising_end;
    ++state.tactical_end;
    ++added;
  }
  return added;
}

bool StaticOrderingEnabled() {
  return randomize_move_ordering_of_remaining_moves != 0 ||
         enable_static_move_ordering_piece_dependent_bonus ||
         enable_static_move_ordering_to_sq_bonus || enable_static_move_ordering_from_sq_malus;
}

// Quiet moves nobody knows anything about: a little randomness and the square tables.
void GiveStaticValues(const SortContext& context, Move* begin, Move* end) {
  const SquareValueSet& table =
      context.position_type < 2 ? OPENING_SQUARE_VALUES : ENDING_SQUARE_VALUES;
  const int side = int(context.board.side_on_move);
  for (Move* m = begin; m != end; ++m) {
    const int piece = MovedType(*m);
    int value = 50;
    if (randomize_move_ordering_of_remaining_moves != 0) {
      value += Random16() % randomize_move_ordering_of_remaining_moves;
    }
    if (enable_static_move_ordering_piece_dependent_bonus) value += table.piece_bonus[piece - 1];
    if (enable_static_move_ordering_to_sq_bonus) value += table.Value(piece, To(*m), side);
    if (enable_static_move_ordering_from_sq_malus) value -= table.Value(piece, From(*m), side) / 2;
    if (value > 0) *m = WithSortValue(*m, std::min(value, MAX_SORT_VALUE));
  }
}

void SetBatch(Move*& batch_begin, Move*& batch_end, Move* begin, Move* end) {
  batch_begin = begin;
  batch_end = end;
}
}  // namespace

std::int32_t ValueOfGain(std::int32_t gain) {
  if (gain < -10) {
    return gain * material_loss_sorting_malus__multiplicator /
               material_loss_sorting_malus__divisor -
           material_loss_sorting_malus__minimum;
  }
  if (gain <= very_promising_tactical_move_margin) {
    return gain * material_quite_equal_sorting_bonus__multiplicator /
               material_quite_equal_sorting_bonus__divisor +
           material_quite_equal_sorting_bonus__minimum;
  }
  return gain * material_win_sorting_bonus__multiplicator / material_win_sorting_bonus__divisor +
         material_win_sorting_bonus__minimum;
}

// Shell sort with the gaps 3 and 1: lists are short, and this is cheap on nearly sorted ranges.
void SortMovesDescending(Move* begin, Move* end) {
  const long n = end - begin;
  for (long gap : {3L, 1L}) {
    for (long i = gap; i < n; ++i) {
      const Move word = begin[i];
      long j = i;
      for (; j >= gap && begin[j - gap] < word; j -= gap) begin[j] = begin[j - gap];
      begin[j] = word;
    }
  }
}

int NextMoves(SortState& state, const SortContext& context, Move* moves, Move*& end,
              Move*& batch_begin, Move*& batch_end) {
  if (state.stage == 0) {
    state.whole_list = context.node_type == ALL || context.hash_move != INVALID || end - moves <= 6;
    PrepareList(state, context, moves, end);
    if (enable_killer_heuristic_for_move_ordering) PlaceKillers(state, context, moves, end);
    state.history_end = nullptr;
    if (state.promising_end != moves && !state.whole_list) {
      state.stage = 1;
      SetBatch(batch_begin, batch_end, moves, state.promising_end);
      return BATCH_SORTED;
    }
  }
  if (state.stage <= 1 && HistoryBeforeTacticalsEnabled(context)) {
    Move* first_added = state.promising_end;
    if (PromoteBestHistoryMoves(state, context, end) > 0 && !state.whole_list) {
      state.stage = 2;
      SetBatch(batch_begin, batch_end, first_added, state.promising_end);
      return BATCH_SORTED;
    }
  }
  if (state.stage <= 2) {
    SortMovesDescending(state.promising_end, state.tactical_end);
    if (state.promising_end != state.tactical_end && !state.whole_list) {
      state.stage = 3;
      SetBatch(batch_begin, batch_end, state.promising_end, state.tactical_end);
      return BATCH_SORTED;
    }
  }
  if (state.stage <= 3) {
    if (state.history_end == nullptr) PartitionHistoryMoves(state, context, end);
    if (!state.history_sorted) SortMovesDescending(state.tactical_end, state.history_end);
    state.history_sorted = true;
    if (state.tactical_end != state.history_end && !state.whole_list) {
      state.stage = 4;
      SetBatch(batch_begin, batch_end, state.tactical_end, state.history_end);
      return BATCH_SORTED;
    }
  }
  state.stage = 5;
  if (StaticOrderingEnabled()) GiveStaticValues(context, state.history_end, end);
  if (!state.whole_list) {
    SetBatch(batch_begin, batch_end, state.history_end, end);
    return BATCH_LAST;
  }
  SortMovesDescending(state.history_end, end);
  SetBatch(batch_begin, batch_end, moves, end);
  return BATCH_SORTED | BATCH_LAST;
}

void SortQuiescenceMoves(Move* moves, Move*& end, Move hash_move, Move killer1, Move killer2,
                         std::int32_t beta, const Board& board) {
  if (SameMove(killer1, hash_move)) {
    killer1 = INVALID;
  } else if (SameMove(killer2, hash_move)) {
    killer2 = INVALID;
  }
  const std::int32_t* checks = CheckBonuses(beta > MATE_THRESHOLD);
  const std::int32_t gap = beta - board.Material();
  for (Move* m = moves; m != end;) {
    if (hash_move != INVALID && SameMove(*m, hash_move)) {
      std::swap(*m, *--end);  // it stays behind the list
      continue;
    }
    std::int32_t gain = 0;
    if (IsCapture(*m)) gain = PieceValue[CapturedType(*m)] - PieceValue[MovedType(*m)] / 8;
    if (IsPromotion(*m)) gain += PieceValue[PromotionType(*m)] - 100;
    std::int32_t value = checks[CheckKind(*m)] + tactical_moves_minimum_sorting_value +
                         ValueOfGain(gain) + Random16() % 10;
    if (gap <= gain) value += wins_enough_material_to_reach_at_least_beta__quiescence;
    if (killer1 != INVALID && SameMove(*m, killer1)) {
      value += killer1_bonus__quiescence;
    } else if (killer2 != INVALID && SameMove(*m, killer2)) {
      value += killer2_bonus__quiescence;
    }
    *m = WithSortValue(*m, std::clamp(value, 0, MAX_SORT_VALUE));
    ++m;
  }
}
