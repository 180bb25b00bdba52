#include "search/hash_report.h"

#include <gtest/gtest.h>

#include "search/hash.h"

TEST(HashReport, DetailedStatusWithTheHundredthsWithoutLeadingZero) {
  TranspositionTable table;  // 512 slots
  EXPECT_EQ(TableStatusText("transposition table", table, true),
            "transposition table: 12.00 kilobyte\n"
            "#total slots:    512\n"
            "#free  slots:    512\n"
            "fill percentage: 0.0%\n\n");
  for (std::uint64_t key = 1; key <= 26; ++key) table.Store(MakePlaceholder(key, 0, 0, 0, 0, 0));
  // 10000 * 26 / 512 = 507 hundredths.
  EXPECT_EQ(TableStatusText("transposition table", table, true),
            "transposition table: 12.00 kilobyte\n"
            "#total slots:    512\n"
            "#free  slots:    486\n"
            "fill percentage: 5.7%\n\n");
  EXPECT_EQ(TableStatusText("pawn hashtable", PawnHashTable(), false),
            "pawn hashtable: 7.00 kilobyte\n");
}

TEST(HashReport, NewSearchRestartsTheCountersOfAllThree) {
  Move move;
  int distance;
  TRANSPOSITION_TABLE.ProbeMove(1, move, distance);
  EVALUATION_HASH_TABLE.Probe(1, 0);
  PAWN_HASH_TABLE.Probe(1, 0, 0, 0);
  const std::uint32_t generation = TRANSPOSITION_TABLE.generation;
  NewSearchOnHashTables();
  EXPECT_EQ(TRANSPOSITION_TABLE.probes + PAWN_HASH_TABLE.probes + EVALUATION_HASH_TABLE.probes, 0u);
  EXPECT_NE(TRANSPOSITION_TABLE.generation, generation);
}
