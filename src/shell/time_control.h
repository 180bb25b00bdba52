// The game clocks: each side's clock runs through a list of stages (so many moves in so much
// time, plus an increment), and the side to move uses the active clock.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "shell/time_point.h"

struct TimeControlStage {
  std::int32_t moves = -1;        // -1: no limit, the stage never ends
  std::int32_t time_ms = 0;       // added when the stage begins
  std::int32_t increment_ms = 0;  // added with each move
  std::int32_t repeat = 0;        // non-zero: the stage starts over when its moves are used up

  bool operator==(const TimeControlStage&) const = default;
};

// A stage list must not be empty and no stage may have 0 moves; the parsers of time commands
// only produce such lists.
using TimeControlStages = std::vector<TimeControlStage>;

// moves_left of a clock without a move limit: the stage's -1 seen unsigned.
inline constexpr std::uint32_t NO_MOVE_LIMIT = 0xFFFFFFFF;

struct Clock {
  // 40 moves in 5 minutes, over and over.
  TimeControlStages stages{TimeControlStage{40, 300000, 0, -1}};
  std::uint32_t moves_left = 40;
  std::int64_t ms_left = 300000;
  std::uint32_t stage_index = 0;
  std::int32_t repeat = -1;

  bool HasMoveLimit() const { return moves_left != NO_MOVE_LIMIT; }
  // Back to the start of the first stage.
  void Reset();
};

// Books one move that took elapsed_ms, with the current stage's increment; when the stage's moves
// are used up, the next stage (or the same one, if it repeats) begins and adds its time.
void ChargeMove(Clock& clock, std::int64_t elapsed_ms);

enum : int { WHITE_CLOCK = 0, BLACK_CLOCK = 1 };

// The operations with a TimePoint argument take it as the present time, so that the arithmetic
// can be driven without waiting; the others read the system clock.
class TimeControl {
 public:
  void Start();
  void Start(const TimePoint& now);
  // Charges the time since Start to the active clock, without increment or move; 0 if stopped.
  std::int64_t Stop();
  std::int64_t Stop(const TimePoint& now);
  // One move was made: charges the active clock and hands the turn to the other one. A running
  // clock keeps running for the other side.
  void Switch();
  void Switch(const TimePoint& now);
  void Reset(int active_side);
  void Set(const TimeControlStages& white_stages, const TimeControlStages& black_stages,
           int active_side);

  bool running = false;
  TimePoint started;
  std::array<Clock, 2> clocks;
  int active = WHITE_CLOCK;
};
