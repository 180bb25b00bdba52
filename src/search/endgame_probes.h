// The exact knowledge of the endgame databases inside the tree: the bitbases answer win, draw or
// loss cheaply; the tablebases answer with a mate distance, but cost disk accesses, so the node
// only asks them where a short and sharp ending makes the answer worth it.
#pragma once

#include <cstdint>

#include "chess/basic.h"

class SearchBoard;

// Whether a database decides the node against beta; `value` is then its answer.
bool ProbeEndgameDatabases(SearchBoard& board, int position_type, int node_type,
                           std::int32_t distance, Score beta, Score& value);

// The tablebase part: decides by the kind of ending, the distance and the pieces whether to ask.
bool ProbeEndgameTablebase(SearchBoard& board, int position_type, int node_type,
                           std::int32_t distance, Score beta, Score& value);
