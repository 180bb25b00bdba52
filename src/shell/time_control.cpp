#include "shell/time_control.h"

#include <algorithm>

#include "shell/checked_assert.h"

namespace {

void EnterStage(Clock& clock, std::uint32_t index) {
  const TimeControlStage& stage = clock.stages[index];
  clock.stage_index = index;
  clock.moves_left = static_cast<std::uint32_t>(stage.moves);
  clock.repeat = stage.repeat;
}

bool IsValidStageList(const TimeControlStages& stages) {
  return !stages.empty() && std::none_of(stages.begin(), stages.end(),
                                         [](const TimeControlStage& s) { return s.moves == 0; });
}

}  // namespace

void Clock::Reset() {
  EnterStage(*this, 0);
  ms_left = stages[0].time_ms;
}

void ChargeMove(Clock& clock, std::int64_t elapsed_ms) {
  clock.ms_left += clock.stages[clock.stage_index].increment_ms - elapsed_ms;
  if (!clock.HasMoveLimit() || --clock.moves_left != 0) return;
  // A list whose last stage ends without repeating can't come from the commands; staying on the
  // last stage keeps such a clock alive instead of running off the list.
  const std::uint32_t last = static_cast<std::uint32_t>(clock.stages.size() - 1);
  const std::uint32_t next =
      clock.repeat != 0 ? clock.stage_index : std::min(clock.stage_index + 1, last);
  EnterStage(clock, next);
  clock.ms_left += clock.stages[next].time_ms;
}

void TimeControl::Start() {
  TimePoint now;
  Now(now);
  Start(now);
}

void TimeControl::Start(const TimePoint& now) {
  if (running) return;
  started = now;
  running = true;
}

std::int64_t TimeControl::Stop() {
  TimePoint now;
  Now(now);
  return Stop(now);
}

std::int64_t TimeControl::Stop(const TimePoint& now) {
  if (!running) return 0;
  const std::int64_t elapsed = ElapsedMs(started, now);
  clocks[active].ms_left -= elapsed;
  running = false;
  return elapsed;
}

void TimeControl::Switch() {
  TimePoint now;
  Now(now);
  Switch(now);
}

void TimeControl::Switch(const TimePoint& now) {
  std::int64_t elapsed = 0;
  if (running) {
    elapsed = ElapsedMs(started, now);
    started = now;
  }
  ChargeMove(clocks[active], elapsed);
  active ^= 1;
}

void TimeControl::Reset(int active_side) {
  CHECKED_ASSERT(active_side == WHITE_CLOCK || active_side == BLACK_CLOCK, "invalid side");
  running = false;
  active = active_side;
  for (Clock& clock : clocks) clock.Reset();
}

void TimeControl::Set(const TimeControlStages& white_stages, const TimeControlStages& black_stages,
                      int active_side) {
  CHECKED_ASSERT(IsValidStageList(white_stages) && IsValidStageList(black_stages),
                 "a stage list must be non-empty, without stages of 0 moves");
  clocks[WHITE_CLOCK].stages = white_stages;
  clocks[BLACK_CLOCK].stages = black_stages;
  Reset(active_side);
}
