// Searches whose figures or lines are checked must not meet tablebases that an earlier test left
// loaded: a tablebase answer ends a line in the tree.
#pragma once

#include "bitbases/tablebases.h"
#include "support/temporary_directory.h"

// Initialising from a directory without tables fails and leaves none loaded.
inline void UnloadTablebases() {
  TemporaryDirectory empty;
  try {
    BraskTablebases::InitTablebases(empty.Path().string(), 1 << 16);
  } catch (const BraskTablebases::TB_Exception&) {
  }
}
