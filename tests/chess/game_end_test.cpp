#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "chess/user_board.h"

namespace {

UserBoard Game(const std::string& fen) {
  UserBoard game;
  game.SetFEN(fen);
  return game;
}

void Play(UserBoard& game, const std::vector<std::string>& moves) {
  for (const std::string& move : moves) game.MakeMove(move);
}

void ExpectEnd(const UserBoard& game, std::uint32_t result, std::uint32_t reason) {
  EXPECT_EQ(game.current.result, result) << game.GetFEN();
  EXPECT_EQ(game.current.reason, reason) << game.GetFEN();
}

TEST(GameEnd, MateEndsTheGameAndNothingIsLegalAfterIt) {
  UserBoard game;
  Play(game, {"f3", "e5", "g4"});
  ExpectEnd(game, RESULT_RUNNING, REASON_NONE);
  game.MakeMove("Qh4");
  ExpectEnd(game, RESULT_BLACK_WINS, REASON_CHECKMATE);
  EXPECT_THROW(game.MakeMove("Kf2"), UserBoard::invalid_move);
  for (Move word = 1; word < (1u << 15); ++word) ASSERT_FALSE(game.IsLegal(word));
}

TEST(GameEnd, StalemateAfterAMoveAndInAPositionSetUp) {
  UserBoard game = Game("7k/4Q3/6K1/8/8/8/8/8 w - - 0 1");
  game.MakeMove("Qf7");
  ExpectEnd(game, RESULT_DRAW, REASON_STALEMATE);
  ExpectEnd(Game("7k/5Q2/6K1/8/8/8/8/8 b - - 0 1"), RESULT_DRAW, REASON_STALEMATE);
  ExpectEnd(Game("rnb1kbnr/pppp1ppp/8/4p3/6Pq/5P2/PPPPP2P/RNBQKBNR w KQkq - 1 3"),
            RESULT_BLACK_WINS, REASON_CHECKMATE);
}

TEST(GameEnd, FiftyMovesButMateOnTheHundredthPlyStands) {
  UserBoard quiet = Game("7k/8/6K1/8/8/8/8/R7 w - - 99 80");
  quiet.MakeMove("Rb1");
  ExpectEnd(quiet, RESULT_DRAW, REASON_FIFTY_MOVES);
  UserBoard mate = Game("7k/8/6K1/8/8/8/8/R7 w - - 99 80");
  mate.MakeMove("Ra8");
  ExpectEnd(mate, RESULT_WHITE_WINS, REASON_CHECKMATE);
  ExpectEnd(Game("7k/8/6K1/8/8/8/8/R7 w - - 100 80"), RESULT_DRAW, REASON_FIFTY_MOVES);
  ExpectEnd(Game("7k/8/6K1/8/8/8/8/R7 w - - 98 80"), RESULT_RUNNING, REASON_NONE);
}

TEST(GameEnd, InsufficientMaterialIsOneMinorPieceEachAtMost) {
  for (const char* fen : {"4k3/8/8/8/8/8/8/2B1K3 w - - 0 1", "4k3/8/8/8/8/8/8/4K3 b - - 0 1",
                          "4kn2/8/8/8/8/8/8/2B1K3 w - - 0 1", "4kb2/8/8/8/8/8/8/2B1K3 w - - 0 1"})
    ExpectEnd(Game(fen), RESULT_DRAW, REASON_NO_MATING_MATERIAL);
  // Two knights, two bishops, a pawn or a rook are enough.
  for (const char* fen : {"4k3/8/8/8/8/8/8/1NN1K3 w - - 0 1", "4k3/8/8/8/8/8/8/2BBK3 w - - 0 1",
                          "4k3/8/8/8/8/8/7P/4K3 w - - 0 1", "4k3/8/8/8/8/8/8/R3K3 w - - 0 1"})
    ExpectEnd(Game(fen), RESULT_RUNNING, REASON_NONE);
  UserBoard game = Game("4k3/8/8/8/8/8/3r4/2B1K3 w - - 0 1");
  game.MakeMove("Kxd2");
  ExpectEnd(game, RESULT_DRAW, REASON_NO_MATING_MATERIAL);
}

TEST(GameEnd, ThreefoldRepetitionIsCountedExactly) {
  UserBoard game;
  const std::vector<std::string> round = {"Nf3", "Nf6", "Ng1", "Ng8"};
  Play(game, round);
  Play(game, round);
  // The start position has stood three times, but it is not among the keys: only twice so far.
  ExpectEnd(game, RESULT_RUNNING, REASON_NONE);
  // The position after 1. Nf3 now stands for the third time.
  game.MakeMove("Nf3");
  ExpectEnd(game, RESULT_DRAW, REASON_REPETITION);
  EXPECT_EQ(game.keys.size(), 9u);
}

TEST(GameEndTexts, ResultAndReason) {
  const char* results[] = {"*", "1-0", "0-1", "1/2-1/2", "*", "*"};
  for (std::uint32_t result : {RESULT_RUNNING, RESULT_WHITE_WINS, RESULT_BLACK_WINS, RESULT_DRAW,
                               RESULT_UNKNOWN, 77u})
    EXPECT_EQ(UserBoard::ResultText(result), results[std::min(result, 5u)]) << result;

  EXPECT_EQ(UserBoard::ReasonText(RESULT_WHITE_WINS, REASON_CHECKMATE), "White mates");
  EXPECT_EQ(UserBoard::ReasonText(RESULT_BLACK_WINS, REASON_CHECKMATE), "Black mates");
  EXPECT_EQ(UserBoard::ReasonText(RESULT_DRAW, REASON_CHECKMATE), "Black mates");
  EXPECT_EQ(UserBoard::ReasonText(RESULT_WHITE_WINS, REASON_RESIGNATION), "Black resigns");
  EXPECT_EQ(UserBoard::ReasonText(RESULT_BLACK_WINS, REASON_RESIGNATION), "White resigns");
  EXPECT_EQ(UserBoard::ReasonText(RESULT_UNKNOWN, REASON_RESIGNATION), "White resigns");
  const char* fixed[] = {"Lost on time",     "Stalemate",        "Insufficient material",
                         "Threefold repetition", "Mutual agreement", "Fifthy move rule",
                         "aborted",          "unknown reason",   "unknown reason"};
  for (std::uint32_t reason = REASON_ON_TIME; reason <= REASON_NONE + 1; ++reason)
    for (std::uint32_t result = 0; result <= 4; ++result)
      EXPECT_EQ(UserBoard::ReasonText(result, reason), fixed[reason - REASON_ON_TIME]);
}

}  // namespace
