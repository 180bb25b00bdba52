// Hit ratios of the three hash tables over the current search.
#pragma once

struct HashStatistics {
  double transposition = 0.0;
  double pawn = 0.0;
  double evaluation = 0.0;
};

HashStatistics CurrentHashStatistics();
