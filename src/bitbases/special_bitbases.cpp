#include "bitbases/special_bitbases.h"

namespace BraskBitbases {

// Placeholders until the loaders land: no file is ever mapped.
const std::uint8_t* two_pawns_data = nullptr;
const std::uint8_t* rammed_pawn_data = nullptr;

int ProbeTwoPawns(int, int, int, int, int) { return 0; }
int ProbeRammedPawn(const Board&) { return 0; }
void LoadBitbases() {}

}  // namespace BraskBitbases
