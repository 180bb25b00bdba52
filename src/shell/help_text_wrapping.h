// Fitting a help description into the right-hand column of a help screen.
#pragma once

#include <string>
#include <string_view>

namespace BraskHelpScreen {

struct WrappedText {
  std::string text;  // continuation lines begin with indent + 1 blanks; no final newline
  int lines = 1;
};

// Breaks the description between words so that, behind a left column of `indent` characters and
// one separator, its lines stay short of the last of `columns` columns. Runs of blanks count as one
// gap; a newline in the description always starts a new line. A word longer than the column is
// left whole on a line of its own.
WrappedText WrapDescription(std::string_view description, int indent, int columns);

}  // namespace BraskHelpScreen
