#include "evaluation/ending_test_support.h"

#include <gtest/gtest.h>

#include "evaluation/evaluate.h"
#include "evaluation/pawn_structure.h"
#include "search/hash.h"
#include "search/position_type.h"
#include "support/board_from_fen.h"

namespace EndingTests {

Board ColourFlipped(const Board& board) {
  std::int8_t squares[64];
  for (int square = 0; square < 64; ++square)
    squares[MirrorRanks(square)] = std::int8_t(-board.squares[square]);
  Board flipped;
  EXPECT_TRUE(flipped.Setup(squares, int(board.side_on_move) ^ 1, 0, 0));
  return flipped;
}

void ClearHashTables() {
  EVALUATION_HASH_TABLE.Clear();
  PAWN_HASH_TABLE.Clear();
}

void PreparedState(EvaluationState& evaluation, const Board& board) {
  ClearHashTables();
  evaluation.Reset();
  PreparePawns(evaluation, board, ClassifyPosition(board, UNCLASSIFIED));
}

int ExactValue(const Board& board) {
  ClearHashTables();
  return EvaluatePosition(board);
}

bool PawnStructureClassifies() {
  // A lone pawn on the a-file is isolated, whatever else the structure finds.
  const Board board = BoardFromFen("4k3/8/8/8/8/8/P7/4K3 w - - 0 1");
  EvaluationState evaluation;
  PreparedState(evaluation, board);
  PrepareFileData(evaluation, board);
  PrepareStructure(evaluation, board);
  return evaluation.pawns[WHITE].isolated != 0;
}

}  // namespace EndingTests
