#include <gtest/gtest.h>

#include <set>

#include "chess/bitboard.h"
#include "chess/board_tables.h"
#include "chess/random_numbers.h"

namespace {

Bitboard Squares(std::initializer_list<int> squares) {
  Bitboard board = 0;
  for (int square : squares) board |= SquareBit(square);
  return board;
}

TEST(RandomNumbers, PublishedSelfTestOfTheGenerator) {
  // The generator's author publishes 995235265 as the first value after 2010 calls with a buffer
  // of 1009, and the same value after 1010 calls with a buffer of 2009.
  static std::int32_t buffer[2009];
  LaggedSubtractive::Generator first(310952);
  for (int call = 0; call < 2010; ++call) first.Array(buffer, 1009);
  EXPECT_EQ(buffer[0], 995235265);
  LaggedSubtractive::Generator second(310952);
  for (int call = 0; call < 1010; ++call) second.Array(buffer, 2009);
  EXPECT_EQ(buffer[0], 995235265);
}

// Sliding attacks looked up through the rotated boards must equal attacks walked on the board.
Bitboard WalkedAttacks(int square, Bitboard occupied, std::initializer_list<int> directions) {
  static constexpr int file_step[9] = {0, -1, 1, 0, 0, -1, 1, -1, 1};
  static constexpr int rank_step[9] = {0, 0, 0, 1, -1, 1, 1, -1, -1};
  Bitboard attacks = 0;
  for (int d : directions) {
    for (int f = File(square) + file_step[d], r = Rank(square) + rank_step[d];
         f >= 0 && f < 8 && r >= 0 && r < 8; f += file_step[d], r += rank_step[d]) {
      attacks |= SquareBit(MakeSquare(f, r));
      if (occupied & SquareBit(MakeSquare(f, r))) break;
    }
  }
  return attacks;
}

Bitboard Rotated(Bitboard occupied, const Bitboard (&bits)[64]) {
  Bitboard rotated = 0;
  for (int square = 0; square < 64; ++square)
    if (occupied & SquareBit(square)) rotated |= bits[square];
  return rotated;
}

TEST(SlidingAttacks, AgreeWithWalkingTheBoard) {
  LaggedSubtractive::Generator random(12345);
  for (int trial = 0; trial < 2000; ++trial) {
    Bitboard occupied = 0;
    for (int part = 0; part < 4; ++part)
      occupied = (occupied << 16) ^ Bitboard(random.Next() & 0xFFFF);
    occupied &= Bitboard(random.Next()) * 0x9E3779B97F4A7C15ULL;  // thin it out
    for (int square = 0; square < 64; ++square) {
      ASSERT_EQ(RankAttacks(square, occupied), WalkedAttacks(square, occupied, {WEST, EAST}));
      ASSERT_EQ(FileAttacks(square, Rotated(occupied, Rotation::Bits.files)),
                WalkedAttacks(square, occupied, {NORTH, SOUTH}));
      ASSERT_EQ(A1H8Attacks(square, Rotated(occupied, Rotation::Bits.a1h8)),
                WalkedAttacks(square, occupied, {NORTH_EAST, SOUTH_WEST}));
      ASSERT_EQ(H1A8Attacks(square, Rotated(occupied, Rotation::Bits.h1a8)),
                WalkedAttacks(square, occupied, {NORTH_WEST, SOUTH_EAST}));
    }
  }
}

// Rays, directions and the squares between two on a line, against walking the empty board.
TEST(Geometry, RaysDirectionsBetweenAndDistances) {
  const auto& t = BoardTables;
  for (int from = 0; from < 64; ++from) {
    Bitboard on_a_line = SquareBit(from);
    for (int direction = WEST; direction <= SOUTH_EAST; ++direction) {
      const Bitboard ray = WalkedAttacks(from, 0, {direction});
      ASSERT_EQ(t.Ray[direction - 1][from], ray) << from << " " << direction;
      on_a_line |= ray;
      for (int to = 0; to < 64; ++to) {
        if (!(ray & SquareBit(to))) continue;
        ASSERT_EQ(t.Direction[from][to], direction) << from << " " << to;
        const Bitboard up_to = WalkedAttacks(from, SquareBit(to), {direction});
        ASSERT_EQ(t.Between[from][to], up_to & ~SquareBit(to)) << from << " " << to;
      }
    }
    for (int to = 0; to < 64; ++to) {
      if (on_a_line & SquareBit(to)) continue;
      ASSERT_EQ(t.Direction[from][to], 0) << from << " " << to;
      ASSERT_EQ(t.Between[from][to], 0u) << from << " " << to;
    }
    ASSERT_EQ(t.QueenRays[from], t.BishopRays[from] | t.RookRays[from]);
  }
  EXPECT_EQ(t.Direction[E4][E4], 0);
  EXPECT_EQ(t.Distance[A1][H8], 7);
  EXPECT_EQ(t.ManhattanDistance[A1][H8], 14);
}

// Pawn and king attacks show in the leaf counts, mirror faults between the colours in the
// evaluation's colour symmetry tests.
TEST(PawnMasks, AttacksSpansPassedMasksAndTheSquareOfThePawn) {
  const auto& t = BoardTables;
  EXPECT_EQ(t.PassedPawnMask[WHITE][E6], Squares({D7, E7, F7, D8, E8, F8}));
  EXPECT_EQ(t.PassedPawnMask[BLACK][A3], Squares({A2, B2, A1, B1}));
  EXPECT_EQ(t.PawnAttackSpan[WHITE][E7], 0u);
  EXPECT_EQ(t.PawnAttackSpan[WHITE][A5], Squares({B6, B7}));
  EXPECT_EQ(t.PawnAttackSpan[BLACK][H4], Squares({G3, G2}));
  // A white pawn on a5 has three steps to run: its square is a5-d5-d8-a8.
  const Bitboard files_a_to_d = FileMask(0) | FileMask(1) | FileMask(2) | FileMask(3);
  const Bitboard ranks_5_to_8 = RankMask(4) | RankMask(5) | RankMask(6) | RankMask(7);
  EXPECT_EQ(t.PawnSquare[WHITE][A5], files_a_to_d & ranks_5_to_8);
  // On its start rank the pawn counts as one rank further because of the double step.
  EXPECT_EQ(t.PawnSquare[WHITE][E2], t.PawnSquare[WHITE][E3]);
  EXPECT_EQ(t.PawnSquare[BLACK][E7], t.PawnSquare[BLACK][E6]);
  EXPECT_EQ(t.PawnSquare[WHITE][E1], 0u);
  for (int pawn = 8; pawn < 56; ++pawn)
    EXPECT_EQ(t.PawnSquare[WHITE][pawn] & ~t.PawnSquareExtended[WHITE][pawn], 0u);
  // Kings: a king on h1 is outside the square of a white pawn on a5, a king on d8 inside it.
  EXPECT_TRUE(t.KingOutsidePawnSquare[WHITE][H1][0] & SquareBit(A5));
  EXPECT_FALSE(t.KingOutsidePawnSquare[WHITE][D8][0] & SquareBit(A5));
  EXPECT_TRUE(t.KingOutsidePawnSquare[WHITE][E8][0] & SquareBit(A5));
  EXPECT_FALSE(t.KingOutsidePawnSquare[WHITE][E8][1] & SquareBit(A5));
}

TEST(HashKeys, PieceKeysAreAllDifferentAndFixed) {
  std::set<std::uint64_t> keys;
  for (int square = 0; square < 64; ++square)
    for (int slot = 0; slot < 13; ++slot) keys.insert(BoardTables.ZobristPiece[square][slot]);
  EXPECT_EQ(keys.size(), 64u * 13u);
  EXPECT_EQ(ZobristCastling.key[15], 0x517CC1B727220A94ULL ^ 0x229A1869D1B6232EULL ^
                                         0x5C6B34ADBF4E8E53ULL ^ 0x11489E10D9AD68F5ULL);
}

}  // namespace
