#include "shell/help_entry.h"

#include <algorithm>

#include "chess/string_helpers.h"

namespace BraskHelpScreen {

namespace {

bool CommandLess(const HelpEntry& a, const HelpEntry& b) {
  return BraskUtils::LessIgnoreCase(a.command, b.command);
}

bool SameCommand(const HelpEntry& a, const HelpEntry& b) {
  return !CommandLess(a, b) && !CommandLess(b, a);
}

}  // namespace

std::vector<HelpEntry> SortedHelpList(std::span<const HelpEntry> entries) {
  std::vector<HelpEntry> list(entries.begin(), entries.end());
  // A stable sort keeps equal commands in the order given, so unique() keeps the first of them.
  std::stable_sort(list.begin(), list.end(), CommandLess);
  list.erase(std::unique(list.begin(), list.end(), SameCommand), list.end());
  return list;
}

}  // namespace BraskHelpScreen
