#include "shell/help_screens.h"

#include "shell/help_lists.h"

namespace BraskHelpScreen {

AbstractHelpScreenFormatter& CommandHelpScreen() {
  static SimpleHelpScreenFormatter formatter(CommandHelpList());
  return formatter;
}

AbstractHelpScreenFormatter& StartupHelpScreen() {
  static SimpleHelpScreenFormatter formatter(StartupHelpList());
  return formatter;
}

AbstractHelpScreenFormatter& EditHelpScreen() {
  static SimpleHelpScreenFormatter formatter(EditHelpList());
  return formatter;
}

}  // namespace BraskHelpScreen
