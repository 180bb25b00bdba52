// How long a search may think, from the clock of the side it thinks for: a hard limit and a soft
// one that the search's stop rule stretches or shrinks.
#pragma once

#include "shell/time_control.h"

// No limit ever falls below this: a clock that has run out still moves at once.
inline constexpr int MIN_THINKING_TIME_MS = 150;

void ThinkingTime(const Clock& clock, int& max_time_limit, int& variable_time_limit);
