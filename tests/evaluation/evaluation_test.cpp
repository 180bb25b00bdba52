// The whole evaluation: material, the blend of its halves, and properties over positions from
// random play, played games and chosen rules: both colours are judged alike under every
// personality, the early and hashed answers agree with the full score, and nothing is allocated.
#include "evaluation/evaluate.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

#include "evaluation/blend.h"
#include "evaluation/many_pieces.h"
#include "evaluation/material.h"
#include "evaluation/personalities.h"
#include "search/hash.h"
#include "search/position_type.h"
#include "support/allocation_counter.h"
#include "support/board_from_fen.h"
#include "support/random_positions.h"
#include "support/test_positions.h"

namespace {

// Without Black's queen's rook: a whole rook up, with every other piece at home.
constexpr const char* ROOK_UP = "1nbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQk - 0 1";
// Without Black's queen's knight: a piece up, pawns on the board.
constexpr const char* KNIGHT_UP = "r1bqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1";

// Positions chosen for the rules they reach: fianchettos and long diagonals, trapped bishops,
// outposts, rooks on the seventh and behind closed files, corners, storms, castling choices,
// and every kind of ending.
const char* const CHOSEN[] = {
    TestPositions::INITIAL, TestPositions::KIWIPETE, TestPositions::POSITION_3,
    TestPositions::POSITION_4, TestPositions::POSITION_5, TestPositions::POSITION_6, ROOK_UP,
    KNIGHT_UP,
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
    "8/5pk1/6p1/8/3R4/6P1/5PK1/1r6 w - - 0 1",  // rooks
    "6k1/5p2/6p1/8/1q6/6P1/4QPK1/8 b - - 0 1",  // queens
    "8/4kp2/6p1/3n4/8/2B3P1/5PK1/8 w - - 0 1",  // knight against bishop
    "8/4kp2/b5p1/8/8/2B3P1/5PK1/8 b - - 0 1",  // opposite bishops
    "8/5k2/8/8/P7/8/6P1/3B2K1 w - - 0 1",  // bishop and pawns
    "8/5k2/8/8/P7/8/8/3B2K1 b - - 0 1",  // the wrong bishop
    "8/8/3k4/8/3P4/8/5r2/R2K4 w - - 0 1",  // rook and pawn against rook
    "8/p4pk1/6p1/8/8/6P1/5PK1/8 w - - 0 1",  // pawns
    "8/8/1k6/8/8/8/2R5/4K3 b - - 0 1",  // rook against the bare king
    "8/8/1k6/3n4/8/8/2R5/4K3 w - - 0 1",  // rook against knight
    "7k/8/8/8/8/8/2B5/1N2K3 w - - 0 1",  // bishop and knight
    "2nbk3/p7/8/8/8/8/8/3RK3 b - - 0 1",  // a rook against two minors
    "2r3k1/5ppp/8/8/8/8/5PPP/3Q2K1 w - - 0 1",  // queen against rook
};

// Small tables, emptied for every test, so that clearing them between positions costs nothing;
// the sizes of the process-wide tables are given back afterwards.
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

// Bisected from bounds, with the table emptied: what it holds may come from another personality.
int ExactValue(EvaluationState& evaluation, const Board& board, int type) {
  EVALUATION_HASH_TABLE.Clear();
  return EvaluateExact(evaluation, board, type);
}

// The full score as Evaluate gives it: an answer that is neither beta nor beta - 1 came past
// every early exit, and some beta on the scan lies within the exits' margin of the estimate.
bool FullValue(EvaluationState& evaluation, const Board& board, int type, int& value) {
  for (int beta = -4000; beta <= 4000; beta += 100) {
    EVALUATION_HASH_TABLE.Clear();
    value = Evaluate(evaluation, board, beta, type);
    if (value != beta && value != beta - 1) return true;
  }
  return false;
}

}  // namespace

TEST(MaterialImbalance, WholePiecesPiecesForPawnsAndExchanges) {
  const std::pair<const char*, ScorePair> cases[] = {
      {TestPositions::INITIAL, {0, 0}},
      {ROOK_UP, {400, 180}},
      {KNIGHT_UP, {160, 160}},
      {"4k3/8/8/8/8/8/8/4KN2 w - - 0 1", {-120, -120}},  // a knight without pawns
      {"4kn2/p7/8/8/8/8/8/4K3 w - - 0 1", {-160, -160}},
      {"4kn2/8/8/8/8/8/P7/4K3 w - - 0 1", {120, 120}},
      {"3rk3/8/8/8/8/8/8/2NBK3 w - - 0 1", {130, 180}},  // two minors for a rook
      {"3qk3/8/8/8/8/8/8/1NNBK3 w - - 0 1", {50, 100}},  // three minors for a queen
      {"3rk3/8/8/8/8/8/8/3NK3 w - - 0 1", {0, 0}},  // the exchange
  };
  for (const auto& [fen, expected] : cases)
    EXPECT_EQ(MaterialImbalance(BoardFromFen(fen)), expected) << fen;
  EXPECT_TRUE(HasBishopPair(BoardFromFen("4k3/8/8/8/8/8/8/2B1KB2 w - - 0 1").white));  // c1, f1
  EXPECT_FALSE(HasBishopPair(BoardFromFen("4k3/8/8/8/8/8/8/B1B1K3 w - - 0 1").white));
  // Through the whole evaluation: a rook up is more than a knight up, which is more than nothing.
  EXPECT_GT(EvaluatePosition(BoardFromFen(ROOK_UP)), EvaluatePosition(BoardFromFen(KNIGHT_UP)));
  EXPECT_GT(EvaluatePosition(BoardFromFen(KNIGHT_UP)), 0);
}

TEST(Blend, CurvesAndTheWeightThatMovesFromThePositionalToTheRecklessHalf) {
  // The cubic is slightly negative at 35.
  for (const auto& [weight, factor] : {std::pair{21, 0.0}, {22, 1.0}, {35, 0.0}, {99, 0.0}})
    EXPECT_EQ(EndgameFactor(weight), factor) << weight;
  EXPECT_GT(EndgameFactor(28), EndgameFactor(29));
  EXPECT_EQ(DefenceCurve(-10), 1.0);
  EXPECT_EQ(DefenceCurve(5), 0.0);
  EXPECT_EQ(AttackCurve(30), 1.0);
  EXPECT_EQ(AttackCurve(-5), 0.0);
  const Board board = BoardFromFen(TestPositions::INITIAL);
  EvaluationState evaluation;
  // Level material in the opening -3, both queens and 24 minor points +1, kings on the e-file
  // 5.6 and a danger of 1: weight -1.
  EXPECT_EQ(RecklessWeight(evaluation, board, false), -1);
  EXPECT_EQ(RecklessWeight(evaluation, board, true), 1);
  const ScorePair sum{160, 320};
  EXPECT_EQ(Blend(evaluation, board, sum, false), 160);
  evaluation.settings->personality = 5;  // weight 4
  EXPECT_EQ(Blend(evaluation, board, sum, false), (12 * 160 + 4 * 320) / 16);
  evaluation.openness = 15;  // weight 7
  EXPECT_EQ(Blend(evaluation, board, ScorePair{-161, 0}, false), (9 * -161) / 16);
  evaluation.settings->personality = 1000;
  evaluation.openness = 0;
  EXPECT_EQ(Blend(evaluation, board, sum, false), 320);
  evaluation.settings->personality = -1000;
  EXPECT_EQ(Blend(evaluation, board, sum, true), 160);
  // An attacked king pulls towards the reckless half, the danger stopping at 20.
  evaluation.settings->personality = 0;
  const int quiet = RecklessWeight(evaluation, board, true);
  evaluation.king_attack[WHITE] = 30;
  evaluation.king_defence[WHITE] = -10;
  EXPECT_EQ(RecklessWeight(evaluation, board, true), quiet - 1 + 14);
  evaluation.king_attack[BLACK] = 30;
  evaluation.king_defence[BLACK] = -10;
  EXPECT_EQ(RecklessWeight(evaluation, board, true), quiet - 1 + 20);
}

TEST(EndgameTrendTerm, HalfTheClampedMaterialWeighedByTheFactorFromWhitesView) {
  for (const auto& [fen, expected] :
       {std::pair{"4k3/pppp4/8/8/8/8/PPPPPPPP/3RK3 w - - 0 1", ScorePair{38, 4}},
        std::pair{"4k3/pppp4/8/8/8/8/PPPPPPPP/3RK3 b - - 0 1", ScorePair{38, 4}},
        std::pair{"3rk3/pppppppp/8/8/8/8/PPPP4/4K3 w - - 0 1", ScorePair{-38, -4}}}) {
    EvaluationState evaluation;
    evaluation.endgame_factor = 0.5;
    EXPECT_EQ(EndgameTrendTerm(evaluation, BoardFromFen(fen)), expected) << fen;
    EXPECT_EQ(std::abs(evaluation.endgame_trend), 75) << fen;
  }
}

TEST(LazyExit, BothHalvesFarFromBetaOnTheSameSide) {
  const Board white = BoardFromFen(TestPositions::INITIAL);
  int result = 0;
  EXPECT_FALSE(LazyExit(white, {0, 0}, 285, 285, result));
  EXPECT_TRUE(LazyExit(white, {0, 0}, 286, 285, result));
  EXPECT_EQ(result, 285);
  EXPECT_TRUE(LazyExit(white, {0, 0}, -286, 285, result));
  EXPECT_EQ(result, -286);
  EXPECT_FALSE(LazyExit(white, {0, 300}, 286, 285, result));   // the reckless half is near
  EXPECT_FALSE(LazyExit(white, {-600, 600}, 0, 285, result));  // on either side of beta
  const Board black = BoardFromFen("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR b KQkq - 0 1");
  EXPECT_TRUE(LazyExit(black, {400, 400}, -100, 285, result));  // White's plus is Black's minus
  EXPECT_EQ(result, -101);
}

// Endings do not know the personality; the colour-flipped twin is worth the same under any.
TEST_F(WholeEvaluation, APositionAndItsColourFlippedTwinAreWorthTheSame) {
  std::vector<Board> positions = RandomPositions(3000, 1);
  for (const char* fen : CHOSEN) positions.push_back(BoardFromFen(fen));
  for (const char* fen : TestPositions::Standard()) {
    Board board = BoardFromFen(fen);
    TestPositions::PlayRandomGame(board, 99u, [&](const Board& position) {
      positions.push_back(BoardFromFen(FenOf(position)));
    });
  }
  std::vector<int> personalities = {999, -7};  // beside the short cut of the blend, and custom
  for (const auto& [name, value] : NamedPersonalities()) personalities.push_back(value);
  bool seen[POSITION_TYPE_COUNT] = {};
  int endings = 0;
  for (const Board& board : positions) {
    const Board flipped = ColourFlipped(board);
    const int type = ClassifyPosition(board, UNCLASSIFIED);
    ASSERT_EQ(ClassifyPosition(flipped, UNCLASSIFIED), type);
    seen[type] = true;
    const bool ending = type != OPENING && type != MIDDLEGAME;
    endings += ending;
    int first = 0;
    for (const int personality : personalities) {
      EvaluationState evaluation;
      evaluation.settings->personality = std::int16_t(personality);
      const int value = ExactValue(evaluation, board, type);
      ASSERT_EQ(value, ExactValue(evaluation, flipped, type))
          << "personality " << personality << ", type " << type << ", key " << board.Key();
      if (personality == personalities.front()) first = value;
      if (ending) {
        ASSERT_EQ(value, first) << "personality " << personality << ", type " << type;
      }
    }
  }
  EXPECT_GE(std::count(std::begin(seen), std::end(seen), true), 6);
  EXPECT_GT(endings, 500);
}

// Whatever answers it (the lazy exit far from beta, the hash table on a second look, or the full
// evaluation), an answer is the full score, beta or beta - 1, on the side of beta where the full
// score lies. The early answers look at material and passed pawns alone, within a fixed margin of
// beta; the terms they skip can reach past that margin only in wild positions (a king stripped
// bare in a crowded middlegame): so never in the chosen positions, rarely in random ones.
TEST_F(WholeEvaluation, EarlyAndHashedAnswersAgreeWithTheFullScore) {
  std::vector<Board> positions;
  for (const char* fen : CHOSEN) positions.push_back(BoardFromFen(fen));
  const std::size_t chosen = positions.size();
  for (const Board& board : RandomPositions(2000, 2)) positions.push_back(board);
  std::mt19937 random(5);
  int early_answers = 0, disagreements = 0, probes = 0;
  for (std::size_t i = 0; i < positions.size(); ++i) {
    const Board& board = positions[i];
    const int type = ClassifyPosition(board, UNCLASSIFIED);
    EvaluationState evaluation;
    int full = 0;
    if (!FullValue(evaluation, board, type, full)) continue;
    for (int offset : {-2000, -400, -100, -1, 0, 1, 100, 400, 2000, int(random() % 1601) - 800}) {
      const int beta = full + offset;
      EVALUATION_HASH_TABLE.Clear();
      for (int look = 0; look < 2; ++look, ++probes) {
        const int answer = Evaluate(evaluation, board, beta, type);
        ASSERT_TRUE(answer == full || answer == beta || answer == beta - 1)
            << FenOf(board) << " beta " << beta << ", full " << full;
        early_answers += answer != full;
        const bool disagree = (answer >= beta) != (full >= beta);
        EXPECT_FALSE(disagree && i < chosen) << FenOf(board) << " beta " << beta;
        disagreements += disagree;
      }
    }
  }
  EXPECT_GT(early_answers, 1000);
  EXPECT_LE(disagreements * 50, probes) << disagreements << " of " << probes;
}

// Mate-range betas and lazy answers look at no table and store nothing; a full evaluation is kept
// and answers the next look.
TEST_F(WholeEvaluation, OnlyAFullEvaluationNearBetaIsKept) {
  EvaluationState evaluation;
  const Board board = BoardFromFen(ROOK_UP);
  EXPECT_EQ(Evaluate(evaluation, board, 31767, OPENING), 31766);
  EXPECT_EQ(Evaluate(evaluation, board, 32767, OPENING), 32766);
  EXPECT_EQ(Evaluate(evaluation, board, -31767, OPENING), -31767);
  EXPECT_EQ(Evaluate(evaluation, board, 31766, OPENING), 31765);
  EXPECT_EQ(Evaluate(evaluation, board, 0, OPENING), 0);        // far above beta
  EXPECT_EQ(Evaluate(evaluation, board, 2000, OPENING), 1999);  // far below it
  EXPECT_EQ(EVALUATION_HASH_TABLE.FreeSlots(), EVALUATION_HASH_TABLE.TotalSlots());
  EXPECT_EQ(PAWN_HASH_TABLE.FreeSlots(), PAWN_HASH_TABLE.TotalSlots());
  const int value = EvaluateExact(evaluation, board, OPENING);
  EXPECT_EQ(Evaluate(evaluation, board, value, OPENING), value);
  EXPECT_EQ(EVALUATION_HASH_TABLE.FreeSlots(), EVALUATION_HASH_TABLE.TotalSlots() - 1);
  EXPECT_EQ(PAWN_HASH_TABLE.FreeSlots(), PAWN_HASH_TABLE.TotalSlots() - 1);
  EVALUATION_HASH_TABLE.NewSearch();
  EXPECT_EQ(Evaluate(evaluation, board, value, OPENING), value);
  EXPECT_EQ(Evaluate(evaluation, board, value + 1, OPENING), value);
  EXPECT_EQ(EVALUATION_HASH_TABLE.hits, 2u);
  // Endings without pawns use no table at all.
  const Board rook = BoardFromFen("4k3/8/8/8/8/8/8/3RK3 w - - 0 1");
  const std::uint64_t probes = EVALUATION_HASH_TABLE.probes + PAWN_HASH_TABLE.probes;
  EXPECT_GT(EvaluateExact(evaluation, rook, ENDGAME_NO_PAWNS_LEFT), 0);
  EXPECT_EQ(EVALUATION_HASH_TABLE.probes + PAWN_HASH_TABLE.probes, probes);
}

TEST_F(WholeEvaluation, AllocatesNothing) {
  const std::vector<Board> positions = RandomPositions(500, 3);
  EvaluationState evaluation;  // the state's own settings are the one allocation, made here
  const std::size_t before = AllocationCount();
  int sum = 0;
  for (const Board& board : positions) {
    const int type = ClassifyPosition(board, UNCLASSIFIED);
    for (int beta : {-300, 0, 300}) sum += Evaluate(evaluation, board, beta, type);
  }
  EXPECT_EQ(AllocationCount(), before);
  EXPECT_NE(sum, 0);
}
