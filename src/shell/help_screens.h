// The help screens of the protocols, each made on first use and kept to the end of the run.
#pragma once

#include "shell/help_screen.h"

namespace BraskHelpScreen {

AbstractHelpScreenFormatter& CommandHelpScreen();  // "help"
AbstractHelpScreenFormatter& StartupHelpScreen();  // "--help" on the command line
AbstractHelpScreenFormatter& EditHelpScreen();     // "help" in edit mode

}  // namespace BraskHelpScreen
