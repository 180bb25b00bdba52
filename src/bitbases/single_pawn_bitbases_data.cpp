#include "bitbases/single_pawn_bitbases_data.h"

namespace BraskBitbases {

// Placeholder until the generated table lands: every position counts as won.
const Bitboard SinglePawnBitbases[2][64][64] = {};

}  // namespace BraskBitbases
