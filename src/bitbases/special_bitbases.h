// The flat special bitbases: king and pawn against king and pawn (kp_kp.bbb) and king and two
// pawns against king and pawn with a ram (kpp_kp_ram.bbb), mapped whole from the executable's
// directory.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "shell/brask_exception.h"

class Board;

namespace BraskBitbases {

namespace HelperFunctions {

// A square on files a-d to 0..31 (rank * 4 + file): the files e-h are reached by mirroring first.
constexpr int CompactAntiMirroredSquare(int square) { return ((square & 56) >> 1) | (square & 3); }

// A pawn on ranks 2..7 and files a-d to 0..23.
constexpr int PawnIndex(int pawn) { return CompactAntiMirroredSquare(pawn - 8); }

}  // namespace HelperFunctions

inline constexpr const char* TWO_PAWNS_FILE_NAME = "kp_kp.bbb";
inline constexpr const char* RAMMED_PAWN_FILE_NAME = "kpp_kp_ram.bbb";
// The size is the files' only check: they carry no header.
constexpr std::size_t TWO_PAWNS_FILE_SIZE = 24 * 48 * 64 * 16;
constexpr std::size_t RAMMED_PAWN_FILE_SIZE = 20 * 48 * 64 * 32;

// Raw entries of the special files.
constexpr int SPECIAL_DRAW = 0;
constexpr int SPECIAL_LOSS = 1;  // kp_kp.bbb: the side on move; kpp_kp_ram.bbb: the two-pawn side
constexpr int SPECIAL_WIN = 3;

class CouldNotOpenFileException : public BraskException {
 public:
  using BraskException::BraskException;
};

// Null until kp_kp.bbb is mapped; every user tests it first.
extern const std::uint8_t* two_pawns_data;
extern const std::uint8_t* rammed_pawn_data;

// The raw entry of kp_kp.bbb, relative to the side on move: 0 draw, 1 loses, 3 wins.
int ProbeTwoPawns(int side_on_move, int white_king, int black_king, int white_pawn, int black_pawn);

// A score relative to the side on move, 0 for a draw or no entry; also 0 when the file is not
// loaded or the board holds no ram of two pawns against one.
int ProbeRammedPawn(const Board& board);

// Map one file of the exact size; a failure keeps the former mapping.
void LoadTwoPawnsBitbases(const std::string& path);
void LoadRammedPawnBitbases(const std::string& path);

// Unmaps both files; the engine keeps them to the end, tests start afresh.
void ReleaseSpecialBitbases();

// Maps the special files, then loads the generic bitbases; messages go to the log alone.
void LoadBitbases();
// The same from another directory than the executable's.
void LoadBitbases(const std::string& directory);

}  // namespace BraskBitbases
