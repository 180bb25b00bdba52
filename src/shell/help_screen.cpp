#include "shell/help_screen.h"

#include <algorithm>
#include <climits>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "shell/help_text_wrapping.h"
#include "shell/os_dependent.h"
#include "shell/tee_stream.h"

namespace BraskHelpScreen {

namespace {

const char* const PAGE_PROMPT = "press enter to continue...";
const char* const HEADING_COMMAND = "command";
const char* const HEADING_DESCRIPTION = " description\n";

// Short words still get a left column wide enough for the heading.
constexpr std::size_t MIN_COMMAND_WIDTH = 10;

int ClampedToInt(std::uint32_t value) {
  return static_cast<int>(std::min<std::uint32_t>(value, INT_MAX));
}

// The padding only lines up columns on the terminal; the log gets the bare text.
void WritePadded(std::string_view text, std::size_t width, char fill) {
  Output << text;
  if (text.size() >= width) return;
  const bool log = Output.SetLog(false);
  Output << std::string(width - text.size(), fill);
  Output.SetLog(log);
}

std::size_t LongestCommand(std::span<const HelpEntry> entries) {
  std::size_t longest = 0;
  for (const HelpEntry& entry : entries) longest = std::max(longest, entry.command.size());
  return longest;
}

}  // namespace

HelpPage StandardOutputPage() {
  if (!StandardOutputIsTerminal()) return HelpPage{.rows = 0, .columns = 80};
  return HelpPage{ClampedToInt(TerminalRows()), ClampedToInt(TerminalColumns())};
}

void WaitForEnter() { ReadLine(); }

SimpleHelpScreenFormatter::SimpleHelpScreenFormatter(std::span<const HelpEntry> entries,
                                                     PageSource page_source, KeyWait wait_for_key)
    : entries(entries.begin(), entries.end()),
      command_width(LongestCommand(entries)),
      page_source(std::move(page_source)),
      wait_for_key(std::move(wait_for_key)) {}

void SimpleHelpScreenFormatter::Show() {
  const HelpPage page = page_source();
  const std::size_t width = std::max(command_width, MIN_COMMAND_WIDTH);
  WritePadded(HEADING_COMMAND, width, ' ');
  Output << HEADING_DESCRIPTION;
  // Lines written since the last prompt; the heading isn't counted.
  int lines = 0;
  for (const HelpEntry& entry : entries) {
    const WrappedText wrapped =
        WrapDescription(entry.description, static_cast<int>(width), page.columns);
    lines += wrapped.lines;
    if (page.rows > 0 && lines >= page.rows - 1) {
      Output << PAGE_PROMPT;
      Output.Flush();
      wait_for_key();
      lines = wrapped.lines;
    }
    WritePadded(entry.command, width, '.');
    Output << '.' << wrapped.text << '\n';
  }
  Output.Flush();
}

}  // namespace BraskHelpScreen
