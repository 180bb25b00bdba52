// The flat special files kp_kp.bbb and kpp_kp_ram.bbb from the tablebases of king and pawn
// against king and pawn, and of king and two pawns against king and pawn.
#pragma once

#include <string>

#include "bitbases/generate_generic_bitbases.h"

namespace BraskGenerator {

// Both throw GenerationFailed; no file is left under path then.
void GenerateTwoPawnsBitbases(const std::string& path);
void GenerateRammedPawnBitbases(const std::string& path);

}  // namespace BraskGenerator
