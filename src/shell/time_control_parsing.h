// The arguments of the commands "level" and "tc", turned into the stage lists of the two clocks.
#pragma once

#include <string_view>

#include "shell/brask_exception.h"
#include "shell/time_control.h"

// Carries the message of the command's error, e.g. "argument out of bounds".
class TimeControlArgumentError : public BraskException {
 public:
  using BraskException::BraskException;
};

struct TimeControlSetting {
  TimeControlStages white;
  TimeControlStages black;
};

// A time T is "0" for 10 seconds, a plain number of minutes, or "m:s". An increment I is in
// seconds, whole or with up to three decimals (front ends send "0.5").

// "level M T I": one repeating stage of M moves (0: all moves) in T, with increment I, for both
// clocks.
TimeControlSetting ParseLevel(std::string_view moves, std::string_view time,
                              std::string_view increment);

// "tc text": triples "moves time increment", one list for both clocks or "white ; black". The
// last stage of a list has 0 moves, so it lasts to the end of the game.
TimeControlSetting ParseTc(std::string_view text);
