// Help screens: a list of words with their descriptions shown as a two-column table, the
// descriptions wrapped to the width of the page, stopping for the user whenever a page is full.
#pragma once

#include <cstddef>
#include <functional>
#include <span>
#include <vector>

#include "shell/help_entry.h"

namespace BraskHelpScreen {

// The size of the page a help screen is written on.
struct HelpPage {
  int rows = 0;  // 0 for a page without end, which never waits for the user
  int columns = 80;
};

// The terminal on standard output; a file or a pipe gets 80 columns and no waiting, since nobody
// could answer the prompt there.
HelpPage StandardOutputPage();
// Blocks until the user sends a line, which is thrown away.
void WaitForEnter();

class AbstractHelpScreenFormatter {
 public:
  virtual ~AbstractHelpScreenFormatter() = default;
  virtual void Show() = 0;
};

class SimpleHelpScreenFormatter : public AbstractHelpScreenFormatter {
 public:
  using PageSource = std::function<HelpPage()>;
  using KeyWait = std::function<void()>;

  // The page is asked for anew by each Show, so that a resized terminal is followed.
  explicit SimpleHelpScreenFormatter(std::span<const HelpEntry> entries,
                                     PageSource page_source = StandardOutputPage,
                                     KeyWait wait_for_key = WaitForEnter);

  void Show() override;

 private:
  std::vector<HelpEntry> entries;
  std::size_t command_width;
  PageSource page_source;
  KeyWait wait_for_key;
};

}  // namespace BraskHelpScreen
