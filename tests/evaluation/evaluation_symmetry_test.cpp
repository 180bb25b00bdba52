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

TEST_F(WholeEvaluation, AnEarlyAnswerAgreesWithTheFullScore) {
  std::mt19937 random(5);
  int early_answers = 0;
  for (const Board& board : RandomPositions(2000, 2)) {
    const int type = ClassifyPosition(board, UNCLASSIFIED);
    EvaluationState evaluation;
    const int exact = ExactValue(evaluation, board);
    for (int probe = 0; probe < 4; ++probe) {
      const int beta = exact + int(random() % 1601) - 800;
      EVALUATION_HASH_TABLE.Clear();
      const int answer = Evaluate(evaluation, board, beta, type);
      ASSERT_EQ(answer >= beta, exact >= beta) << "beta " << beta << ", exact " << exact;
      // Above beta the answer is exact or beta, below it exact or beta - 1.
      if (answer != exact) {
        ++early_answers;
        ASSERT_EQ(answer, exact >= beta ? beta : beta - 1);
      }
    }
  }
  EXPECT_GT(early_answers, 100);
}
