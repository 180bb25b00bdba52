// What the quiescence search lets through: the margin by which a capture may stay below beta, and
// the filter in front of every move of a quiescence node.
#pragma once

#include <cstdint>

#include "chess/board.h"

// By position type: how far below beta a capture may leave the material and still be searched.
inline constexpr std::int32_t QuiescenceMargin[18] = {
    285, 275, 300, 300, 300, 400, 400, 400, 400, 400, 500, 600, 600, 600, 1000, 3000, 5000, 700,
};

// Whether a move of a quiescence node (not in check, not a single reply) is worth searching.
bool PassesQuiescenceFilter(Move move, std::int32_t distance, std::int32_t beta,
                            int position_type, const Board& board);
