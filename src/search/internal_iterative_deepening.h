// A node without a move from the table searches itself first at a smaller distance, so that the
// full search starts with the best move that the shallow one found.
#pragma once

struct NodeState;

// Sets the node's hash_move from a reduced search of the same position. False when the move found
// is one that the transposition cutoff has already refuted: the node then fails low.
bool FindMoveByInternalDeepening(NodeState& node);
