// Searches whose figures or lines are checked must not meet tablebases that an earlier test left
// loaded: a tablebase answer ends a line in the tree.
#pragma once

#include "bitbases/tablebases.h"
#include "support/temp_directory.h"

// Initialising from a directory without tables fails and leaves none loaded.
inline void UnloadTablebases() {
  TempDirectory empty;
  try {
    BraskTablebases::InitTablebases(empty.Path(), 1 << 16);
  } catch (const BraskTablebases::TB_Exception&) {
  }
}
