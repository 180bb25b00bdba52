// The global read-only tables: attacks, geometry, pawn masks and hash keys. Built once before
// main by the static constructor and never written again. No other global's constructor may read
// them, since the order of construction between source files is not fixed.
#pragma once

#include <cstdint>

#include "chess/basic.h"

// ---------------------------------------------------------------------------------------------
// Rotated occupancy. Besides the plain occupancy the board keeps three copies in which the squares
// of each line (a1-h8 diagonals, files, h1-a8 diagonals) stand in consecutive bits, so that a
// slider's attacks are one shift, one mask and one table read.

namespace Rotation {
// Diagonals parallel to a1-h8, ordered {h1}, {g1,h2}, ..., {a1..h8}, ..., {a8}; each from its lower
// end upward.
constexpr int A1H8Index(int square) {
  int diagonal = File(square) - Rank(square);  // 7 for h1 down to -7 for a8
  int start = 0;
  for (int d = 7; d > diagonal; --d) start += 8 - (d < 0 ? -d : d);
  int position = File(square) < Rank(square) ? File(square) : Rank(square);
  return start + position;
}
// Files from h to a, each from rank 1 up.
constexpr int FileIndex(int square) { return (7 - File(square)) * 8 + Rank(square); }
// Diagonals parallel to h1-a8, ordered {a1}, {a2,b1}, ..., {a8..h1}, ..., {h8}; each from its
// upper end downward.
constexpr int H1A8Index(int square) {
  int diagonal = File(square) + Rank(square);  // 0 for a1 up to 14 for h8
  int start = 0;
  for (int d = 0; d < diagonal; ++d) start += d <= 7 ? d + 1 : 15 - d;
  int position = File(square) - (diagonal > 7 ? diagonal - 7 : 0);
  return start + position;
}

struct BitsTable {
  Bitboard a1h8[64];
  Bitboard files[64];
  Bitboard h1a8[64];
};

constexpr BitsTable MakeBits() {
  BitsTable table{};
  for (int square = 0; square < 64; ++square) {
    table.a1h8[square] = SquareBit(A1H8Index(square));
    table.files[square] = SquareBit(FileIndex(square));
    table.h1a8[square] = SquareBit(H1A8Index(square));
  }
  return table;
}

// The bit of each square in each rotated board.
constexpr BitsTable Bits = MakeBits();
}  // namespace Rotation

// ---------------------------------------------------------------------------------------------

// Keys that are fixed constants rather than drawn from the generator.
constexpr std::uint64_t ZOBRIST_SIDE = 0x81DCF975A1CF4147ULL;
constexpr std::uint64_t ZobristCastlingRight[4] = {
    0x517CC1B727220A94ULL,  // White short
    0x229A1869D1B6232EULL,  // White long
    0x5C6B34ADBF4E8E53ULL,  // Black short
    0x11489E10D9AD68F5ULL,  // Black long
};

struct CastlingKeyTable {
  std::uint64_t key[16];
};

constexpr CastlingKeyTable MakeCastlingKeys() {
  CastlingKeyTable table{};
  for (int rights = 0; rights < 16; ++rights)
    for (int bit = 0; bit < 4; ++bit)
      if (rights & (1 << bit)) table.key[rights] ^= ZobristCastlingRight[bit];
  return table;
}

// The key of a whole castling set: the XOR of the keys of its rights.
constexpr CastlingKeyTable ZobristCastling = MakeCastlingKeys();

struct BoardTablesType {
  BoardTablesType();

  // Low nibble: index of the highest set bit of the 16-bit index; high nibble: its number of set
  // bits (0xFFFF, whose count of 16 does not fit, is handled by PopCount).
  std::uint8_t BitTable[65536];

  std::int8_t ShiftA1H8[64];
  std::int8_t ShiftH1A8[64];
  std::uint16_t MaskA1H8[64];
  std::uint16_t MaskH1A8[64];

  Bitboard AttacksA1H8[64][256];
  Bitboard AttacksH1A8[64][256];
  Bitboard AttacksRank[64][256];
  Bitboard AttacksFile[64][256];
  Bitboard KnightAttacks[64];
  Bitboard KingAttacks[64];

  std::int8_t Direction[64][64];
  Bitboard Between[64][64];
  std::int8_t Distance[64][64];
  std::int8_t ManhattanDistance[64][64];

  Bitboard Ray[8][64];  // index: direction code - 1
  Bitboard BishopRays[64];
  Bitboard RookRays[64];
  Bitboard QueenRays[64];

  Bitboard PawnAttacks[2][64];
  Bitboard PassedPawnMask[2][64];
  Bitboard PawnAttackSpan[2][64];
  Bitboard PawnSquare[2][64];
  Bitboard PawnSquareExtended[2][64];
  Bitboard KingOutsidePawnSquare[2][64][2];

  std::uint64_t ZobristPiece[64][13];  // index: square, piece + 6
  std::uint64_t ZobristEnPassant[2][8];

 private:
  void BuildHashKeys();
  void BuildBitTable();
  void BuildRotationMasks();
  void BuildAttacks();
  void BuildGeometry();
  void BuildPawnMasks();
  void BuildPawnSquares();
};

extern const BoardTablesType BoardTables;

// The en-passant key of a square: row 0 for the third rank, row 1 for the sixth.
inline std::uint64_t EnPassantKey(int square) {
  return BoardTables.ZobristEnPassant[square < 24 ? 0 : 1][File(square)];
}

// Pawn keys use slot 0 of a square for a white pawn and slot 1 for a black one.
inline std::uint64_t PawnKey(int square, int colour) {
  return BoardTables.ZobristPiece[square][colour];
}

inline std::uint64_t PieceKey(int square, int piece) {
  return BoardTables.ZobristPiece[square][piece + 6];
}

// ---------------------------------------------------------------------------------------------
// Sliding attacks from the rotated boards.

inline Bitboard RankAttacks(int square, Bitboard occupied) {
  return BoardTables.AttacksRank[square][(occupied >> (square & 56)) & 255];
}
inline Bitboard FileAttacks(int square, Bitboard occupied_files) {
  return BoardTables.AttacksFile[square][(occupied_files >> ((7 - File(square)) * 8)) & 255];
}
inline Bitboard A1H8Attacks(int square, Bitboard occupied_a1h8) {
  return BoardTables.AttacksA1H8[square][(occupied_a1h8 >> BoardTables.ShiftA1H8[square]) &
                                         BoardTables.MaskA1H8[square]];
}
inline Bitboard H1A8Attacks(int square, Bitboard occupied_h1a8) {
  return BoardTables.AttacksH1A8[square][(occupied_h1a8 >> BoardTables.ShiftH1A8[square]) &
                                         BoardTables.MaskH1A8[square]];
}
