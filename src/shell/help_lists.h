// The three lists that help screens show, each sorted on first use and kept to the end of the run.
#pragma once

#include <vector>

#include "shell/help_entry.h"

namespace BraskHelpScreen {

// Every command the user can look up with "help".
const std::vector<HelpEntry>& CommandHelpList();
// The entries of the command list that can also be given as start-up options.
const std::vector<HelpEntry>& StartupHelpList();
// The commands of edit mode.
const std::vector<HelpEntry>& EditHelpList();

}  // namespace BraskHelpScreen
