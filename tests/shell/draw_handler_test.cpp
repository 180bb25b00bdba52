#include "shell/draw_handler.h"

#include <gtest/gtest.h>

#include "support/board_from_fen.h"

namespace {

// Material enough that no ending rule lowers the hopeless limit: queens, many pawns.
const char* MIDDLE_GAME = "r1bqkbnr/pppp1ppp/2n5/4p3/4P3/5N2/PPPP1PPP/RNBQKB1R w KQkq - 2 3";
const char* NO_QUEENS = "r1b1kbnr/pppp1ppp/2n5/4p3/4P3/5N2/PPPP1PPP/RNB1KB1R w KQkq - 2 3";
// Two pawns and eight other pieces, kings included: the ending allowance applies.
const char* ENDING = "r3k2r/4p3/8/8/8/8/4P3/RN2K1NR w - - 0 1";

constexpr int MATED_IN_TWO_MOVES = -(32767 - 4);

void Feed(DrawHandler& handler, const Board& board, int score, int times) {
  for (int i = 0; i < times; ++i) handler.Update(board, score);
}

TEST(DrawHandler, HopelessLimitDependsOnOpponentQueensAndEnding) {
  struct Case {
    const char* fen;
    bool computer;
    int limit;
  };
  const Case cases[] = {{NO_QUEENS, false, -250}, {NO_QUEENS, true, -440},
                        {MIDDLE_GAME, false, -320}, {MIDDLE_GAME, true, -510},
                        {ENDING, false, -450}, {ENDING, true, -1040}};
  for (const Case& c : cases) {
    const Board board = BoardFromFen(c.fen);
    DrawHandler at_limit, above;
    at_limit.opponent_is_computer = above.opponent_is_computer = c.computer;
    at_limit.Update(board, c.limit);
    above.Update(board, c.limit + 1);
    EXPECT_EQ(at_limit.hopeless_streak, 1) << c.fen << " computer " << c.computer;
    EXPECT_EQ(above.hopeless_streak, 0) << c.fen << " computer " << c.computer;
  }
}

TEST(DrawHandler, StreaksCountAroundContemptAndBreak) {
  const Board board = BoardFromFen(NO_QUEENS);
  DrawHandler handler;
  handler.contempt = 10;
  Feed(handler, board, -5, 3);  // below contempt - 14
  EXPECT_EQ(handler.losing_streak, 3);
  handler.Update(board, -4);  // exactly contempt - 14: no longer losing
  EXPECT_EQ(handler.losing_streak, 0);
  Feed(handler, board, 25, 2);
  EXPECT_EQ(handler.winning_streak, 2);
  handler.Update(board, 24);
  EXPECT_EQ(handler.winning_streak, 0);
  Feed(handler, board, 10, 2);
  EXPECT_EQ(handler.contempt_streak, 2);
  EXPECT_EQ(handler.moves_seen, 9);
}

TEST(DrawHandler, DrawishMarginIsNarrowerWithQueens) {
  DrawHandler queens, none;
  queens.Update(BoardFromFen(MIDDLE_GAME), 18);
  none.Update(BoardFromFen(NO_QUEENS), -25);
  EXPECT_EQ(queens.drawish_streak, 0);
  EXPECT_EQ(none.drawish_streak, 1);
  queens.Update(BoardFromFen(MIDDLE_GAME), -17);
  EXPECT_EQ(queens.drawish_streak, 1);
}

TEST(DrawHandler, MateScoresGiveMovesToMateAndWhetherItCloses) {
  const Board board = BoardFromFen(NO_QUEENS);
  DrawHandler handler;
  handler.Update(board, MATED_IN_TWO_MOVES);
  EXPECT_EQ(handler.mated_in, 2);
  handler.Update(board, -(32767 - 6));  // the mate moves away
  EXPECT_EQ(handler.mated_in, 3);
  EXPECT_FALSE(handler.mate_closing_in);
  handler.Update(board, -(32767 - 2));
  EXPECT_EQ(handler.mated_in, 1);
  EXPECT_TRUE(handler.mate_closing_in);
  handler.Update(board, -31767);  // the last score that is no mate
  EXPECT_EQ(handler.mated_in, -1);
  EXPECT_FALSE(handler.mate_closing_in);
}

// Accepts when at the contempt value twice, drawish for fifteen searches, losing for six, or at
// once when hopeless.
TEST(DrawHandler, AcceptsDrawWhenLosingOrLongDrawish) {
  const Board board = BoardFromFen(NO_QUEENS);
  const struct {
    int score, times;
    bool accepts;
  } cases[] = {{0, 1, false}, {0, 2, true},   {5, 14, false},
               {5, 15, true}, {-30, 6, true}, {-300, 1, true}};
  for (const auto& c : cases) {
    DrawHandler handler;
    Feed(handler, board, c.score, c.times);
    EXPECT_EQ(handler.AcceptDraw(), c.accepts) << c.score << " x" << c.times;
  }
}

TEST(DrawHandler, OffersDrawOnlyAfterAPauseAgainstHumans) {
  const Board board = BoardFromFen(NO_QUEENS);
  DrawHandler human;
  Feed(human, board, 0, 1);
  EXPECT_FALSE(human.ShouldOfferDraw());  // one search is too few
  Feed(human, board, 0, 1);
  EXPECT_TRUE(human.ShouldOfferDraw());
  human.moves_since_own_offer = 0;
  Feed(human, board, 0, 7);
  EXPECT_FALSE(human.ShouldOfferDraw());
  Feed(human, board, 0, 1);
  EXPECT_TRUE(human.ShouldOfferDraw());

  DrawHandler computer;
  computer.opponent_is_computer = true;
  Feed(computer, board, 0, 2);
  computer.moves_since_own_offer = 1;
  EXPECT_TRUE(computer.ShouldOfferDraw());
  computer.draw_offer_pending = true;
  EXPECT_FALSE(computer.ShouldOfferDraw());
}

TEST(DrawHandler, ResignsWhenMateClosesInOrTheScoreStaysHopeless) {
  const Board board = BoardFromFen(NO_QUEENS);
  DrawHandler human;
  Feed(human, board, -300, 5);
  EXPECT_FALSE(human.ShouldResign());
  human.Update(board, -300);
  EXPECT_TRUE(human.ShouldResign());

  DrawHandler computer;
  computer.opponent_is_computer = true;
  Feed(computer, board, -500, 5);
  EXPECT_TRUE(computer.ShouldResign());

  // A mate that comes closer: against a human only within four moves.
  DrawHandler mated;
  mated.Update(board, -(32767 - 12));
  mated.Update(board, -(32767 - 10));
  EXPECT_EQ(mated.mated_in, 5);
  EXPECT_FALSE(mated.ShouldResign());
  mated.Update(board, -(32767 - 8));
  EXPECT_TRUE(mated.ShouldResign());
}

TEST(DrawHandler, TablebaseVerdictOverridesTheScore) {
  const Board board = BoardFromFen(NO_QUEENS);
  DrawHandler handler;
  Feed(handler, board, -300, 6);
  handler.tablebase_verdict = DrawHandler::drawn;
  EXPECT_FALSE(handler.ShouldResign());
  handler.tablebase_verdict = DrawHandler::lost_soon;
  EXPECT_TRUE(handler.ShouldResign());
  Feed(handler, board, 0, 2);
  handler.tablebase_verdict = DrawHandler::won;
  EXPECT_FALSE(handler.ShouldOfferDraw());
}

TEST(DrawHandler, ResetKeepsOpponentAndContempt) {
  const Board board = BoardFromFen(NO_QUEENS);
  DrawHandler handler;
  handler.opponent_is_computer = true;
  handler.contempt = -20;
  handler.draw_offer_pending = true;
  Feed(handler, board, -2000, 3);
  handler.Reset();
  EXPECT_EQ(handler.hopeless_streak, 0);
  EXPECT_EQ(handler.moves_seen, 0);
  EXPECT_EQ(handler.last_score, 1000000);
  EXPECT_EQ(handler.moves_since_own_offer, 1000);
  EXPECT_FALSE(handler.draw_offer_pending);
  EXPECT_TRUE(handler.opponent_is_computer);
  EXPECT_EQ(handler.contempt, -20);
}

}  // namespace
