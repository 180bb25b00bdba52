#include "search/transposition_cutoff.h"

#include "search/hash.h"
#include "search/node_state.h"
#include "search/position_type.h"
#include "search/search_board.h"
#include "search/search_node.h"
#include "search/search_settings.h"
#include "search/search_types.h"

namespace {
// The reply that refuted a move in the table is a good killer one ply further down. (A reply that
// was the second killer swaps places with the first, which comes to the same.)
void LearnKiller(KillerPair& killers, Move move) {
  if (move == killers.first) return;
  killers.second = killers.first;
  killers.first = move;
}
}  // namespace

bool MayTryTranspositionCutoff(const NodeState& node) {
  return enable_ettc &&
         (!only_use_ettc_in_endgames || node.position_type >= ENDGAME_EQUAL_PIECES) &&
         node.distance > min_distance_for_ettc && node.distance <= max_distance_for_ettc &&
         (!only_use_ettc_on_cut_nodes || node.node_type == CUT) &&
         node.beta >= -MATE_THRESHOLD && node.beta <= MATE_THRESHOLD &&
         PopCount(node.board.occupied) <= max_pieces_left_for_ettc &&
         !(node.flags & SKIP_ETTC) && !(node.node_flags & (SINGLE_REPLY | PERPETUAL_CHECK_THREAT));
}

bool TryTranspositionCutoff(SearchBoard& board, Move* moves, Move*& end, Move& hash_move,
                            Score& value, std::uint32_t& node_flags, Score beta,
                            std::int32_t distance) {
  switch (GenerateForNode(board, moves, end, distance, beta, value)) {
    case NO_LEGAL_MOVE: hash_move = INVALID; return false;
    case SINGLE_LEGAL_MOVE:
      hash_move = moves[0];
      node_flags |= SINGLE_REPLY;
      return false;
    default: break;
  }
  const int ply = int(board.ply);
  for (Move* entry = moves; entry < end;) {
    const Move move = *entry;
    ++board.nodes;
    Move child_move = INVALID;
    int child_type = 0;
    int child_flags = 0;
    const int found = TRANSPOSITION_TABLE.Probe(board.KeyAfterMove(move), ply + 1,
                                                distance - ONE_PLY, 1 - beta, child_move,
                                                child_type, child_flags);
    if (found == HASH_BELOW_BETA) {
      ++board.ettc_tries;
      ++board.ettc_cutoffs;
      hash_move = move;
      value = beta;
      LearnKiller(board.killers[ply + 1], child_move);
      return true;
    }
    if (found == HASH_AT_LEAST_BETA && ettc_should_remove_refuted_moves && move != hash_move) {
      *entry = *--end;  // the last word takes its place and is looked at next
      continue;
    }
    ++entry;
  }
  if (end == moves) value = beta - 1;
  ++board.ettc_tries;
  return false;
}
