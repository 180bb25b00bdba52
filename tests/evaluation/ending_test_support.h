// Shared by the tests of the ending evaluation: a state prepared as the driver leaves it for an
// evaluator, and empty hash tables.
#pragma once

#include "chess/board.h"
#include "evaluation/evaluation_state.h"
#include "support/random_positions.h"

namespace EndingTests {

using ::ColourFlipped;

// Both hash tables empty, so that every evaluation starts from nothing.
void ClearHashTables();

// The state after the driver's preparation: pawns listed and passers found.
void PreparedState(EvaluationState& evaluation, const Board& board);

}  // namespace EndingTests
