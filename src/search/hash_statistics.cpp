#include "search/hash_statistics.h"

#include "search/hash.h"

HashStatistics CurrentHashStatistics() {
  return {TRANSPOSITION_TABLE.HitRatio(), PAWN_HASH_TABLE.HitRatio(),
          EVALUATION_HASH_TABLE.HitRatio()};
}
