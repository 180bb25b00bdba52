#include "search/hash_report.h"

#include "chess/memory_size.h"
#include "search/hash.h"
#include "shell/conversions.h"

std::string SizeInWords(std::uint64_t bytes) { return BraskUtils::FormatMemorySize(bytes); }

std::string TableStatusText(const char* name, const AbstractHashTable& table, bool detailed) {
  std::string text = std::string(name) + ": " + SizeInWords(table.MemoryUsage()) + "\n";
  if (!detailed) return text;
  const std::uint64_t total = table.TotalSlots();
  const std::uint64_t free = table.FreeSlots();
  // Hundredths of a percent; the hundredths are written as a plain number, "12.5" for 12.05.
  const std::uint64_t fill = 10000 * (total - free) / total;
  text += "#total slots:    " + U64ToString(total) + "\n";
  text += "#free  slots:    " + U64ToString(free) + "\n";
  text += "fill percentage: " + U64ToString(fill / 100) + "." + U64ToString(fill % 100) + "%\n\n";
  return text;
}

std::string HashtableStatusText(bool detailed) {
  return TableStatusText("transposition table", TRANSPOSITION_TABLE, detailed) +
         TableStatusText("pawn hashtable", PAWN_HASH_TABLE, detailed) +
         TableStatusText("evaluation hashtable", EVALUATION_HASH_TABLE, detailed);
}
