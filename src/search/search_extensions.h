// Extensions in fractions of a ply. Delayed ones belong to the node (threats it faces, a change
// of the kind of game) and are worked out once before its moves; instant ones belong to a move
// (checks, recaptures, pawns near promotion, a rook on the seventh, a single reply). Each kind has
// a full size near the root and a limited one deeper down, and every group has a cap.
#pragma once

#include <cstdint>

#include "chess/basic.h"

struct NodeState;

// By position type: the extension of a node whose kind of game has just changed into this one,
// and of one that stays in it.
inline constexpr std::int32_t TypeChangedExtension[18] = {
    0, 0, 32, 16, 128, 64, 64, 32, 32, -32, -192, 128, 128, 0, -128, 256, -384, 32,
};
inline constexpr std::int32_t TypeKeptExtension[18] = {
    0, 0, 0, 0, 4, 5, 5, 5, 0, 0, -10, 5, 5, 0, -8, 10, -21, 0,
};

// Sets full_extension, node_extension and extension_flags of the node; needs the iteration the
// search is in, which decides how far from the root the full sizes reach.
void ExtendNode(NodeState& node, int iteration);

// The distance at which `move` is searched: the node's distance plus the extensions of the node
// and of the move, within their caps. Updates the node's extension_flags.
std::int32_t ExtendMove(NodeState& node, Move move);
