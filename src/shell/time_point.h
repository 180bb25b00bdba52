// Wall-clock time in the resolution of the operating system, for the clocks of the game and of
// the search.
#pragma once

#include <cstdint>

struct TimePoint {
  bool set = false;  // false until Now() has filled it
  std::int64_t seconds = 0;
  std::int64_t microseconds = 0;
};

void Now(TimePoint& point);

// Whole milliseconds from `from` to `to`; the microsecond part truncates towards zero.
std::int64_t ElapsedMs(const TimePoint& from, const TimePoint& to);
std::int64_t ElapsedMsSince(const TimePoint& from);

// Returns at once for zero or a negative time.
void SleepMs(std::int64_t ms);
