// Shared by the tests of the ending evaluation: positions with the colours exchanged, a state
// prepared as the driver leaves it for an evaluator, and whether the pawn sets are classified
// yet.
#pragma once

#include <string>

#include "chess/board.h"
#include "evaluation/evaluation_state.h"

namespace EndingTests {

// Ranks mirrored, every piece of the other colour, the other side on move.
Board ColourFlipped(const Board& board);

// Both hash tables empty, so that every evaluation starts from nothing.
void ClearHashTables();

// The state after the driver's preparation: pawns listed and passers found.
void PreparedState(EvaluationState& evaluation, const Board& board);

// The value of an evaluation with neutral settings and empty hash tables.
int ExactValue(const Board& board);

// The classified pawn sets come from the pawn structure. Tests of terms that read them skip
// themselves while it classifies nothing.
bool PawnStructureClassifies();

}  // namespace EndingTests
