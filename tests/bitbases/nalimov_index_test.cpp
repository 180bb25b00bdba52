#include "bitbases/nalimov_index.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <unordered_map>
#include <vector>

#include "bitbases/nalimov_index_tables.h"
#include "bitbases/table_material.h"
#include "bitbases/tablebase_descriptors.h"
#include "chess/board.h"

using namespace NalimovTablebases;

namespace {

// Squares are given in the order of the table's material: White's king, Black's king, then the
// pieces as the name lists them.
std::uint64_t IndexOf(const TableMaterial& m, const int* squares, int side) {
  int lists[2][SQUARE_LIST_SIZE] = {};
  for (int i = 0; i < m.count; ++i) {
    int slot = m.type[i] == KING ? KING_SLOT : FirstSlot(m.type[i]);
    for (int j = 0; j < m.count; ++j)  // like pieces lowest square first
      slot += m.colour[j] == m.colour[i] && m.type[j] == m.type[i] && squares[j] < squares[i];
    lists[m.colour[i]][slot] = squares[i];
  }
  return GetIndexFunction(m.id, side)(lists[WHITE], lists[BLACK], NO_EN_PASSANT, false);
}

bool IsLegal(const TableMaterial& m, const int* squares, int side) {
  std::int8_t cells[64] = {};
  for (int i = 0; i < m.count; ++i) {
    const bool pawn_on_edge = m.type[i] == PAWN && (squares[i] < A2 || squares[i] > H7);
    if (cells[squares[i]] != 0 || pawn_on_edge) return false;
    cells[squares[i]] = std::int8_t(m.colour[i] == WHITE ? m.type[i] : -m.type[i]);
  }
  Board board;
  return board.Setup(cells, side, 0, 0) && !board.IsOpponentInCheck();
}

std::vector<int> RandomLegal(const TableMaterial& m, int side, std::mt19937_64& random) {
  std::vector<int> squares(std::size_t(m.count));
  do {
    for (int& square : squares) square = int(random() % 64);
  } while (!IsLegal(m, squares.data(), side));
  return squares;
}

// The position up to the symmetries of the board (all eight without pawns, the file mirror with
// them) and the order of like pieces, as one number.
std::uint64_t CanonicalKey(const TableMaterial& m, const int* squares) {
  std::uint64_t best = ~std::uint64_t{0};
  for (int s = 0; s < (m.HasPawns() ? 2 : 8); ++s) {
    std::vector<std::pair<int, int>> image;  // (kind of piece, square)
    for (int i = 0; i < m.count; ++i) {
      const int square = squares[i] ^ (s & 1 ? 7 : 0) ^ (s & 2 ? 56 : 0);
      image.push_back({m.colour[i] * 8 + m.type[i], s & 4 ? Transpose(square) : square});
    }
    std::sort(image.begin(), image.end());
    std::uint64_t key = 0;
    for (auto [kind, square] : image) key = key * 64 + std::uint64_t(square);
    best = std::min(best, key);
  }
  return best;
}

// Every legal position gets an index inside the table, and two share one only when one is a
// symmetric image of the other.
struct IndexChecker {
  TableMaterial m;
  int side;
  std::uint64_t range = 0;
  int collisions = 0;
  std::unordered_map<std::uint64_t, std::uint64_t> key_at{};

  void Add(const int* squares) {
    if (!IsLegal(m, squares, side)) return;
    const std::uint64_t index = IndexOf(m, squares, side);
    ASSERT_LT(index, Descriptors[m.id].entries[side]) << m.name << " side " << side;
    range = std::max(range, index + 1);
    const std::uint64_t key = CanonicalKey(m, squares);
    collisions += key_at.try_emplace(index, key).first->second != key;
  }
};

TableMaterial Material(const char* name) { return *TableMaterial::Of(name); }

}  // namespace

TEST(NalimovIndexTables, PairCountsFreeSquaresAndTotals) {
  int pawnless = 0, pawn = 0;
  for (int k1 = 0; k1 < 64; ++k1)
    for (int k2 = 0; k2 < 64; ++k2) {
      pawnless += KingPair[k1][k2] != NO_PAIR;
      pawn += KingPairPawn[k1][k2] != NO_PAIR;
    }
  EXPECT_EQ(pawnless, PAWNLESS_PAIRS);
  EXPECT_EQ(pawn, PAWN_PAIRS);
  // Free squares skip the king and the squares of contact checks; code 0 pawns are numbered
  // around the king alone.
  const int counts[][3] = {{QUEEN, E4, 55}, {QUEEN, A1, 60},          {KNIGHT, E4, 55},
                           {PAWN, E4, 45},  {BARE_KING_PAWN, E4, 47}, {BARE_KING_PAWN, A1, 48}};
  for (const auto& [type, king, count] : counts) EXPECT_EQ(FreeCount[type][king], count) << type;
  // kppk with Black on move: the white pawns are counted with the pair, as code 0.
  EXPECT_EQ(CumulativePawn[BARE_KING_PAWN][BARE_KING_PAWN][PAWN_PAIRS], 1912372u);
  // Without pawns the ranges are the pair count times the placements of the others; knpk with
  // Black on move is kpk with Black on move times the knight's 61 squares.
  EXPECT_EQ(Descriptors[TableIdOf("kqqk")].entries[1], 462u * 1891);
  EXPECT_EQ(Descriptors[TableIdOf("kbnk")].entries[1], 462u * 3782);
  EXPECT_EQ(Descriptors[TableIdOf("knpk")].entries[1], 84012u * 61);
  // krk with White on move: the formula reaches 27,036, but its last six entries (a rook on
  // a8..f8 against a king on h8) cannot happen.
  EXPECT_EQ(Cumulative[ROOK][NO_CODE][PAWNLESS_PAIRS], 27036u);
}

TEST(NalimovIndex, WorkedMembers) {
  const int p = FreeSquare[PAWN][H8][B2], q = FreeSquare[PAWN][H8][C3];
  const struct {
    const char* name;
    int side;
    std::vector<int> squares;  
    std::uint64_t index;
  } cases[] = {
      {"knk", BLACK, {C1, A1, B1}, 0},
      {"knk", BLACK, {H8, D4, G8}, 28643},
      {"krk", WHITE, {D4, H8, A8}, 27030},
      {"krk", WHITE, {D4, H8, F8}, 27035},
      {"kqkr", WHITE, {B1, D3, A5, H8},  // already in the frame
       (Cumulative[QUEEN][NO_CODE][KingPair[B1][D3]] + FreeSquare[QUEEN][D3][A5] - 1) * 61 + H8 -
           3},
      {"knkp", WHITE, {C2, G6, A8, B5},
       (CumulativePawn[KNIGHT][NO_CODE][KingPairPawn[C2][G6]] + FreeSquare[KNIGHT][G6][A8] - 1) *
               48 + B5 - 8},
      // Black on move: everything read rank-mirrored, the pawn as code 0; d2 lies below c5.
      {"kpk", BLACK, {B2, D7, C4},
       CumulativePawn[BARE_KING_PAWN][NO_CODE][KingPairPawn[D7 ^ 56][B2 ^ 56]] +
           FreeSquare[BARE_KING_PAWN][B2 ^ 56][C4 ^ 56] - 1},
      // The black pawn's digit skips both white pawns below it.
      {"kppkp", WHITE, {A1, H8, B2, C3, D6},
       (CumulativePawn[PAWN][PAWN][KingPairPawn[A1][H8]] + q * (q - 1) / 2 + p) * 46 + D6 - 2 - 8},
  };
  for (const auto& c : cases)
    EXPECT_EQ(IndexOf(Material(c.name), c.squares.data(), c.side), c.index) << c.name;
}

TEST(NalimovIndex, EveryThreePieceTableIsDenseAndInjective) {
  for (const char* name : {"kpk", "knk", "kbk", "krk", "kqk"})
    for (int side : {WHITE, BLACK}) {
      IndexChecker checker{Material(name), side};
      for (int square = 0; square < 64 * 64 * 64; ++square) {
        const int squares[] = {square / 4096, square / 64 % 64, square % 64};
        checker.Add(squares);
      }
      EXPECT_EQ(checker.collisions, 0) << name << " side " << side;
      // The legal positions reach the last entry of every file.
      EXPECT_EQ(checker.range, Descriptors[checker.m.id].entries[side]) << name << " " << side;
    }
}

TEST(NalimovIndex, FourAndFivePieceSamplesAreInRangeAndInjective) {
  std::mt19937_64 random(11);
  for (const char* name : {"kqkr", "kbnk", "kqqk", "krpk", "kppk", "kpkp", "knkp", "kbbk",
                           "kqrkr", "kppkp", "krpkp", "knpkb", "kqqkr"})
    for (int side : {WHITE, BLACK}) {
      IndexChecker checker{Material(name), side};
      for (int n = 0; n < 40000; ++n) checker.Add(RandomLegal(checker.m, side, random).data());
      EXPECT_EQ(checker.collisions, 0) << name << " side " << side;
    }
}
