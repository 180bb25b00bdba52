#include <gtest/gtest.h>

#include "shell/commands_game.h"
#include "shell/console_protocol.h"

namespace {

using BraskInterfaces::ConsoleScoreText;
using BraskInterfaces::ResultReason;

constexpr std::uint32_t WHITE_WINS = 1, BLACK_WINS = 2, DRAW = 3, UNKNOWN = 4;

TEST(ConsoleScoreText, PlainValuesUpToTheMateRange) {
  EXPECT_EQ(ConsoleScoreText(0), "0");
  EXPECT_EQ(ConsoleScoreText(-23), "-23");
  EXPECT_EQ(ConsoleScoreText(31767), "31767");
  EXPECT_EQ(ConsoleScoreText(-31767), "-31767");
}

TEST(ConsoleScoreText, MateScoresCountMovesNotPlies) {
  EXPECT_EQ(ConsoleScoreText(32767 - 1), "#1");
  EXPECT_EQ(ConsoleScoreText(32767 - 5), "#3");
  EXPECT_EQ(ConsoleScoreText(-(32767 - 4)), "-#2");
  EXPECT_EQ(ConsoleScoreText(-(32767 - 3)), "-#2");
  EXPECT_EQ(ConsoleScoreText(31768), "#500");
}

TEST(ResultReason, AbortedGameAndComments) {
  EXPECT_EQ(ResultReason(UNKNOWN, "result * {time forfeit}"), 8u);
  EXPECT_EQ(ResultReason(DRAW, "result 1/2-1/2 {Draw by mutal agreement}"), 6u);
  EXPECT_EQ(ResultReason(DRAW, "result 1/2-1/2 {Players AGREED}"), 6u);
  EXPECT_EQ(ResultReason(WHITE_WINS, "result 1-0 {Black agrees to resign}"), 1u);
  EXPECT_EQ(ResultReason(BLACK_WINS, "result 0-1 {White forfeits on Time}"), 2u);
  EXPECT_EQ(ResultReason(DRAW, "result 1/2-1/2 {Black resigns on time}"), 2u);
  EXPECT_EQ(ResultReason(WHITE_WINS, "result 1-0 {White mates}"), 9u);
}

TEST(ResultReason, OnlyACompleteShortCommentCounts) {
  EXPECT_EQ(ResultReason(WHITE_WINS, "result 1-0 {resign"), 9u);
  EXPECT_EQ(ResultReason(WHITE_WINS, "result 1-0 resign"), 9u);
  EXPECT_EQ(ResultReason(WHITE_WINS, "result 1-0 {x} {resign}"), 9u);
  const std::string words(500, 'x');
  // A comment of 510 characters is read, one of 511 is not.
  EXPECT_EQ(ResultReason(WHITE_WINS, "result 1-0 {" + words + "resign....}"), 1u);
  EXPECT_EQ(ResultReason(WHITE_WINS, "result 1-0 {" + words + "resign.....}"), 9u);
}

}  // namespace
