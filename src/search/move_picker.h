// The staged choice of the next move of a node, as one state machine: the hash move first, then
// the list, generated only when the hash move has not cut off, handed out batch by batch by the
// move ordering, with a single legal reply as the last move.
#pragma once

#include "chess/basic.h"
#include "search/move_ordering.h"

struct NodeState;

enum class PickStage {
  HASH_MOVE,    // the move from the table (or the reduced search) before anything is generated
  FIRST_BATCH,  // generate the list if needed and ask for its first batch
  BATCH,        // take moves from the batch at hand, and ask for the next when it is used up
  LAST,         // the move just handed out is the last one of the node
  DONE,
};

enum class Pick {
  MOVE,         // `move` is the next move
  NONE_LEFT,    // the loop ends
  NODE_DECIDED  // the generator decided the node (no legal move, or nothing worth a look):
                // `value` is its answer
};

class MovePicker {
 public:
  explicit MovePicker(NodeState& node);

  Pick Next(Move& move, Score& value);
  // After the move handed out last, the loop ends.
  bool WasLast() const { return stage_ == PickStage::LAST; }

 private:
  Pick PickHashMove(Move& move);
  Pick StartList(Move& move, Score& value);
  Pick PickFromBatch(Move& move);
  void NextBatch();

  NodeState& node_;
  PickStage stage_;
  bool hash_move_searched_ = false;
  SortState sort_;
  Move* batch_begin_ = nullptr;
  Move* batch_end_ = nullptr;
  int batch_ = 0;
};
