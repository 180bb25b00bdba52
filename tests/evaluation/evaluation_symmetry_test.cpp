// Properties of the whole evaluation over positions from random play, played games and chosen
// rules: both colours are judged alike under every personality, and the early answers agree
// with the full score.
#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "evaluation/evaluate.h"
#include "evaluation/personalities.h"
#include "search/hash.h"
#include "search/position_type.h"
#include "support/board_from_fen.h"
#include "support/random_positions.h"
#include "support/test_positions.h"

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

// Positions chosen for the rules they reach: fianchettos and long diagonals, trapped bishops,
// outposts, rooks on the seventh and behind closed files, corners, storms, castling choices.
const char* const CHOSEN[] = {
    TestPositions::INITIAL,
    TestPositions::KIWIPETE,
    TestPositions::POSITION_4,
    TestPositions::POSITION_5,
    TestPositions::POSITION_6,
    "rnbqk2r/ppp1ppbp/3p1np1/8/2PPP3/2N5/PP3PPP/R1BQKBNR w KQkq - 0 5",
    "r1bq1rk1/pp2bppp/2n1pn2/3p4/2PP4/2N1PN2/PP2BPPP/R2QKB1R w KQ - 0 8",
    "2rq1rk1/pp1bppbp/3p1np1/4n3/3NP3/1BN1BP2/PPPQ2PP/2KR3R w - - 9 12",
    "1k1r3r/pp2qpp1/2p1bn1p/4p3/4P3/2NQ1N1P/PPP2PP1/2KR3R w - - 2 16",
    "r5rk/5p1p/5R2/4B3/8/8/7P/7K w - - 0 1",
    "6k1/1R3ppp/8/8/8/8/5PPP/1R4K1 b - - 0 1",
    "r3k2r/B1ppqpb1/1n2pnp1/3PN3/1p2P3/1pN2Q1p/P1PB1PPP/R3K2R w KQkq - 0 1",
    "rnbqkbnr/pppp1ppp/8/4p3/4P3/5NP1/PPPP1P1P/RNBQKB1R b KQkq - 0 2",
    "r1bqkb1r/pppp1ppp/2n2n2/4p3/4P3/2NP1N2/PPP1BPPP/R1BQK2R w KQkq - 0 5",
    "r2q1rk1/1p3ppp/p1n1b3/3pP3/3N4/2P1B3/P3QPPP/R4RK1 w - - 0 15",
    "6k1/5p2/6pP/8/8/8/5PP1/6K1 w - - 0 1",
    "2kr4/ppp5/8/8/8/8/5PPP/5RK1 w - - 0 1",
    "r1b1k2r/ppppqppp/2n2n2/4N3/1b2P3/2N5/PPPP1PPP/R1BQKB1R w KQkq - 0 6",
    "4r1k1/pp3ppp/8/3N4/3P4/8/PP3PPP/4R1K1 w - - 0 1",
    "rn2k2r/pp3ppp/8/2q5/8/8/PP3PPP/R3K2R w KQkq - 0 1",
    "8/5pk1/6p1/8/3R4/6P1/5PK1/1r6 w - - 0 1",  // ending: rooks
    "6k1/5p2/6p1/8/1q6/6P1/4QPK1/8 b - - 0 1",  // ending: queens
    "8/4kp2/6p1/3n4/8/2B3P1/5PK1/8 w - - 0 1",  // ending: knight against bishop
    "8/4kp2/b5p1/8/8/2B3P1/5PK1/8 b - - 0 1",  // ending: opposite bishops
    "8/5k2/8/8/P7/8/6P1/3B2K1 w - - 0 1",  // ending: bishop and pawns
    "8/5k2/8/8/P7/8/8/3B2K1 b - - 0 1",  // ending: the wrong bishop
    "8/8/3k4/8/3P4/8/5r2/R2K4 w - - 0 1",  // ending: rook and pawn against rook
    "8/p4pk1/6p1/8/8/6P1/5PK1/8 w - - 0 1",  // ending: pawns
    "8/8/1k6/8/8/8/2R5/4K3 b - - 0 1",  // ending: rook against the bare king
    "8/8/1k6/3n4/8/8/2R5/4K3 w - - 0 1",  // ending: rook against knight
    "7k/8/8/8/8/8/2B5/1N2K3 w - - 0 1",  // ending: bishop and knight
    "2r3k1/5ppp/8/8/8/8/5PPP/3Q2K1 w - - 0 1",  // ending: queen against rook
};

}  // namespace

TEST_F(WholeEvaluation, APositionAndItsColourFlippedTwinAreWorthTheSame) {
  std::vector<Board> positions = RandomPositions(3000, 1);
  for (const char* fen : CHOSEN) positions.push_back(BoardFromFen(fen));
  for (const char* fen : TestPositions::Standard()) {
    Board board = BoardFromFen(fen);
    TestPositions::PlayRandomGame(board, 99u, [&](const Board& position) {
      positions.push_back(BoardFromFen(FenOf(position)));
    });
  }
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
