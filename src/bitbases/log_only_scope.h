// Bitbase loading reports to the log alone: the terminal switch is off for the scope's life and
// given back, with a flush, on every way out, exceptions included.
#pragma once

#include "shell/tee_stream.h"

namespace BraskBitbases {

class LogOnlyScope {
 public:
  LogOnlyScope() : former_(Output.SetTerminal(false)) {}
  ~LogOnlyScope() {
    Output.SetTerminal(former_);
    Output.Flush();
  }
  LogOnlyScope(const LogOnlyScope&) = delete;
  LogOnlyScope& operator=(const LogOnlyScope&) = delete;

 private:
  bool former_;
};

}  // namespace BraskBitbases
