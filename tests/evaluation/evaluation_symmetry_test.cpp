// Properties of the whole evaluation over many positions from random play: both colours are
// judged alike under every personality, and the early answers agree with the full score.
#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "evaluation/evaluate.h"
#include "evaluation/personalities.h"
#include "search/hash.h"
#include "search/position_type.h"
#include "support/random_positions.h"

namespace {

// Small tables, so that clearing them between positions costs nothing; the sizes of the
// process-wide tables are given back afterwards.
class WholeEvaluation : public ::testing::Test {
 protected:
  void SetUp() override {
    pawn_bytes = PAWN_HASH_TABLE.MemoryUsage();
    evaluation_bytes = EVALUATION_HASH_TABLE.MemoryUsage();
    PAWN_HASH_TABLE.Resize(0);
    EVALUATION_HASH_TABLE.Resize(0);
  }
  void TearDown() override {
    PAWN_HASH_TABLE.Resize(pawn_bytes);
    EVALUATION_HASH_TABLE.Resize(evaluation_bytes);
  }
  std::uint64_t pawn_bytes = 0, evaluation_bytes = 0;
};

int ExactValue(EvaluationState& evaluation, const Board& board) {
  EVALUATION_HASH_TABLE.Clear();
  return EvaluateExact(evaluation, board, ClassifyPosition(board, UNCLASSIFIED));
}

// The full score, unbounded: an answer that is neither beta nor beta - 1 came past every early
// exit. Some beta on the scan lies within the exits' margin of the estimate, whatever it is.
bool FullValue(EvaluationState& evaluation, const Board& board, int type, int& value) {
  for (int beta = -4000; beta <= 4000; beta += 100) {
    EVALUATION_HASH_TABLE.Clear();
    value = Evaluate(evaluation, board, beta, type);
    if (value != beta && value != beta - 1) return true;
  }
  return false;
}

}  // namespace

TEST_F(WholeEvaluation, APositionAndItsColourFlippedTwinAreWorthTheSame) {
  const std::vector<Board> positions = RandomPositions(3000, 1);
  std::vector<int> personalities;
  for (const auto& [name, value] : NamedPersonalities()) personalities.push_back(value);
  personalities.push_back(999);   // beside the short cut of the blend
  personalities.push_back(-7);
  int types_seen = 0;
  bool seen[POSITION_TYPE_COUNT] = {};
  for (const Board& board : positions) {
    const Board flipped = ColourFlipped(board);
    const int type = ClassifyPosition(board, UNCLASSIFIED);
    ASSERT_EQ(ClassifyPosition(flipped, UNCLASSIFIED), type);
    if (!seen[type]) ++types_seen;
    seen[type] = true;
    for (const int personality : personalities) {
      EvaluationState evaluation;
      evaluation.settings->personality = std::int16_t(personality);
      const int value = ExactValue(evaluation, board);
      const int twin = ExactValue(evaluation, flipped);
      ASSERT_EQ(value, twin) << "personality " << personality << ", type " << type
                             << ", position key " << board.Key();
    }
  }
  EXPECT_GE(types_seen, 6);
}

// The early answers look at material and passed pawns alone, within a fixed margin of beta; the
// terms they skip can reach past that margin only in wild positions (a king stripped bare in a
// crowded middlegame), so a disagreement with the full score must stay rare.
TEST_F(WholeEvaluation, AnEarlyAnswerAgreesWithTheFullScore) {
  std::mt19937 random(5);
  int early_answers = 0;
  int disagreements = 0;
  int probes = 0;
  for (const Board& board : RandomPositions(2000, 2)) {
    const int type = ClassifyPosition(board, UNCLASSIFIED);
    EvaluationState evaluation;
    int exact = 0;
    if (!FullValue(evaluation, board, type, exact)) continue;
    for (int probe = 0; probe < 4; ++probe, ++probes) {
      const int beta = exact + int(random() % 1601) - 800;
      EVALUATION_HASH_TABLE.Clear();
      const int answer = Evaluate(evaluation, board, beta, type);
      if (answer == exact) continue;
      // Otherwise the answer is only a side of beta.
      ++early_answers;
      ASSERT_TRUE(answer == beta || answer == beta - 1) << "beta " << beta << ", exact " << exact;
      if ((answer >= beta) != (exact >= beta)) ++disagreements;
    }
  }
  EXPECT_GT(early_answers, 100);
  EXPECT_LE(disagreements * 50, probes) << disagreements << " of " << probes;
}
