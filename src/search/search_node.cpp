#include "search/search_node.h"

#include "chess/move_generator.h"
#include "evaluation/evaluate.h"
#include "search/endgame_probes.h"
#include "search/hash.h"
#include "search/internal_iterative_deepening.h"
#include "search/move_picker.h"
#include "search/node_state.h"
#include "search/null_move.h"
#include "search/position_type.h"
#include "search/quiescence_filter.h"
#include "search/search_extensions.h"
#include "search/search_serial.h"
#include "search/search_settings.h"
#include "search/search_types.h"
#include "search/selective_pruning.h"
#include "search/threat_detection.h"
#include "search/transposition_cutoff.h"

namespace {
// Below any score a search can give: the mark that no move of a node was searched.
constexpr Score NO_MOVE_SEARCHED = -MATE;

// A perpetual may go on below the depth of quiet checks, but not for ever.
constexpr std::int32_t PERPETUAL_CHECK_LIMIT = -256;

// The pieces that stand on the back ranks at the start, by square (0: none or a queen, whose
// move does not count as development).
constexpr int BackRankPiece(int square) {
  constexpr int rank_pieces[8] = {ROOK, KNIGHT, BISHOP, 0, KING, BISHOP, KNIGHT, ROOK};
  return Rank(square) == 0 || Rank(square) == 7 ? rank_pieces[File(square)] : 0;
}

// Material changes the kind of game, and so does the development of a piece in the opening; any
// other move hands the type down.
int RefinePositionType(const SearchBoard& board, int position_type) {
  const Move last = board.played_moves[board.ply];
  if (last == INVALID) return position_type;
  if (IsCapture(last) || IsPromotion(last) ||
      (position_type == OPENING && BackRankPiece(From(last)) == MovedType(last))) {
    return ClassifyPosition(board, position_type);
  }
  return position_type;
}

// Whether the static evaluation may end the node: not far above the horizon, and not when the
// position holds a threat that the evaluation cannot see.
bool MayStandPat(std::int32_t distance, int position_type, std::uint32_t node_flags) {
  if (distance > 0) {
    if (distance > max_distance_for_stand_pat_checks) return false;
    if (no_stand_pat_check_if_full_searching_simple_endgames && !IsSimpleEndgame(position_type)) {
      return false;
    }
  }
  if (node_flags & MATE_THREAT) return false;
  return !((node_flags & PIN_THREAT) && skip_stand_pat_because_of_pin_threat);
}

// The selection of a quiescence node: captures and queen promotions, checks near the horizon,
// and only checks when just a mate reaches beta.
int QuiescenceMask(const SearchBoard& board, std::int32_t distance, Score beta) {
  int mask = GEN_ALL_CHECKS;
  if (distance < generate_checking_moves_min_distance) {
    // A side that has been giving queen checks may go on doing so: it may be a perpetual.
    const int ply = int(board.ply);
    const Move last = ply >= 1 ? board.played_moves[ply - 1] : INVALID;
    const bool perpetual = ply >= 1 && board.perpetual_records[ply - 1].flag != 0 &&
                           MovedType(last) == QUEEN && GivesCheck(last) &&
                           distance >= PERPETUAL_CHECK_LIMIT && beta >= board.DrawScore();
    mask = perpetual ? GEN_ALL_CHECKS : 0;
  }
  if (beta <= MATE_THRESHOLD) {
    mask |= GEN_CAPTURES | GEN_QUEEN_PROMOTIONS;
    if (distance >= generate_castling_moves_in_quiescence_min_distance) mask |= GEN_CASTLING;
  }
  return mask;
}

// The table's answer for the node: a decided bound ends it; an undecided entry gives the move, the
// position type and the node flags, so that they need not be found out again.
enum class Probed { DECIDED, KNOWN, UNKNOWN };

Probed ProbeTable(NodeState& node, Score& value) {
  SearchBoard& board = node.board;
  if (required_distance_to_probe_hashtables > node.distance) return Probed::UNKNOWN;
  Move move = INVALID;
  int type = 0;
  int flags = 0;
  switch (TRANSPOSITION_TABLE.Probe(board.Key(), node.ply, node.distance, node.beta, move, type,
                                    flags)) {
    case HASH_BELOW_BETA:
      board.SetLine(node.ply, move);
      value = node.beta - 1;
      return Probed::DECIDED;
    case HASH_AT_LEAST_BETA:
      board.SetLine(node.ply, move);
      value = node.beta;
      return Probed::DECIDED;
    case HASH_UNDECIDED:
      // A move that does not fit can only come from another position with the same key: the
      // entry is then treated as absent.
      if (move != INVALID && !board.IsMovePseudoLegal(move)) return Probed::UNKNOWN;
      node.hash_move = move;
      node.position_type = type;
      node.node_flags = std::uint32_t(flags);
      return Probed::KNOWN;
    default: return Probed::UNKNOWN;
  }
}

void RememberCutoff(SearchBoard& board, Move move, std::int32_t distance) {
  const int ply = int(board.ply);
  KillerPair& killers = board.killers[ply];
  if (move != killers.first) {
    killers.second = killers.first;
    killers.first = move;
  }
  if (!(no_history_bonus_for_tactical_moves && IsTactical(move))) {
    board.history.Update(move, int(board.side_on_move), distance, ply);
  }
}

// The search flags of a child: the node's switches for the next ply, and a check that the
// settings want to keep from being pruned behind.
std::uint32_t ChildFlags(const NodeState& node, Move move) {
  std::uint32_t flags = FlagsForChildren(node.flags);
  if (node.extension_flags & EXTENDED_DOUBLE_CHECK) flags |= SKIP_RECAPTURE_EXTENSION;
  if (GivesCheck(move)) {
    if (skip_razoring_when_last_move_was_a_check) flags |= CHILD_SKIP_RAZORING;
    if (skip_extended_futility_pruning_when_last_move_was_a_check) {
      flags |= CHILD_SKIP_EXTENDED_FUTILITY;
    }
  }
  return flags;
}

// Whether a quiescence node looks at the move at all.
bool IsFilteredOut(const NodeState& node, Move move) {
  return node.distance < 1 && !node.board.InCheck() && !(node.node_flags & SINGLE_REPLY) &&
         !(always_search_hash_move_in_quiescence && move == node.hash_move) &&
         !PassesQuiescenceFilter(move, node.distance, node.beta, node.position_type, node.board);
}

// Searches one move of the loop and answers its score from the node's view.
Score SearchMove(NodeState& node, Move move, int move_count, std::int32_t move_distance,
                 std::int32_t reduction) {
  SearchBoard& board = node.board;
  board.played_moves[node.ply + 1] = move;
  board.MakeMove(move);
  const std::uint32_t child_flags = ChildFlags(node, move);
  const int child_type = move_count == 1 ? -node.node_type : CUT;
  const Score child_beta = 1 - node.beta;
  Score score = -SearchNode(board, node.ChildMoves(), child_beta, move_distance - ONE_PLY,
                            child_type, node.position_type, child_flags);
  // A reduced move must prove its cutoff at the full distance.
  if (enable_verification_search && score >= node.beta && reduction > 0) {
    score = -SearchNode(board, node.ChildMoves(), child_beta, move_distance - ONE_PLY + reduction,
                        node.IsPv() ? PV : ALL, node.position_type, child_flags);
  }
  board.UndoMove(move);
  return score;
}

// The steps before the move loop that may decide the node at once.
bool DecidedBeforeMoves(NodeState& node, Score& value) {
  SearchBoard& board = node.board;
  const Probed probed = ProbeTable(node, value);
  if (probed == Probed::DECIDED) return true;
  if (probed == Probed::UNKNOWN) node.position_type = RefinePositionType(board, node.position_type);
  if (ProbeEndgameDatabases(board, node.position_type, node.node_type, node.distance, node.beta,
                            value)) {
    return true;
  }
  DetectPinThreat(node);
  if (!board.InCheck()) {
    if (MayStandPat(node.distance, node.position_type, node.node_flags) &&
        Evaluate(board.evaluation, board, node.beta, node.position_type) >= node.beta) {
      value = node.beta;
      return true;
    }
  } else if (enable_perpetual_check_detection) {
    DetectPerpetualCheck(node);
  }
  return false;
}

// What the move loop found.
struct Outcome {
  Score best = NO_MOVE_SEARCHED;
  Move best_move = INVALID;
  Move cutoff_move = INVALID;  // the move that reached beta, if one did
};

// The move loop. True when the node was decided without it (no legal move, no candidate), with
// `value` as its answer.
bool SearchMoves(NodeState& node, Outcome& outcome, Score& value) {
  MovePicker picker(node);
  int move_count = 0;  // pruned and filtered moves count too
  Move move = INVALID;
  for (;;) {
    const Pick pick = picker.Next(move, value);
    if (pick == Pick::NODE_DECIDED) return true;
    if (pick == Pick::NONE_LEFT) return false;
    ++move_count;
    if (!IsFilteredOut(node, move)) {
      const std::int32_t extended =
          enable_search_extensions ? ExtendMove(node, move) : node.distance;
      if (!IsFutile(node, move)) {
        const std::int32_t late = LateMoveReduction(node, move, move_count);
        const Score score =
            SearchMove(node, move, move_count, extended - late, node.razor_reduction + late);
        if (score > outcome.best) {
          outcome.best = score;
          node.board.ExtendLine(node.ply, move);
          if (score >= node.beta) {
            outcome.cutoff_move = move;
            return false;
          }
          outcome.best_move = move;
        }
        // A cut node that did not cut at its first move is expected to be an all node.
        if (node.node_type == CUT) node.node_type = ALL;
      }
    }
    if (picker.WasLast()) return false;
  }
}

// A cutoff teaches the killers and the history; every searched node teaches the table.
Score StoreOutcome(NodeState& node, Outcome& outcome) {
  SearchBoard& board = node.board;
  const bool cutoff = outcome.cutoff_move != INVALID;
  if (cutoff) {
    outcome.best_move = outcome.cutoff_move;
    RememberCutoff(board, outcome.cutoff_move, node.distance);
  }
  if (node.distance >= required_distance_to_store_hashtables) {
    TRANSPOSITION_TABLE.Store(MakeBoundEntry(board.Key(), outcome.best_move, node.position_type,
                                             int(node.node_flags & STORED_NODE_FLAGS),
                                             node.distance, ToNodeRelative(outcome.best, node.ply),
                                             cutoff));
  }
  return outcome.best;
}
}  // namespace

int GenerateForNode(SearchBoard& board, Move* moves, Move*& end, std::int32_t distance,
                    Score beta, Score& value) {
  moves[MAX_MOVES] = INVALID;
  if (distance < 1 && !board.InCheck()) {
    end = GenerateMoves(moves, board, QuiescenceMask(board, distance, beta));
    return MOVES_GENERATED;
  }
  end = GenerateMoves(moves, board, GEN_EVERY_MOVE);
  if (end == moves) {
    value = Answer(beta, board.InCheck() ? MatedAt(int(board.ply)) : board.DrawScore());
    return NO_LEGAL_MOVE;
  }
  return end - moves == 1 ? SINGLE_LEGAL_MOVE : MOVES_GENERATED;
}

Score SearchNode(SearchBoard& board, Move* moves, Score beta, std::int32_t distance, int node_type,
                 int position_type, std::uint32_t flags) {
  const int ply = int(board.ply);
  if (ply > SearchBoard::LAST_PLY) return beta - 1;
  if (--board.poll_countdown == 0) board.Poll();
  ++board.nodes;
  board.principal_variation[ply][0] = INVALID;
  if ((ply & 7) == 0) board.history.Age(ply);

  // No line can be worse than being mated now, nor better than mating with the next move.
  if (beta < MatedAt(ply) + 1) return beta;
  if (beta >= MateBound(ply)) return beta - 1;
  if (board.IsDrawByRule()) return Answer(beta, board.DrawScore());

  NodeState node{board, ply, beta, distance, node_type, position_type, position_type, flags};
  node.moves = node.end = moves;
  Score value = 0;
  if (DecidedBeforeMoves(node, value)) return value;

  Outcome outcome;
  if (MayTryTranspositionCutoff(node) && board.HasRoomForMoves(node.moves)) {
    node.generated = node.list_from_cutoff_test = true;
    if (TryTranspositionCutoff(board, node.moves, node.end, node.hash_move, value,
                               node.node_flags, beta, node.distance)) {
      outcome.best = value;
      outcome.cutoff_move = node.hash_move;
      return StoreOutcome(node, outcome);
    }
    if (node.end == node.moves) return value;
  }

  if (NullMoveCutsOff(node)) return beta;
  ExtendNode(node, board.search->iteration);
  PrepareSelectivePruning(node);
  if (!FindMoveByInternalDeepening(node)) return beta - 1;
  if (SearchMoves(node, outcome, value)) return value;
  if (outcome.cutoff_move == INVALID && outcome.best == NO_MOVE_SEARCHED) {
    return beta - 1;  // nothing searched, nothing learned
  }
  return StoreOutcome(node, outcome);
}
