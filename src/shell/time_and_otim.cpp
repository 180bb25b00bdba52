#include "shell/time_and_otim.h"

#include "shell/conversions.h"

namespace {

const char* BoolWord(bool value) { return value ? "true" : "false"; }

std::string ClockLines(const char* role, const Clock& clock) {
  return std::string("time (") + role +
         " side):\nmoves_left: " + IntToString(static_cast<std::int32_t>(clock.moves_left)) +
         "\nmilliseconds_left: " + I64ToString(clock.ms_left) +
         "\nout_of_time: " + BoolWord(clock.ms_left < 0);
}

}  // namespace

int EngineClockSide(bool white_is_computer, bool black_is_computer, int side_to_move) {
  if (white_is_computer == black_is_computer) return side_to_move;
  return white_is_computer ? WHITE_CLOCK : BLACK_CLOCK;
}

void SetRemainingTime(Clock& clock, std::int32_t centiseconds) {
  clock.ms_left = 10 * std::int64_t(centiseconds);
}

std::string ClockReport(const TimeControl& time_control, bool white_is_computer,
                        bool black_is_computer) {
  const int active = time_control.active;
  return ClockLines("active", time_control.clocks[active]) + "\n" +
         ClockLines("passive", time_control.clocks[active ^ 1]) +
         "\nplayer1 played by engine: " + BoolWord(white_is_computer) +
         "\nplayer2 played by engine: " + BoolWord(black_is_computer) + "\n";
}
