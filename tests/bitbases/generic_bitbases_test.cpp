#include "bitbases/generic_bitbases.h"

#include <gtest/gtest.h>

#include <random>
#include <set>

#include "bitbases/generic_bitbase_index.h"
#include "support/board_from_fen.h"

using namespace BraskBitbases;

namespace {

// Counters from a name such as "krp_kr".
PieceCounters Material(const std::string& name) {
  PieceCounters counters{};
  int colour = WHITE;
  for (char c : name) {
    if (c == '_') colour = BLACK;
    const std::string letters = "pnbrq";
    if (letters.find(c) != std::string::npos)
      ++counters[CounterIndex(colour, int(letters.find(c)) + 1)];
  }
  return counters;
}

}  // namespace

TEST(GenericBitbaseNames, SignaturesNamesAndCountersAgree) {
  struct Case {
    const char* name;
    MaterialSignature signature;
  };
  const Case cases[] = {{"k_k", 0},
                        {"kp_k", 0x1},
                        {"k_kp", 0x8000},
                        {"kp_kp", 0x8001},
                        {"kq_k", 0x1000},
                        {"kbn_k", 0x48},
                        {"kqq_kr", 0x1000000 | 0x2000}};
  for (const Case& c : cases) {
    EXPECT_EQ(Signature(Material(c.name)), c.signature) << c.name;
    EXPECT_EQ(EndgameName(CountersOf(c.signature)), c.name);
  }
  EXPECT_EQ(EndgameName(Material("kbnrqp_kp")), "kqrbnp_kp");
  PieceCounters eight_pawns{};
  eight_pawns[CounterIndex(WHITE, PAWN)] = 8;
  EXPECT_THROW(Signature(eight_pawns), PieceIndexOutOfBounds);
}

TEST(GenericBitbaseNames, StrongerSideIsStoredAsWhite) {
  struct Case {
    const char* name;
    bool mirrored;
  };
  const Case cases[] = {
      {"kq_kr", false},     {"kr_kq", true},     {"kb_kn", false}, {"kn_kb", true},
      {"kp_kp", false},     {"k_k", false},      {"k_kp", true},   {"kpp_kp", false},
      {"kr_kbpp", false},   {"kbpp_kr", true},  // equal weights: the rook ranks above the bishop
      {"krr_krbpp", false}, {"krbpp_krr", true},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(IsMirrored(Material(c.name)), c.mirrored) << c.name;
    if (Material(c.name) != SwapColours(Material(c.name))) {
      EXPECT_NE(IsMirrored(SwapColours(Material(c.name))), c.mirrored) << c.name;
    }
  }
}

TEST(GenericBitbaseNames, EnumerationCoversEveryMaterialOnce) {
  struct Case {
    int pieces, pawns, count;
  };
  // Counts of multisets of the non-king pieces over ten kinds, split by pawns.
  const Case cases[] = {{2, 0, 1}, {3, 0, 8},   {3, 1, 2},  {4, 0, 36}, {4, 1, 16},
                        {4, 2, 3}, {5, 0, 120}, {5, 1, 72}, {5, 2, 24}, {5, 3, 4}};
  for (const Case& c : cases) {
    std::vector<PieceCounters> out;
    EXPECT_EQ(EnumerateEndgames(c.pieces, c.pawns, out), c.count) << c.pieces << "," << c.pawns;
    for (const PieceCounters& counters : out) {
      EXPECT_EQ(PieceCount(counters), c.pieces);
      EXPECT_EQ(PawnCount(counters), c.pawns);
    }
  }
  std::set<MaterialSignature> signatures;
  for (const PieceCounters& counters : EnumerateEndgamesUpTo(5))
    signatures.insert(Signature(counters));
  EXPECT_EQ(signatures.size(), 286u);
  EXPECT_EQ(EnumerateEndgamesUpTo(4).front(), PieceCounters{});  // bare kings lead
}

TEST(GenericBitbaseNames, PositionListOrder) {
  PositionList list;
  const Board board = BoardFromFen("1q6/8/6n1/2r5/3P4/1p2K3/2B4R/k7 b - - 0 1");
  const MaterialSignature signature = BuildMaterialAndList(board, list);
  EXPECT_EQ(EndgameName(CountersOf(signature)), "krbp_kqrnp");
  const std::vector<int> expected = {D4, B3, E3, A1, C2, G6, H2, C5, B8};
  EXPECT_EQ(std::vector<int>(list.squares, list.squares + list.count), expected);

  // Colours exchanged: Black's pieces first, every square rank-flipped.
  BuildMaterialAndList(board, list, true);
  const std::vector<int> swapped = {B6, D5, A8, E6, C7, G3, C4, H7, B1};
  EXPECT_EQ(std::vector<int>(list.squares, list.squares + list.count), swapped);
}

TEST(GenericBitbaseIndex, FileCoordinatesBringTheFirstPieceHome) {
  EXPECT_EQ(H8 ^ FileCoordinatesMask(H8, false), A1);
  EXPECT_EQ(D5 ^ FileCoordinatesMask(D5, false), D4);
  EXPECT_EQ(E4 ^ FileCoordinatesMask(E4, false), D4);
  EXPECT_EQ(B2 ^ FileCoordinatesMask(B2, false), B2);
  EXPECT_EQ(H2 ^ FileCoordinatesMask(H2, true), A2);
  EXPECT_EQ(HelperFunctions::PawnIndex(A2), 0);
  EXPECT_EQ(HelperFunctions::PawnIndex(D7), 23);
  EXPECT_EQ(F7 ^ FileCoordinatesMask(F7, true), C7);  // pawns keep their rank
}

// Three and four pieces: the bijections below check the sizes.
TEST(GenericBitbaseIndex, FivePieceClassSizes) {
  EXPECT_EQ(ClassBits(5, 0), 0x40000000u);
  EXPECT_EQ(ClassBits(5, 1), 0x60000000u);
  EXPECT_EQ(ClassBits(5, 2), 0x48000000u);
  EXPECT_EQ(ClassBits(5, 3), 0x36000000u);
}

namespace {

// The squares each list element may take in file coordinates.
std::vector<int> Domain(int element, int pawns) {
  std::vector<int> squares;
  for (int square = 0; square < 64; ++square) {
    const bool left = File(square) < 4;
    if (element == 0 && pawns > 0) {
      if (left && Rank(square) >= 1 && Rank(square) <= 6) squares.push_back(square);
    } else if (element == 0) {
      if (left && Rank(square) < 4) squares.push_back(square);
    } else if (element < pawns) {
      if (Rank(square) >= 1 && Rank(square) <= 6) squares.push_back(square);
    } else {
      squares.push_back(square);
    }
  }
  return squares;
}

template <int PIECES, int PAWNS>
void ExpectBijection() {
  std::vector<std::vector<int>> domains;
  std::uint64_t positions = 2;
  for (int i = 0; i < PIECES; ++i) {
    domains.push_back(Domain(i, PAWNS));
    positions *= domains.back().size();
  }
  ASSERT_EQ(positions * 2, ClassBits(PIECES, PAWNS));
  std::vector<bool> seen(ClassBits(PIECES, PAWNS) / 2, false);
  int squares[PIECES], digits[PIECES] = {};
  std::uint64_t collisions = 0, out_of_range = 0;
  for (std::uint64_t n = 0; n < positions / 2; ++n) {
    for (int i = 0; i < PIECES; ++i) squares[i] = domains[i][digits[i]];
    for (int side = 0; side < 2; ++side) {
      const std::uint32_t index = GenericIndex<PIECES, PAWNS>(squares, side);
      if (index % 2 != 0 || index >= ClassBits(PIECES, PAWNS)) {
        ++out_of_range;
        continue;
      }
      collisions += seen[index / 2];
      seen[index / 2] = true;
    }
    for (int i = PIECES - 1; i >= 0 && ++digits[i] == int(domains[i].size()); --i) digits[i] = 0;
  }
  EXPECT_EQ(out_of_range, 0u);
  EXPECT_EQ(collisions, 0u);
}

// Five pieces are too many to walk: random positions must decode back from their index.
template <int PIECES, int PAWNS>
void ExpectRoundTrip() {
  std::mt19937 random(PIECES * 10 + PAWNS);
  std::vector<std::vector<int>> domains;
  for (int i = 0; i < PIECES; ++i) domains.push_back(Domain(i, PAWNS));
  for (int trial = 0; trial < 20000; ++trial) {
    int squares[PIECES];
    for (int i = 0; i < PIECES; ++i) squares[i] = domains[i][random() % domains[i].size()];
    const int side = int(random() % 2);
    std::uint32_t index = GenericIndex<PIECES, PAWNS>(squares, side);
    ASSERT_LT(index, ClassBits(PIECES, PAWNS));
    // Decode: the low byte, then the digits from the last but one piece back to the first.
    ASSERT_EQ(index % 2, 0u);
    ASSERT_EQ(int(index / 2 % 2), side);
    ASSERT_EQ(int(index / 4 % 64), squares[PIECES - 1]);
    index /= 256;
    for (int i = PIECES - 2; i >= 0; --i) {
      const std::uint32_t radix = std::uint32_t(domains[i].size());
      ASSERT_EQ(domains[i][index % radix], squares[i]) << "element " << i;
      index /= radix;
    }
    ASSERT_EQ(index, 0u);
  }
}

}  // namespace

TEST(GenericBitbaseIndex, ThreeAndFourPiecesMapOntoTheirWholeRange) {
  ExpectBijection<3, 0>();
  ExpectBijection<3, 1>();
  ExpectBijection<4, 0>();
  ExpectBijection<4, 1>();
  ExpectBijection<4, 2>();
}

TEST(GenericBitbaseIndex, FivePiecesDecodeFromTheirIndex) {
  ExpectRoundTrip<5, 0>();
  ExpectRoundTrip<5, 1>();
  ExpectRoundTrip<5, 2>();
  ExpectRoundTrip<5, 3>();
  ExpectRoundTrip<4, 2>();
}
