// What names a generic bitbase: its material (ten piece counters, the kings not counted), the
// material's 30-bit signature, its name and file, the colour order in which it is stored, and the
// list of squares in the fixed order that its index reads.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "chess/basic.h"

class Board;

namespace BraskBitbases {

constexpr int GENERIC_BITBASES_MAX_SUPPORTED_PIECES = 5;
constexpr int GENERIC_BITBASES_MAX_PIECES_TO_LOAD = 4;
constexpr int MAX_PIECES_OF_A_TYPE = 7;  // three bits of the signature each
constexpr int COUNTERS = 10;

// White pawns, knights, bishops, rooks, queens, then Black's in the same order.
using PieceCounters = std::array<int, COUNTERS>;
using MaterialSignature = std::uint32_t;

constexpr int CounterIndex(int colour, int type) { return colour * 5 + type - PAWN; }

// A counter that does not fit its three bits.
class PieceIndexOutOfBounds {};

// Squares in index order: white pawns, black pawns, white king, black king, then bishops, knights,
// rooks and queens, White's before Black's; within one kind lowest square first.
struct PositionList {
  int count = 0;
  int squares[64];
};

MaterialSignature Signature(const PieceCounters& counters);
PieceCounters CountersOf(MaterialSignature signature);
PieceCounters SwapColours(const PieceCounters& counters);
int PieceCount(const PieceCounters& counters);  // kings included
int PawnCount(const PieceCounters& counters);
bool IsMirrored(const PieceCounters& counters);

// "k", White's pieces as q r b n p, "_k", Black's.
std::string EndgameName(const PieceCounters& counters);
std::string EndgameName(const Board& board);
PieceCounters CountersOf(const Board& board);

// The list and the signature of the position; with colours_swapped, of the position with colours
// exchanged and ranks flipped. Throws PieceIndexOutOfBounds for more than 7 of a kind.
MaterialSignature BuildMaterialAndList(const Board& board, PositionList& list,
                                       bool colours_swapped = false);

// The list alone, for callers that know the material already.
void BuildList(const Board& board, PositionList& list, bool colours_swapped);

// Name and full path of the material's file in directory, and whether it is there.
bool GenericBitbaseExists(const PieceCounters& counters, std::string& name_out,
                          std::string& path_out, const std::string& directory);
// The same in the executable's directory.
bool GenericBitbaseExists(const PieceCounters& counters, std::string& name_out,
                          std::string& path_out);

// Every material of exactly that many pieces (kings included) and pawns, mirrored ones too.
int EnumerateEndgames(int pieces, int pawns, std::vector<PieceCounters>& out);
int EnumerateEndgames(int pieces, std::vector<PieceCounters>& out);
std::vector<PieceCounters> EnumerateEndgamesUpTo(int pieces);

}  // namespace BraskBitbases
