// What the commands "time" and "otim" do: set the remaining time of a clock, the engine's or the
// opponent's, and report the state of both clocks to the log.
#pragma once

#include <cstdint>
#include <string>

#include "shell/time_control.h"

// The engine's clock is that of the one side played by a computer; with none or two computers the
// side to move takes the engine's role.
int EngineClockSide(bool white_is_computer, bool black_is_computer, int side_to_move);

// The arguments of "time" and "otim" are centiseconds.
void SetRemainingTime(Clock& clock, std::int32_t centiseconds);

// The report for the log after "time" or "otim", to go through the log-only report, which adds
// its own ending.
std::string ClockReport(const TimeControl& time_control, bool white_is_computer,
                        bool black_is_computer);
