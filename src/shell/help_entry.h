// One row of a help screen, and the order in which rows are shown.
#pragma once

#include <span>
#include <string>
#include <vector>

namespace BraskHelpScreen {

struct HelpEntry {
  std::string command;      // the word in the left column
  std::string description;  // a newline in it forces a new line on the screen
};

// The entries sorted by command regardless of case (as strcasecmp orders them); of entries whose
// commands differ only in case, or not at all, the first given is kept.
std::vector<HelpEntry> SortedHelpList(std::span<const HelpEntry> entries);

}  // namespace BraskHelpScreen
