#include <gtest/gtest.h>

#include <tuple>
#include <utility>

#include "shell/commands_game.h"
#include "shell/console_protocol.h"

namespace {

using BraskInterfaces::ConsoleScoreText;
using BraskInterfaces::ResultReason;

constexpr std::uint32_t WHITE_WINS = 1, BLACK_WINS = 2, DRAW = 3, UNKNOWN = 4;

TEST(ConsoleScoreText, PlainValuesUpToTheMateRangeThenMovesToMate) {
  for (const auto& [score, text] :
       {std::pair{0, "0"}, {-23, "-23"}, {31767, "31767"}, {-31767, "-31767"},
        {32767 - 1, "#1"}, {32767 - 5, "#3"}, {-(32767 - 4), "-#2"}, {-(32767 - 3), "-#2"},
        {31768, "#500"}})
    EXPECT_EQ(ConsoleScoreText(score), text) << score;
}

TEST(ResultReason, FromTheResultAndACompleteShortComment) {
  const std::string words(500, 'x');
  for (const auto& [result, text, reason] : {
           std::tuple<std::uint32_t, std::string, std::uint32_t>{
               UNKNOWN, "result * {time forfeit}", 8},
           {DRAW, "result 1/2-1/2 {Draw by mutal agreement}", 6},
           {DRAW, "result 1/2-1/2 {Players AGREED}", 6},
           {WHITE_WINS, "result 1-0 {Black agrees to resign}", 1},
           {BLACK_WINS, "result 0-1 {White forfeits on Time}", 2},
           {DRAW, "result 1/2-1/2 {Black resigns on time}", 2},
           {WHITE_WINS, "result 1-0 {White mates}", 9},
           {WHITE_WINS, "result 1-0 {resign", 9},
           {WHITE_WINS, "result 1-0 {x} {resign}", 9},
           // A comment of 510 characters is read, one of 511 is not.
           {WHITE_WINS, "result 1-0 {" + words + "resign....}", 1},
           {WHITE_WINS, "result 1-0 {" + words + "resign.....}", 9}})
    EXPECT_EQ(ResultReason(result, text), reason) << text.substr(0, 60);
}

}  // namespace
