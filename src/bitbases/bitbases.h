// The engine's own endgame bitbases: the built-in single pawn table, the flat special files, and
// the generic bitbases behind one probe.
#pragma once

#include "bitbases/probe_generic_bitbases.h"
#include "bitbases/single_pawn_bitbases_data.h"
#include "bitbases/special_bitbases.h"
