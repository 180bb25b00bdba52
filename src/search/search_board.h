// The working object of the tree search: the position and, beside it, every stack the recursion
// needs, allocated once with the search so that nothing allocates in the tree.
#pragma once

#include <cstdint>

#include "chess/board.h"
#include "evaluation/evaluation_state.h"
#include "search/history_table.h"
#include "search/threat_records.h"

class SerialSearch;

struct KillerPair {
  Move first;
  Move second;
};

struct DatabaseProbeCounts {
  std::uint64_t asked = 0;
  std::uint64_t found = 0;
};

class SearchBoard : public Board {
 public:
  static constexpr int MOVE_STACK_SIZE = 8000;
  static constexpr int PLIES = 80;
  // The search ends every line here, whatever its distance.
  static constexpr int LAST_PLY = 77;

  explicit SearchBoard(SerialSearch& owner);
  SearchBoard(const SearchBoard&) = delete;
  SearchBoard& operator=(const SearchBoard&) = delete;

  // A new search: the position of the game, fresh counters and records, aged history. Killers
  // and the rows of the principal variation carry over.
  void ResetForSearch(const Board& position);

  // The value of a draw for the side on move: the contempt belongs to the side on move at the root.
  Score DrawScore() const { return side_on_move == root_side ? contempt : -contempt; }

  // Row `ply` of the principal variation becomes `move` followed by row `ply + 1`.
  void ExtendLine(int ply, Move move);
  // Row `ply` holds the single move.
  void SetLine(int ply, Move move) {
    principal_variation[ply][0] = move;
    principal_variation[ply][1] = INVALID;
  }

  // Whether a full move list still fits behind `moves`.
  bool HasRoomForMoves(const Move* moves) const {
    return moves + MOVE_BUFFER_SIZE <= move_stack + MOVE_STACK_SIZE;
  }

  // Moves the local counters into the search and asks it to look at the input and the clock.
  void Poll();

  Move move_stack[MOVE_STACK_SIZE];
  Move principal_variation[PLIES][PLIES];
  KillerPair killers[PLIES]{};
  HistoryTable history;
  Move played_moves[PLIES + 1]{};  // [p]: the move that led to ply p, 0 for a null move
  PerpetualRecord perpetual_records[PLIES]{};
  PinRecord pin_records[PLIES];
  std::int32_t position_types[PLIES + 1]{};
  EvaluationState evaluation;
  std::uint64_t nodes = 0;
  std::uint64_t ettc_tries = 0;
  std::uint64_t ettc_cutoffs = 0;
  // Endgame database probes of the whole search, for its statistics in the log.
  DatabaseProbeCounts bitbase_probes;
  DatabaseProbeCounts tablebase_probes;
  std::uint64_t poll_countdown = 100;
  SerialSearch* search;
  std::uint32_t root_side = WHITE;
  Score contempt = 0;
};
