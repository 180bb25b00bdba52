#include "bitbases/generic_bitbases.h"

#include <gtest/gtest.h>

#include <random>
#include <set>

#include "bitbases/bitbase_test_support.h"
#include "bitbases/generic_bitbase_index.h"
#include "bitbases/job_description.h"
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

// A material is stored under the colours that put the stronger side first.
TEST(GenericBitbaseNames, SignaturesNamesAndTheStoredSide) {
  const struct {
    const char* name;
    MaterialSignature signature;
    bool mirrored;
  } cases[] = {
      {"k_k", 0, false},           {"kp_k", 0x1, false},       {"k_kp", 0x8000, true},
      {"kp_kp", 0x8001, false},    {"kq_k", 0x1000, false},    {"kbn_k", 0x48, false},
      {"kqq_kr", 0x1002000, false}, {"kr_kq", 0x8000200, true}, {"kb_kn", 0x40040, false},
      {"kn_kb", 0x200008, true},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(Signature(Material(c.name)), c.signature) << c.name;
    EXPECT_EQ(EndgameName(CountersOf(c.signature)), c.name);
    EXPECT_EQ(IsMirrored(Material(c.name)), c.mirrored) << c.name;
  }
  // Equal weights: the rook ranks above the bishop.
  for (auto [stronger, weaker] : {std::pair{"kr_kbpp", "kbpp_kr"}, {"krr_krbpp", "krbpp_krr"}}) {
    EXPECT_FALSE(IsMirrored(Material(stronger))) << stronger;
    EXPECT_TRUE(IsMirrored(Material(weaker))) << weaker;
  }
  EXPECT_EQ(EndgameName(Material("kbnrqp_kp")), "kqrbnp_kp");
  PieceCounters eight_pawns{};
  eight_pawns[CounterIndex(WHITE, PAWN)] = 8;
  EXPECT_THROW(Signature(eight_pawns), PieceIndexOutOfBounds);
}

TEST(GenericBitbaseNames, EnumerationCoversEveryMaterialOnce) {
  // Counts of multisets of the non-king pieces over ten kinds, split by pawns.
  const int cases[][3] = {{2, 0, 1}, {3, 0, 8},   {3, 1, 2},  {4, 0, 36}, {4, 1, 16},
                          {4, 2, 3}, {5, 0, 120}, {5, 1, 72}, {5, 2, 24}, {5, 3, 4}};
  for (const auto& [pieces, pawns, count] : cases) {
    std::vector<PieceCounters> out;
    EXPECT_EQ(EnumerateEndgames(pieces, pawns, out), count) << pieces << "," << pawns;
    for (const PieceCounters& counters : out)
      EXPECT_TRUE(PieceCount(counters) == pieces && PawnCount(counters) == pawns);
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
  EXPECT_EQ(std::vector<int>(list.squares, list.squares + list.count),
            (std::vector<int>{D4, B3, E3, A1, C2, G6, H2, C5, B8}));

  BuildMaterialAndList(board, list, true);  // Black's pieces first, every square rank-flipped
  EXPECT_EQ(std::vector<int>(list.squares, list.squares + list.count),
            (std::vector<int>{B6, D5, A8, E6, C7, G3, C4, H7, B1}));
}

namespace {

// The squares each list element may take in file coordinates.
std::vector<int> Domain(int element, int pawns) {
  std::vector<int> squares;
  for (int square = 0; square < 64; ++square) {
    const bool left = File(square) < 4, pawn_rank = Rank(square) >= 1 && Rank(square) <= 6;
    if (element == 0 && pawns > 0 ? left && pawn_rank
        : element == 0           ? left && Rank(square) < 4
        : element < pawns        ? pawn_rank
                                 : true)
      squares.push_back(square);
  }
  return squares;
}

// The index must decode back into the placement: the low byte holds the side and the last piece,
// the rest the digits of the others from the last but one back to the first. With the class
// size equal to the number of placements this makes the index a bijection. Up to four pieces
// every placement is tried, beyond that random ones.
template <int PIECES, int PAWNS>
void ExpectIndexDecodes() {
  SCOPED_TRACE(std::to_string(PIECES) + " pieces, " + std::to_string(PAWNS) + " pawns");
  std::vector<std::vector<int>> domains;
  std::uint64_t positions = 2;
  for (int i = 0; i < PIECES; ++i) {
    domains.push_back(Domain(i, PAWNS));
    positions *= domains.back().size();
  }
  ASSERT_EQ(positions * 2, ClassBits(PIECES, PAWNS));
  const bool every = PIECES <= 4;
  std::mt19937 random(PIECES * 10 + PAWNS);
  int squares[PIECES], digits[PIECES] = {};
  for (std::uint64_t n = 0; n < (every ? positions / 2 : 20000); ++n) {
    for (int i = 0; i < PIECES; ++i) {
      if (!every) digits[i] = int(random() % domains[i].size());
      squares[i] = domains[i][std::size_t(digits[i])];
    }
    for (int side = 0; side < 2; ++side) {
      std::uint32_t index = GenericIndex<PIECES, PAWNS>(squares, side);
      bool decodes = index % 2 == 0 && int(index / 2 % 2) == side &&
                     int(index / 4 % 64) == squares[PIECES - 1];
      index /= 256;
      for (int i = PIECES - 2; i >= 0; --i) {
        const std::uint32_t radix = std::uint32_t(domains[i].size());
        decodes &= domains[i][index % radix] == squares[i];
        index /= radix;
      }
      ASSERT_TRUE(decodes && index == 0) << "placement " << n << " side " << side;
    }
    for (int i = PIECES - 1; every && i >= 0 && ++digits[i] == int(domains[i].size()); --i)
      digits[i] = 0;
  }
}

}  // namespace

TEST(GenericBitbaseIndex, EveryClassDecodesFromItsIndex) {
  ExpectIndexDecodes<3, 0>();
  ExpectIndexDecodes<3, 1>();
  ExpectIndexDecodes<4, 0>();
  ExpectIndexDecodes<4, 1>();
  ExpectIndexDecodes<4, 2>();
  ExpectIndexDecodes<5, 0>();
  ExpectIndexDecodes<5, 1>();
  ExpectIndexDecodes<5, 2>();
  ExpectIndexDecodes<5, 3>();
}

namespace {

const std::string TOO_MANY =
    "Incorrect job description (too many pieces, as the current implementation support only 5 "
    "pieces)";
const std::string SYNTAX =
    "Could not parse job description:\n\nSyntax: 'generic[<job1>,...,<jobN>]'.\nDo not seperate "
    "the jobs by whitespaces.\n\n";

std::string TooFew(const std::string& job) {
  return "Incorrect job description, as generic bitbases require that there are at least three "
         "pieces: '" + job + "'";
}

std::vector<std::string> Names(const std::vector<PieceCounters>& endgames) {
  std::vector<std::string> names;
  for (const auto& counters : endgames) names.push_back(EndgameName(counters));
  return names;
}

}  // namespace

TEST(GenericBitbaseJobDescription, AcceptedForms) {
  struct Case {
    std::string word;
    std::vector<int> counts;
    std::vector<std::string> names;
  };
  const Case cases[] = {
      {"generic", {3, 4, 5}, {}},      {"generic[3]", {3}, {}},
      {"generic[3-4]", {3, 4}, {}},    {"generic[5-5]", {5}, {}},
      {"generic[3,3]", {3, 3}, {}},    {"generic[ 3 - 4 ]", {3, 4}, {}},
      {"generic [ 3 ]", {3}, {}},      {"generic['3',\"4\"]", {3, 4}, {}},
      {"generic[krp_kr]", {}, {"krp_kr"}},
      {"generic[3,kqr_kr,krp_kr]", {3}, {"kqr_kr", "krp_kr"}},
      {"generic[4-5,kbn_k]", {4, 5}, {"kbn_k"}},
      {"generic[3, kq_k]", {3}, {"kq_k"}},
      {"generic[KQ_K]", {}, {"kq_k"}},
      {"generic[kPr_kP]", {}, {"krp_kp"}},
      {"generic[kr_kq]", {}, {"kr_kq"}},  // mirrored, yet named outright
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.word);
    GenericBitbaseJobDescription description(c.word);
    EXPECT_EQ(description.piece_counts, c.counts);
    EXPECT_EQ(Names(description.endgames), c.names);
  }
}

TEST(GenericBitbaseJobDescription, EveryErrorHasItsMessage) {
  const std::pair<std::string, std::string> cases[] = {
      {"generic[2]", TooFew("2")},
      {"generic[k_k]", TooFew("k_k")},
      {"generic[2-4]", TooFew("2-4")},
      {"generic[4-3]", "Incorrect job description (empty range): '4-3'"},
      {"generic[3-6]", TOO_MANY},
      {"generic[6]", TOO_MANY},
      {"generic[kqq_kqq]", TOO_MANY},
      {"generic[kqr]",
       "Could not parse single job description: 'kqr' (Maybe you forgot the underscore, e.g., "
       "\"krp_kr\"?)"},
      {"generic[k_k_k]", "Could not parse single job description: 'k_k_k'"},
      {"generic[qk_k]", "Could not parse single job description: 'qk_k'"},
      {"generic[x]", "Could not parse single job description: 'x'"},
      {"generic[kx_k]", "Undefined piece in job description: 'kx'"},
      {"generic[kq_q]", "Incorrect number of kings in job description: 'q'"},
      {"generic[kkq_k]", "Incorrect number of kings in job description: 'kkq'"},
      {"generic[3x]", "Could not parse integer in single job description: '3x'"},
      {"generic[3-x]", "Could not parse integer in single job description: '3-x'"},
      {"generic[3-4-5]", "Could not parse integer in single job description: '3-4-5'"},
      {"generic3", SYNTAX},    {"generic[3", SYNTAX}, {"generic3]", SYNTAX},
      {"generics[3]", SYNTAX}, {"[3]", SYNTAX},       {"", SYNTAX},
      {"generic['3]", "Could not parse job description"},
  };
  for (const auto& [word, message] : cases)
    EXPECT_EQ(FailureOf<GenericBitbaseJobDescription::ParseError>(
                  [&] { GenericBitbaseJobDescription{word}; }),
              message)
        << word;
}

TEST(GenericBitbaseJobDescription, ExpansionKeepsNamesAndDropsMirroredFromCounts) {
  const GenericBitbaseJobDescription description("generic[kr_kq,3]");
  std::vector<PieceCounters> three;
  EnumerateEndgames(3, three);
  std::vector<std::string> all = {"kr_kq"}, kept = {"kr_kq"};
  for (const auto& counters : three) {
    all.push_back(EndgameName(counters));
    if (!IsMirrored(counters)) kept.push_back(EndgameName(counters));
  }
  EXPECT_EQ(Names(description.Expand(false)), all);
  EXPECT_EQ(Names(description.Expand(true)), kept);
  EXPECT_EQ(kept.size(), 6u);  // kp_k, kn_k, kb_k, kr_k, kq_k behind the name
  EXPECT_EQ(GenericBitbaseJobDescription("generic[3,3]").Expand(true).size(), 10u);
}
