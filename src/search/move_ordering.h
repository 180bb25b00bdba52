// Staged move ordering. The sort value of a move is written into the upper bits of its word, and
// a stage of the list is only worked on when the search gets that far: promising tactical moves
// and killers first, then the other tactical moves, then quiet moves with history, then the rest.
#pragma once

#include <cstdint>

#include "chess/board.h"
#include "search/history_table.h"

// The batch a call of NextMoves hands out.
constexpr int BATCH_SORTED = 1;  // take the moves in order; otherwise select the largest word
constexpr int BATCH_LAST = 2;    // no batch follows

struct SortState {
  int stage = 0;
  bool whole_list = false;  // sort everything at once: no early cutoff is expected
  Move* tactical_end = nullptr;
  Move* promising_end = nullptr;
  Move* history_end = nullptr;
  bool history_sorted = false;
};

// What the node knows that the ordering uses.
struct SortContext {
  const Board& board;
  const HistoryTable& history;
  std::int32_t beta;
  Move hash_move;
  int node_type;
  Move killer1;
  Move killer2;
  int position_type;
};

// Hands out the next batch of the list [moves, end) as [batch_begin, batch_end) and returns its
// BATCH_ bits. The hash move is taken out of the list, so `end` may go down by one.
int NextMoves(SortState& state, const SortContext& context, Move* moves, Move*& end,
              Move*& batch_begin, Move*& batch_end);

// Gives every move of a quiescence list its sort value and takes out the hash move; the caller
// selects by the largest word.
void SortQuiescenceMoves(Move* moves, Move*& end, Move hash_move, Move killer1, Move killer2,
                         std::int32_t beta, const Board& board);

// Larger words first.
void SortMovesDescending(Move* begin, Move* end);

// The sort value that a material gain earns.
std::int32_t ValueOfGain(std::int32_t gain);
