#include "shell/draw_handler.h"

#include <gtest/gtest.h>

#include <tuple>
#include <vector>

#include "support/board_from_fen.h"

namespace {

// Material enough that no ending rule lowers the hopeless limit: queens, many pawns.
const char* MIDDLE_GAME = "r1bqkbnr/pppp1ppp/2n5/4p3/4P3/5N2/PPPP1PPP/RNBQKB1R w KQkq - 2 3";
const char* NO_QUEENS = "r1b1kbnr/pppp1ppp/2n5/4p3/4P3/5N2/PPPP1PPP/RNB1KB1R w KQkq - 2 3";
// Two pawns and eight other pieces, kings included: the ending allowance applies.
const char* ENDING = "r3k2r/4p3/8/8/8/8/4P3/RN2K1NR w - - 0 1";

constexpr int MATE = 32767;

// The scores of a run of searches in one position, against a human or a computer.
struct Searches {
  const char* fen;
  bool computer;
  std::vector<int> scores;
  int contempt = 0;
};

DrawHandler After(const Searches& run) {
  const Board board = BoardFromFen(run.fen);
  DrawHandler handler;
  handler.opponent_is_computer = run.computer;
  handler.contempt = run.contempt;
  for (int score : run.scores) handler.Update(board, score);
  return handler;
}

std::vector<int> Times(int count, int score) { return std::vector<int>(count, score); }

TEST(DrawHandler, StreaksAndTheHopelessLimit) {
  using D = DrawHandler;
  const struct {
    Searches run;
    std::int32_t DrawHandler::*streak;
    int expected;
  } cases[] = {
      // The hopeless limit depends on the opponent, the queens and the ending.
      {{NO_QUEENS, false, {-250}}, &D::hopeless_streak, 1},
      {{NO_QUEENS, true, {-440}}, &D::hopeless_streak, 1},
      {{MIDDLE_GAME, false, {-320}}, &D::hopeless_streak, 1},
      {{ENDING, false, {-450}}, &D::hopeless_streak, 1},
      {{ENDING, true, {-1040, -1040}}, &D::hopeless_streak, 2},
      {{ENDING, true, {-1039}}, &D::hopeless_streak, 0},
      // Losing below contempt - 14, winning above contempt + 14; any other score breaks them.
      {{NO_QUEENS, false, {-4, -5, -5}, 10}, &D::losing_streak, 2},
      {{NO_QUEENS, false, {25, 24, 25, 25}, 10}, &D::winning_streak, 2},
      {{NO_QUEENS, false, {-5, 10, 10}, 10}, &D::contempt_streak, 2},
      // The drawish margin is narrower with queens.
      {{MIDDLE_GAME, false, {-17, 18}}, &D::drawish_streak, 0},
      {{NO_QUEENS, false, {-26, 25, -25}}, &D::drawish_streak, 2},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(After(c.run).*c.streak, c.expected)
        << c.run.fen << " computer " << c.run.computer << " last " << c.run.scores.back();
  }
}

TEST(DrawHandler, MateScoresGiveMovesToMateAndWhetherItCloses) {
  const Board board = BoardFromFen(NO_QUEENS);
  DrawHandler handler;
  for (const auto& [score, mated_in, closing] :
       {std::tuple{-(MATE - 4), 2, true}, {-(MATE - 6), 3, false},  // the mate moves away
        {-(MATE - 2), 1, true}, {-31767, -1, false}}) {  // the last score that is no mate
    handler.Update(board, score);
    EXPECT_EQ(handler.mated_in, mated_in) << score;
    EXPECT_EQ(handler.mate_closing_in, closing) << score;
  }
}

// Accepts when at the contempt value twice, drawish for fifteen searches, losing for six, or at
// once when hopeless; offers only after a pause against humans; resigns when mate closes in or
// the score stays hopeless. A tablebase verdict overrides the score.
TEST(DrawHandler, AcceptOfferAndResign) {
  using D = DrawHandler;
  const auto accept = &D::AcceptDraw, offer = &D::ShouldOfferDraw, resign = &D::ShouldResign;
  const struct {
    Searches run;
    bool (DrawHandler::*ask)() const;
    bool expected;
    int verdict = D::unknown;
    bool pending = false;
    int since_own_offer = 1000;
  } cases[] = {
      {{NO_QUEENS, false, {0, 0}}, accept, true},
      {{NO_QUEENS, false, Times(14, 5)}, accept, false},
      {{NO_QUEENS, false, Times(15, 5)}, accept, true},
      {{NO_QUEENS, false, Times(6, -30)}, accept, true},
      {{NO_QUEENS, false, {-300}}, accept, true},
      {{NO_QUEENS, false, {0}}, offer, false},  // one search is too few
      {{NO_QUEENS, false, {0, 0}}, offer, false, D::unknown, false, 7},
      {{NO_QUEENS, false, {0, 0}}, offer, true, D::unknown, false, 8},
      {{NO_QUEENS, true, {0, 0}}, offer, true, D::unknown, false, 1},
      {{NO_QUEENS, false, {0, 0}}, offer, false, D::won},
      {{NO_QUEENS, false, Times(6, -300)}, resign, true},
      {{NO_QUEENS, true, Times(5, -500)}, resign, true},
      // A mate that comes closer: against a human only within four moves.
      {{NO_QUEENS, false, {-(MATE - 12), -(MATE - 10)}}, resign, false},
      {{NO_QUEENS, false, {-(MATE - 12), -(MATE - 10), -(MATE - 8)}}, resign, true},
      {{NO_QUEENS, false, Times(6, -300)}, resign, false, D::drawn},
      {{NO_QUEENS, false, {}}, resign, true, D::lost_soon},
  };
  for (const auto& c : cases) {
    DrawHandler handler = After(c.run);
    handler.tablebase_verdict = c.verdict;
    handler.draw_offer_pending = c.pending;
    handler.moves_since_own_offer = c.since_own_offer;
    EXPECT_EQ((handler.*c.ask)(), c.expected)
        << &c - cases << ": computer " << c.run.computer << ", " << c.run.scores.size()
        << " scores";
  }
}

TEST(DrawHandler, ResetKeepsOpponentAndContempt) {
  DrawHandler handler = After({NO_QUEENS, true, Times(3, -2000), -20});
  handler.draw_offer_pending = true;
  handler.Reset();
  EXPECT_EQ(handler.hopeless_streak + handler.moves_seen, 0);
  EXPECT_FALSE(handler.draw_offer_pending);
  EXPECT_TRUE(handler.opponent_is_computer);
  EXPECT_EQ(handler.contempt, -20);
}

}  // namespace
