#include "search/move_picker.h"

#include <algorithm>

#include "search/node_state.h"
#include "search/search_board.h"
#include "search/search_node.h"
#include "search/search_settings.h"
#include "search/search_types.h"

MovePicker::MovePicker(NodeState& node)
    : node_(node), stage_(node.hash_move != INVALID ? PickStage::HASH_MOVE : PickStage::FIRST_BATCH) {}

Pick MovePicker::Next(Move& move, Score& value) {
  switch (stage_) {
    case PickStage::HASH_MOVE: return PickHashMove(move);
    case PickStage::FIRST_BATCH: return StartList(move, value);
    case PickStage::BATCH: return PickFromBatch(move);
    case PickStage::LAST:
    case PickStage::DONE: break;
  }
  stage_ = PickStage::DONE;
  return Pick::NONE_LEFT;
}

Pick MovePicker::PickHashMove(Move& move) {
  move = node_.hash_move & MOVE_MASK;
  hash_move_searched_ = true;
  stage_ = (node_.node_flags & SINGLE_REPLY) ? PickStage::LAST : PickStage::FIRST_BATCH;
  return Pick::MOVE;
}

Pick MovePicker::StartList(Move& move, Score& value) {
  if (!node_.generated) {
    SearchBoard& board = node_.board;
    // A list that would not fit on the move stack ends the line as if it had nothing to offer.
    if (!board.HasRoomForMoves(node_.moves)) {
      value = node_.beta - 1;
      return Pick::NODE_DECIDED;
    }
    node_.generated = true;
    switch (GenerateForNode(board, node_.moves, node_.end, node_.distance, node_.beta, value)) {
      case NO_LEGAL_MOVE: return Pick::NODE_DECIDED;
      case SINGLE_LEGAL_MOVE:
        node_.node_flags |= SINGLE_REPLY;
        // A single reply is searched (again) with its extension; without extensions a hash move
        // that was already searched is all there is.
        if (!enable_search_extensions && hash_move_searched_) {
          stage_ = PickStage::DONE;
          return Pick::NONE_LEFT;
        }
        move = node_.moves[0] & MOVE_MASK;
        stage_ = PickStage::LAST;
        return Pick::MOVE;
      default:
        if (node_.end == node_.moves) {  // a quiescence node without candidates
          value = node_.beta - 1;
          return Pick::NODE_DECIDED;
        }
    }
  }
  NextBatch();
  stage_ = PickStage::BATCH;
  return PickFromBatch(move);
}

Pick MovePicker::PickFromBatch(Move& move) {
  while (batch_begin_ == batch_end_) {
    if (batch_ & BATCH_LAST) {
      stage_ = PickStage::DONE;
      return Pick::NONE_LEFT;
    }
    NextBatch();
  }
  // A sorted batch is taken in order; from an unsorted one the largest word is selected (the
  // first of equals) and swapped to the front.
  if (!(batch_ & BATCH_SORTED)) std::iter_swap(batch_begin_, std::max_element(batch_begin_, batch_end_));
  move = *batch_begin_++ & MOVE_MASK;
  return Pick::MOVE;
}

// The quiescence list is one unsorted batch, the last.
void MovePicker::NextBatch() {
  SearchBoard& board = node_.board;
  const KillerPair& killers = board.killers[node_.ply];
  if (node_.distance >= 1 || board.InCheck()) {
    const SortContext context{board,          board.history,   node_.beta,
                              node_.hash_move, node_.node_type, killers.first,
                              killers.second, node_.position_type};
    batch_ = NextMoves(sort_, context, node_.moves, node_.end, batch_begin_, batch_end_);
  } else {
    SortQuiescenceMoves(node_.moves, node_.end, node_.hash_move, killers.first, killers.second,
                        node_.beta, board);
    batch_begin_ = node_.moves;
    batch_end_ = node_.end;
    batch_ = BATCH_LAST;
  }
}
