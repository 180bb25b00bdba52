// Searching less where the material leaves a node no hope: limited razoring takes distance off a
// node far below beta, futility lets the move loop skip moves that cannot bring the material up
// to beta, and late move reduction searches the late moves of a node less deep.
#pragma once

#include <cstdint>

#include "chess/basic.h"

struct NodeState;

// Razoring and the two futility tests, before the move loop: may lower the node's distance and
// set razor_reduction, prune and prune_base.
void PrepareSelectivePruning(NodeState& node);

// Whether the loop may skip `move` without making it.
bool IsFutile(const NodeState& node, Move move);

// The reduction of `move`, the move_count-th of the node, beyond the razoring of the node.
std::int32_t LateMoveReduction(const NodeState& node, Move move, int move_count);
