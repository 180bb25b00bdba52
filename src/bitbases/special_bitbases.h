// The flat special bitbases: king and pawn against king and pawn (kp_kp.bbb) and king and two
// pawns against king and pawn with a ram (kpp_kp_ram.bbb), mapped whole from the executable's
// directory.
#pragma once

#include <cstdint>

class Board;

namespace BraskBitbases {

// Null until kp_kp.bbb is mapped; every user tests it first.
extern const std::uint8_t* two_pawns_data;
extern const std::uint8_t* rammed_pawn_data;

// The raw entry of kp_kp.bbb, relative to the side on move: 0 draw, 1 loses, 3 wins.
int ProbeTwoPawns(int side_on_move, int white_king, int black_king, int white_pawn,
                  int black_pawn);

// A score relative to the side on move, 0 for a draw or no entry.
int ProbeRammedPawn(const Board& board);

// Maps the special files, then loads the generic bitbases; messages go to the log alone.
void LoadBitbases();

}  // namespace BraskBitbases
