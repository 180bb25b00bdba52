// The game's thinking time keeps a reserve on the clock when the clock-level rule would hand the
// search all of it: the last move before a time control.
#include <gtest/gtest.h>

#include <memory>

#include "shell/console_protocol.h"
#include "shell/game_state.h"
#include "shell/thinking_time.h"

namespace {

struct Limits {
  int hard, soft;
};

Limits LimitsFor(std::int64_t ms_left, std::uint32_t moves_left) {
  GameState game(std::make_unique<BraskInterfaces::ConsoleProtocol>());
  Clock& clock = game.time_control.clocks[WHITE];
  clock.ms_left = ms_left;
  clock.moves_left = moves_left;
  Limits limits{};
  game.ThinkingTime(WHITE, limits.hard, limits.soft);
  return limits;
}

TEST(GameThinkingTime, LastMoveBeforeTheControlKeepsAReserve) {
  EXPECT_EQ(LimitsFor(2000, 1).hard, 1800);     // a tenth stays
  EXPECT_EQ(LimitsFor(50000, 1).hard, 49000);   // at most a second stays
  EXPECT_EQ(LimitsFor(50000, 1).soft, 12500);   // the soft limit is the clock rule's
  EXPECT_EQ(LimitsFor(100, 1).hard, 150);       // never below the least thinking time
  EXPECT_EQ(LimitsFor(0, 1).hard, 150);
}

TEST(GameThinkingTime, OrdinaryMovesFollowTheClockRule) {
  // 40 moves in five minutes: far from the whole clock, so nothing changes.
  int hard = 0, soft = 0;
  Clock clock;
  ThinkingTime(clock, hard, soft);
  const Limits limits = LimitsFor(clock.ms_left, clock.moves_left);
  EXPECT_EQ(limits.hard, hard);
  EXPECT_EQ(limits.soft, soft);
}

}  // namespace
