// Gives the search settings back their values at the end of a test that changes them.
#pragma once

#include "search/optimize_interface.h"

class SettingsGuard {
 public:
  ~SettingsGuard() { saved_.Apply(); }

 private:
  OptimizeInterface::Settings saved_;
};
