// The vocabulary of the engine: squares, colours, pieces, moves, bitboards and their bit operations.
#pragma once

#include <cstdint>

using Bitboard = std::uint64_t;
using Move = std::uint32_t;
using Score = std::int32_t;

// ---------------------------------------------------------------------------------------------
// Squares: a1 = 0, b1 = 1, ..., h8 = 63. The value 0 doubles as "none" for the en-passant square.

constexpr int File(int square) { return square & 7; }
constexpr int Rank(int square) { return square >> 3; }
constexpr int MakeSquare(int file, int rank) { return file + 8 * rank; }
constexpr int MirrorFiles(int square) { return square ^ 7; }
constexpr int MirrorRanks(int square) { return square ^ 56; }
constexpr int Rotate180(int square) { return square ^ 63; }
constexpr int Transpose(int square) { return (square >> 3) + (square & 7) * 8; }
constexpr int Rotate90(int square) { return (square >> 3) + ((square & 7) ^ 7) * 8; }
constexpr Bitboard SquareBit(int square) { return Bitboard{1} << square; }

enum SquareName : int {
  A1, B1, C1, D1, E1, F1, G1, H1,
  A2, B2, C2, D2, E2, F2, G2, H2,
  A3, B3, C3, D3, E3, F3, G3, H3,
  A4, B4, C4, D4, E4, F4, G4, H4,
  A5, B5, C5, D5, E5, F5, G5, H5,
  A6, B6, C6, D6, E6, F6, G6, H6,
  A7, B7, C7, D7, E7, F7, G7, H7,
  A8, B8, C8, D8, E8, F8, G8, H8,
};

constexpr Bitboard FILE_A = 0x0101010101010101ULL;
constexpr Bitboard RANK_1 = 0xFFULL;
constexpr Bitboard FileMask(int file) { return FILE_A << file; }
constexpr Bitboard RankMask(int rank) { return RANK_1 << (rank * 8); }

// ---------------------------------------------------------------------------------------------
// Colours and pieces. A piece on the board is its type for White and the negated type for Black.

constexpr int WHITE = 0;
constexpr int BLACK = 1;

constexpr int NO_PIECE = 0;
constexpr int PAWN = 1;
constexpr int KNIGHT = 2;
constexpr int BISHOP = 3;
constexpr int ROOK = 4;
constexpr int QUEEN = 5;
constexpr int KING = 6;

constexpr int PieceValue[7] = {0, 100, 305, 315, 500, 1020, 0};
constexpr int PiecePoints[6] = {0, 0, 3, 3, 5, 9};
constexpr char PieceLetters[] = " PNBRQK";
constexpr char SignedPieceLetters[] = "kqrbnp?PNBRQK";  // indexed by piece + 6

// ---------------------------------------------------------------------------------------------
// Moves. Bits 0-5 from, 6-11 to, 12-14 moved type, 15-17 captured type, 18-20 promotion type,
// 21 direct check, 22 discovered check. Whole words are compared, check bits included.

constexpr Move INVALID = 0;
constexpr int MAX_MOVES = 256;
constexpr int MOVE_BUFFER_SIZE = MAX_MOVES + 1;

constexpr Move DIRECT_CHECK_BIT = Move{1} << 21;
constexpr Move DISCOVERED_CHECK_BIT = Move{1} << 22;

constexpr int From(Move move) { return move & 63; }
constexpr int To(Move move) { return (move >> 6) & 63; }
constexpr int MovedType(Move move) { return (move >> 12) & 7; }
constexpr int CapturedType(Move move) { return (move >> 15) & 7; }
constexpr int PromotionType(Move move) { return (move >> 18) & 7; }
constexpr bool IsCapture(Move move) { return (move & (Move{7} << 15)) != 0; }
constexpr bool IsPromotion(Move move) { return (move & (Move{7} << 18)) != 0; }
constexpr bool GivesCheck(Move move) { return (move & (DIRECT_CHECK_BIT | DISCOVERED_CHECK_BIT)) != 0; }
constexpr bool GivesDirectCheck(Move move) { return (move & DIRECT_CHECK_BIT) != 0; }
constexpr bool GivesDiscoveredCheck(Move move) { return (move & DISCOVERED_CHECK_BIT) != 0; }
constexpr bool IsCastling(Move move) {
  return MovedType(move) == KING && (From(move) - To(move) == 2 || To(move) - From(move) == 2);
}

constexpr Move MakeMoveWord(int from, int to, int moved, int captured = 0, int promotion = 0) {
  return Move(from) | Move(to) << 6 | Move(moved) << 12 | Move(captured) << 15 |
         Move(promotion) << 18;
}

constexpr Move WHITE_SHORT_CASTLE = 24964;
constexpr Move WHITE_SHORT_CASTLE_CHECK = 2122116;
constexpr Move WHITE_LONG_CASTLE = 24708;
constexpr Move WHITE_LONG_CASTLE_CHECK = 2121860;
constexpr Move BLACK_SHORT_CASTLE = 28604;
constexpr Move BLACK_SHORT_CASTLE_CHECK = 2125756;
constexpr Move BLACK_LONG_CASTLE = 28348;
constexpr Move BLACK_LONG_CASTLE_CHECK = 2125500;

// ---------------------------------------------------------------------------------------------
// Castling rights: a 4-bit set.

constexpr int WHITE_SHORT = 1;
constexpr int WHITE_LONG = 2;
constexpr int BLACK_SHORT = 4;
constexpr int BLACK_LONG = 8;
constexpr int ALL_CASTLING = 15;

// ---------------------------------------------------------------------------------------------
// Scores. Mate at ply p from the root is 32767 - p; anything beyond 31766 in size is a mate value.

constexpr Score MATE = 32767;
constexpr Score MATE_THRESHOLD = 31766;

// ---------------------------------------------------------------------------------------------
// Direction codes of the line through two squares (0: none).

constexpr int WEST = 1;
constexpr int EAST = 2;
constexpr int NORTH = 3;
constexpr int SOUTH = 4;
constexpr int NORTH_WEST = 5;
constexpr int NORTH_EAST = 6;
constexpr int SOUTH_WEST = 7;
constexpr int SOUTH_EAST = 8;

// The unsigned distance in square numbers between neighbours along a direction.
constexpr int DirectionStep[9] = {0, 1, 1, 8, 8, 7, 9, 9, 7};
// The signed step from one square to the next along a direction.
constexpr int DirectionDelta[9] = {0, -1, 1, 8, -8, 7, 9, -9, -7};
// The same line walked the other way.
constexpr int OppositeDirection[9] = {0, 2, 1, 4, 3, 8, 7, 6, 5};

constexpr bool IsRankOrFileDirection(int direction) { return direction >= 1 && direction <= 4; }
constexpr bool IsDiagonalDirection(int direction) { return direction >= 5; }
