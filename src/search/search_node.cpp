#include "search/search_node.h"

#include <algorithm>

#include "chess/move_generator.h"
#include "evaluation/evaluate.h"
#include "search/hash.h"
#include "search/move_ordering.h"
#include "search/position_type.h"
#include "search/quiescence_filter.h"
#include "search/search_settings.h"
#include "search/search_types.h"

namespace {
// Every answer of a node is one of two values; this is the comparison they all come from.
inline Score Answer(Score beta, Score value) { return beta <= value ? beta : beta - 1; }

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
    const Move last = board.played_moves[ply - 1];
    const bool perpetual = ply >= 1 && board.perpetual_records[ply - 1].flag != 0 &&
                           MovedType(last) == QUEEN && GivesCheck(last) && distance >= -256 &&
                           beta >= board.DrawScore();
    mask = perpetual ? GEN_ALL_CHECKS : 0;
  }
  if (beta < 31767) {
    mask |= GEN_CAPTURES | GEN_QUEEN_PROMOTIONS;
    if (distance >= generate_castling_moves_in_quiescence_min_distance) mask |= GEN_CASTLING;
  }
  return mask;
}

// Takes the next word of a batch: in order from a sorted one, else the largest that is left,
// swapped to the front (the first of equals wins).
Move TakeNext(Move*& begin, Move* end, bool sorted) {
  if (!sorted) std::iter_swap(begin, std::max_element(begin, end));
  return *begin++ & MOVE_MASK;
}

// The stages of the move loop.
enum Stage { HASH_MOVE, FIRST_BATCH, BATCH, LAST };

struct MoveLoop {
  Move* moves = nullptr;
  Move* end = nullptr;  // the end of the list; equal to `moves` while none has been generated
  bool generated = false;
  SortState sort;
  Move* batch_begin = nullptr;
  Move* batch_end = nullptr;
  int batch = 0;
};

// Asks for the next batch; the quiescence list is one unsorted batch, the last.
void NextBatch(MoveLoop& loop, const SearchBoard& board, std::int32_t distance, Score beta,
               Move hash_move, int node_type, int position_type) {
  const KillerPair& killers = board.killers[board.ply];
  if (distance >= 1 || board.InCheck()) {
    const SortContext context{board,        board.history, beta,           hash_move,
                              node_type,    killers.first, killers.second, position_type};
    loop.batch = NextMoves(loop.sort, context, loop.moves, loop.end, loop.batch_begin,
                           loop.batch_end);
  } else {
    SortQuiescenceMoves(loop.moves, loop.end, hash_move, killers.first, killers.second, beta,
                        board);
    loop.batch_begin = loop.moves;
    loop.batch_end = loop.end;
    loop.batch = BATCH_LAST;
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
}  // namespace

int GenerateForNode(SearchBoard& board, Move* moves, Move*& end, std::int32_t distance,
                    Score beta, Score& value) {
  moves[MAX_MOVES] = INVALID;
  if (distance < 1 && !board.InCheck()) {
    end = GenerateMoves(moves, board, QuiescenceMask(board, distance, beta));
    return MOVES_GENERATED;
  }
  end = GenerateMoves(moves, board, GEN_ALL_MOVES | 127);
  if (end == moves) {
    const Score mated = Score(board.ply) - MATE_SCORE;
    value = Answer(beta, board.InCheck() ? mated : board.DrawScore());
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
  if (beta < ply - (MATE_SCORE - 1)) return beta;
  if (beta >= MATE_SCORE - ply) return beta - 1;
  if (board.IsDrawByRule()) return Answer(beta, board.DrawScore());

  Move hash_move = INVALID;
  std::uint32_t node_flags = 0;
  bool known = false;
  if (required_distance_to_probe_hashtables <= distance) {
    int hash_type = 0;
    int hash_flags = 0;
    switch (TRANSPOSITION_TABLE.Probe(board.Key(), ply, distance, beta, hash_move, hash_type,
                                      hash_flags)) {
      case HASH_BELOW_BETA: board.SetLine(ply, hash_move); return beta - 1;
      case HASH_AT_LEAST_BETA: board.SetLine(ply, hash_move); return beta;
      case HASH_UNDECIDED:
        // A move that does not fit can only come from another position with the same key: the
        // entry is then treated as absent.
        if (hash_move == INVALID || board.IsMovePseudoLegal(hash_move)) {
          position_type = hash_type;
          node_flags = std::uint32_t(hash_flags);
          known = true;
        }
        break;
      default: break;
    }
  }
  if (!known) {
    hash_move = INVALID;
    node_flags = 0;
    position_type = RefinePositionType(board, position_type);
  }

  if (!board.InCheck() && MayStandPat(distance, position_type, node_flags) &&
      Evaluate(board.evaluation, board, beta, position_type) >= beta) {
    return beta;
  }

  // The move loop.
  Score best = -MATE_SCORE;  // no move searched yet
  Move best_move = INVALID;
  Move move = INVALID;
  int move_count = 0;
  bool cutoff = false;
  bool hash_move_searched = false;
  const Score child_beta = 1 - beta;
  const std::uint32_t next_ply_flags = FlagsForChildren(flags);
  MoveLoop loop;
  loop.moves = loop.end = moves;
  Stage stage = hash_move != INVALID ? HASH_MOVE : FIRST_BATCH;

  for (;;) {
    if (stage == HASH_MOVE) {
      move = hash_move;
      hash_move_searched = true;
      stage = (node_flags & SINGLE_REPLY) ? LAST : FIRST_BATCH;
    } else if (stage != LAST) {
      if (stage == FIRST_BATCH) {
        if (!loop.generated) {
          if (!board.HasRoomForMoves(moves)) return beta - 1;
          loop.generated = true;
          Score value = 0;
          const int answer = GenerateForNode(board, moves, loop.end, distance, beta, value);
          if (answer == NO_LEGAL_MOVE) return value;
          if (answer == SINGLE_LEGAL_MOVE) {
            node_flags |= SINGLE_REPLY;
            // A single reply is searched (again) with its extension; without extensions a hash
            // move that was already searched is all there is.
            if (!enable_search_extensions && hash_move_searched) break;
            move = moves[0];
            stage = LAST;
          } else if (loop.end == moves) {
            return beta - 1;  // a quiescence node without candidates
          }
        }
        if (stage == FIRST_BATCH) {
          NextBatch(loop, board, distance, beta, hash_move, node_type, position_type);
          stage = BATCH;
        }
      }
      if (stage == BATCH) {
        while (loop.batch_begin == loop.batch_end && !(loop.batch & BATCH_LAST)) {
          NextBatch(loop, board, distance, beta, hash_move, node_type, position_type);
        }
        if (loop.batch_begin == loop.batch_end) break;
        move = TakeNext(loop.batch_begin, loop.batch_end, loop.batch & BATCH_SORTED);
      }
    }

    ++move_count;
    const bool filtered = distance < 1 && !board.InCheck() && !(node_flags & SINGLE_REPLY) &&
                          !(always_search_hash_move_in_quiescence && move == hash_move) &&
                          !PassesQuiescenceFilter(move, distance, beta, position_type, board);
    if (!filtered) {
      const std::int32_t move_distance = distance;
      board.played_moves[ply + 1] = move;
      board.MakeMove(move);
      std::uint32_t child_flags = next_ply_flags;
      if (GivesCheck(move)) {
        if (skip_razoring_when_last_move_was_a_check) child_flags |= CHILD_SKIP_RAZORING;
        if (skip_extended_futility_pruning_when_last_move_was_a_check) {
          child_flags |= CHILD_SKIP_EXTENDED_FUTILITY;
        }
      }
      const int child_type = move_count == 1 ? -node_type : CUT;
      const Score score = -SearchNode(board, loop.end, child_beta, move_distance - 64, child_type,
                                      position_type, child_flags);
      board.UndoMove(move);
      if (score > best) {
        best = score;
        board.ExtendLine(ply, move);
        if (score >= beta) {
          cutoff = true;
          break;
        }
        best_move = move;
      }
      // A cut node that did not cut at its first move is expected to be an all node.
      if (node_type == CUT) node_type = ALL;
    }
    if (stage == LAST) break;
  }

  if (cutoff) {
    best_move = move;
    RememberCutoff(board, move, distance);
  } else if (best == -MATE_SCORE) {
    return beta - 1;  // nothing searched, nothing learned
  }
  if (distance >= required_distance_to_store_hashtables) {
    TRANSPOSITION_TABLE.Store(MakeBoundEntry(board.Key(), best_move, position_type,
                                             int(node_flags & STORED_NODE_FLAGS), distance,
                                             ToNodeRelative(best, ply), cutoff));
  }
  return best;
}
