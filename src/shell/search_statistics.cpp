#include "shell/search_statistics.h"

#include "search/hash_statistics.h"
#include "search/search_serial.h"
#include "shell/os_dependent.h"
#include "shell/tee_stream.h"

namespace {
double Ratio(double part, double whole) { return whole == 0 ? 0.0 : part / whole; }
}  // namespace

void WriteSearchStatistics(const SerialSearch& search) {
  const std::int64_t ms =
      search.stop_time.set ? ElapsedMs(search.start_time, search.stop_time)
                           : ElapsedMsSince(search.start_time);
  const double knps = ms == 0 ? 0.0 : double(search.nodes) / double(ms);
  Output << "time: " << double(ms) / 1000.0 << " sec (" << std::uint64_t(search.nodes / 1000)
         << " knodes, " << knps << " knps)\n";
  const HashStatistics hits = CurrentHashStatistics();
  Output << "hit ratio: trans=" << hits.transposition << ", pawn=" << hits.pawn
         << ", eval=" << hits.evaluation << "\n";
  Output << "ETTC tries=" << search.ettc_tries << ", cutoffs=" << search.ettc_cutoffs
         << ", efficiency=" << Ratio(double(search.ettc_cutoffs), double(search.ettc_tries))
         << "\n";
}
