// The one recursive function of the search. Every call is a null-window test: is the value of
// the position at least beta? The answer is exactly beta (yes) or beta - 1 (no). A node with a
// distance below 1 that is not in check is a quiescence node of the same function.
#pragma once

#include <cstdint>

#include "search/search_board.h"

// `moves` is where this node may write its move list; `position_type` is the parent's, which the
// node keeps or refines; `flags` are the search flags of search_types.h.
Score SearchNode(SearchBoard& board, Move* moves, Score beta, std::int32_t distance, int node_type,
                 int position_type, std::uint32_t flags);

// Answers of GenerateForNode.
constexpr int MOVES_GENERATED = 0;  // the list may still be empty in a quiescence node
constexpr int NO_LEGAL_MOVE = 1;    // mate or stalemate; `value` holds the node's answer
constexpr int SINGLE_LEGAL_MOVE = 2;

// Writes the node's moves to [moves, end): all of them, or in a quiescence node only those worth
// looking at.
int GenerateForNode(SearchBoard& board, Move* moves, Move*& end, std::int32_t distance,
                    Score beta, Score& value);
