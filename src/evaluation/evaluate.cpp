#include "evaluation/evaluate.h"

#include "evaluation/ending_evaluators.h"
#include "evaluation/many_pieces.h"
#include "evaluation/pawn_hash_entry.h"
#include "evaluation/pawn_structure.h"
#include "search/hash.h"
#include "search/position_type.h"

namespace {


int RunEvaluator(EvaluationState& evaluation, const Board& board, int beta, int position_type,
                 bool& lazy) {
  switch (position_type) {
    case OPENING: return EvaluateOpening(evaluation, board, beta, lazy);
    case MIDDLEGAME: return EvaluateMiddlegame(evaluation, board, beta, lazy);
    case ENDGAME_ROOKS: return EvaluateRookEnding(evaluation, board, beta, lazy);
    case ENDGAME_QUEENS: return EvaluateQueenEnding(evaluation, board, beta, lazy);
    case ENDGAME_PAWNS: return EvaluatePawnEnding(evaluation, board, beta, lazy);
    default: return EvaluateEnding(evaluation, board, beta, lazy);
  }
}

}  // namespace

int Evaluate(EvaluationState& evaluation, const Board& board, int beta, int position_type) {
  // No static score reaches a mate value.
  if (beta > MATE_THRESHOLD || beta < -MATE_THRESHOLD) return beta >= 1 ? beta - 1 : beta;
  if (position_type == ENDGAME_NO_PAWNS_LEFT) return EvaluateNoPawns(evaluation, board);

  switch (EVALUATION_HASH_TABLE.Probe(board.Key(), beta)) {
    case EVALUATION_BELOW_BETA: return beta - 1;
    case EVALUATION_AT_LEAST_BETA: return beta;
    default: break;
  }

  evaluation.Reset();
  PreparePawns(evaluation, board, position_type);
  bool lazy = false;
  const int result = RunEvaluator(evaluation, board, beta, position_type, lazy);
  // A lazy answer is only a bound against this beta: neither table may keep it.
  if (lazy) return result;
  if (!evaluation.pawn_entry_from_hash)
    PAWN_HASH_TABLE.Store(BuildPawnEntry(evaluation, board.PawnKey(), position_type));
  EVALUATION_HASH_TABLE.Store(board.Key(), result);
  return result;
}

int EvaluateExact(EvaluationState& evaluation, const Board& board, int position_type) {
  int low = -MATE;
  int high = MATE;
  for (;;) {
    const int mid = (low + high) / 2;
    const int probe = mid == low ? high : mid;
    if (Evaluate(evaluation, board, probe, position_type) < probe) {
      high = probe - 1;
      if (low >= high) break;
    } else {
      low = probe;
      if (probe >= high) break;
    }
  }
  return low;
}

int EvaluatePosition(const Board& board) {
  EvaluationState evaluation;
  return EvaluateExact(evaluation, board, ClassifyPosition(board, UNCLASSIFIED));
}
