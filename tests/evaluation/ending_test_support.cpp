#include "evaluation/ending_test_support.h"

#include "evaluation/pawn_structure.h"
#include "search/hash.h"
#include "search/position_type.h"

namespace EndingTests {

void ClearHashTables() {
  EVALUATION_HASH_TABLE.Clear();
  PAWN_HASH_TABLE.Clear();
}

void PreparedState(EvaluationState& evaluation, const Board& board) {
  ClearHashTables();
  evaluation.Reset();
  PreparePawns(evaluation, board, ClassifyPosition(board, UNCLASSIFIED));
}

}  // namespace EndingTests
