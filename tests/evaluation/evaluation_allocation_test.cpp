#include <gtest/gtest.h>

#include "evaluation/evaluate.h"
#include "search/hash.h"
#include "search/position_type.h"
#include "support/allocation_counter.h"
#include "support/random_positions.h"

TEST(HotPath, EvaluationAllocatesNothing) {
  const std::vector<Board> positions = RandomPositions(500, 3);
  EvaluationState evaluation;  // the state's own settings are the one allocation, made here
  PAWN_HASH_TABLE.Clear();
  EVALUATION_HASH_TABLE.Clear();
  const std::size_t before = AllocationCount();
  int sum = 0;
  for (const Board& board : positions) {
    const int type = ClassifyPosition(board, UNCLASSIFIED);
    for (int beta : {-300, 0, 300}) sum += Evaluate(evaluation, board, beta, type);
  }
  EXPECT_EQ(AllocationCount(), before);
  EXPECT_NE(sum, 0);
  PAWN_HASH_TABLE.Clear();
  EVALUATION_HASH_TABLE.Clear();
}
