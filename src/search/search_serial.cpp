#include "search/search_serial.h"

#include "shell/application.h"
#include "shell/os_dependent.h"

// Until the tree search exists, a request gives no move: the result is discarded at once.
void SerialSearch::Start(const SearchRequest& request, const UserBoard&, Application& application) {
  type = request.type;
  max_depth = request.max_depth;
  max_time_limit = request.max_time_limit;
  variable_time_limit = request.variable_time_limit;
  no_moves = true;
  Now(start_time);
  application.SearchFinished(true);
}

void SerialSearch::PonderHit() {
  type = SearchType::normal;
  Now(ponder_hit_time);
}

void SerialSearch::SetContempt(std::int32_t value) { contempt = value; }

void SerialSearch::SetPersonality(std::int32_t value) { personality = value; }

std::uint64_t SerialSearch::ElapsedTime() const {
  std::int64_t elapsed = ElapsedMsSince(start_time);
  if (ponder_hit_time.set) elapsed -= ElapsedMs(start_time, ponder_hit_time) * 3 / 10;
  return std::uint64_t(elapsed < 0 ? 0 : elapsed);
}
