#include "shell/time_point.h"

#include <sys/time.h>
#include <unistd.h>

#include <algorithm>

void Now(TimePoint& point) {
  timeval now{};
  gettimeofday(&now, nullptr);
  point.set = true;
  point.seconds = now.tv_sec;
  point.microseconds = now.tv_usec;
}

std::int64_t ElapsedMs(const TimePoint& from, const TimePoint& to) {
  return 1000 * (to.seconds - from.seconds) + (to.microseconds - from.microseconds) / 1000;
}

std::int64_t ElapsedMsSince(const TimePoint& from) {
  TimePoint now;
  Now(now);
  return ElapsedMs(from, now);
}

void SleepMs(std::int64_t ms) {
  // usleep may refuse a second or more, so long waits go in steps of one second.
  constexpr std::int64_t STEP_MS = 999;
  while (ms > 0) {
    const std::int64_t step = std::min(ms, STEP_MS);
    usleep(useconds_t(1000 * step));
    ms -= step;
  }
}
