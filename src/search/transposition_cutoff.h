// The enhanced transposition cutoff: before a node searches, it looks up the positions behind its
// moves in the transposition table. One whose entry already refutes the opponent cuts the node
// off for the price of a few look-ups; moves whose entries show them failing can be dropped.
#pragma once

#include <cstdint>

#include "chess/basic.h"

class SearchBoard;
struct NodeState;

// Whether the node qualifies for the look-ups at all.
bool MayTryTranspositionCutoff(const NodeState& node);

// Generates the node's list into [moves, end) and looks up every move. True: `hash_move` reaches
// beta and `value` is beta. False: the list stands as it is left; when it is empty, `value` is the
// node's answer.
bool TryTranspositionCutoff(SearchBoard& board, Move* moves, Move*& end, Move& hash_move,
                            Score& value, std::uint32_t& node_flags, Score beta,
                            std::int32_t distance);
