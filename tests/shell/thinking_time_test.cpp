#include "shell/thinking_time.h"

#include <gtest/gtest.h>

#include <memory>

#include "shell/console_protocol.h"
#include "shell/game_state.h"

namespace {

struct ThinkingCase {
  std::int64_t ms_left;
  std::uint32_t moves_left;
  int hard, soft;
};

TEST(ThinkingTime, HardAndSoftLimitsOfTheClock) {
  const ThinkingCase cases[] = {
      {0, 40, 150, 150}, {-1, 40, 150, 150}, {-500000, 40, 150, 150},  // ran out: the minimum
      {3000, NO_MOVE_LIMIT, 150, 150},
      {600000, NO_MOVE_LIMIT, 600000 - 90000 - 90000, 600000 / 62},  // plans for thirty moves
      {100000, 40, 2500, 100000 / 82},  // the reserve would leave nothing: the even share
      {100000, 2, 100000 - 15000 - 6000, 100000 / 6},
      {100000, 1, 100000, 100000 / 4},  // the last move of a stage may take the whole clock
      // 6990513 * 0.15 = 1048576.95, which single precision rounds to 1048577.
      {6990513, NO_MOVE_LIMIT, 6990513 - 1048577 - 90000, 6990513 / 62},
      {200001, NO_MOVE_LIMIT, 200001 - 30000 - 90000, 200001 / 62},
      // Only the low 32 bits of the clock count, and huge move counts do not overflow.
      {(std::int64_t(1) << 32) + 3000, NO_MOVE_LIMIT, 150, 150},
      {std::int64_t(0xFFFFFFFF), 40, 150, 150},
      {0x7FFFFFFF, 0x7FFFFFFF, 150, 150},
  };
  for (const ThinkingCase& c : cases) {
    Clock clock;
    clock.ms_left = c.ms_left;
    clock.moves_left = c.moves_left;
    int hard = -1, soft = -1;
    ThinkingTime(clock, hard, soft);
    EXPECT_EQ(hard, c.hard) << c.ms_left << " ms, " << c.moves_left << " moves";
    EXPECT_EQ(soft, c.soft) << c.ms_left << " ms, " << c.moves_left << " moves";
  }
}

// The game keeps a reserve where the clock rule would hand the search all the clock: the last
// move before a time control. The soft limit, and the hard one elsewhere, are the clock rule's.
TEST(ThinkingTime, TheGameKeepsAReserveOnTheLastMoveBeforeTheControl) {
  const struct {
    std::int64_t ms_left;
    std::uint32_t moves_left;
    int hard;  // -1: the clock rule's
  } cases[] = {{2000, 1, 1800},  {50000, 1, 49000},  // a tenth stays, at most a second
               {100, 1, 150},    {0, 1, 150},        // never below the least thinking time
               {300000, 40, -1}};
  for (const auto& c : cases) {
    GameState game(std::make_unique<BraskInterfaces::ConsoleProtocol>());
    Clock& clock = game.time_control.clocks[WHITE];
    clock.ms_left = c.ms_left;
    clock.moves_left = c.moves_left;
    int hard = 0, soft = 0, rule_hard = 0, rule_soft = 0;
    game.ThinkingTime(WHITE, hard, soft);
    ThinkingTime(clock, rule_hard, rule_soft);
    EXPECT_EQ(hard, c.hard == -1 ? rule_hard : c.hard) << c.ms_left;
    EXPECT_EQ(soft, rule_soft) << c.ms_left;
  }
}

}  // namespace
