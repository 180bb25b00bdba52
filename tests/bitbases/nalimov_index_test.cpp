#include <gtest/gtest.h>

#include <random>
#include <string>
#include <unordered_map>
#include <vector>

#include "bitbases/nalimov_index.h"
#include "bitbases/nalimov_index_tables.h"
#include "bitbases/tablebase_descriptors.h"
#include "support/endgame_positions.h"

using namespace NalimovTablebases;

namespace {

int IdOf(std::string_view name) {
  for (int id = 1; id <= TABLE_COUNT; ++id)
    if (Descriptors[id].name == name) return id;
  return 0;
}

std::uint64_t IndexOf(const EndgamePosition& position, bool invert = false) {
  int white[SQUARE_LIST_SIZE], black[SQUARE_LIST_SIZE];
  position.FillSquareLists(white, black);
  int id = IdOf(position.material);
  return GetIndexFunction(id, position.side)(white, black, NO_EN_PASSANT, invert);
}

// Checks that every position gets an index inside the table and that two positions share an
// index only when one is a mirror image of the other. Returns the highest index plus one.
class IndexChecker {
 public:
  explicit IndexChecker(std::string name, int side)
      : name_(std::move(name)), side_(side), entries_(Descriptors[IdOf(name_)].entries[side]) {}

  void Add(const EndgamePosition& position) {
    std::uint64_t index = IndexOf(position);
    ASSERT_LT(index, entries_) << name_ << " side " << side_;
    if (index + 1 > range_) range_ = index + 1;
    auto [it, fresh] = first_at_.try_emplace(index, position);
    if (!fresh && !AreSymmetricTwins(it->second, position)) ++collisions_;
  }

  std::uint64_t Range() const { return range_; }
  int Collisions() const { return collisions_; }

 private:
  std::string name_;
  int side_;
  std::uint64_t entries_;
  std::uint64_t range_ = 0;
  int collisions_ = 0;
  std::unordered_map<std::uint64_t, EndgamePosition> first_at_;
};

}  // namespace

TEST(NalimovIndexTables, PairCountsAndTotals) {
  int pawnless = 0, pawn = 0;
  for (int k1 = 0; k1 < 64; ++k1)
    for (int k2 = 0; k2 < 64; ++k2) {
      pawnless += KingPair[k1][k2] != NO_PAIR;
      pawn += KingPairPawn[k1][k2] != NO_PAIR;
    }
  EXPECT_EQ(pawnless, PAWNLESS_PAIRS);
  EXPECT_EQ(pawn, PAWN_PAIRS);
  EXPECT_EQ(KingPair[A1][C1], 0);
  EXPECT_EQ(KingPair[A1][A3], NO_PAIR);  // on the diagonal the other king stays on or below it
  EXPECT_EQ(KingPair[D4][H8], PAWNLESS_PAIRS - 1);

  // kppk with Black on move: the white pawns are counted with the pair, as code 0.
  EXPECT_EQ(CumulativePawn[BARE_KING_PAWN][BARE_KING_PAWN][PAWN_PAIRS], 1912372u);
  // kpk, the Cumulative totals for the two sides.
  EXPECT_EQ(CumulativePawn[PAWN][NO_CODE][PAWN_PAIRS], Descriptors[IdOf("kpk")].entries[0]);
  EXPECT_EQ(CumulativePawn[BARE_KING_PAWN][NO_CODE][PAWN_PAIRS],
            Descriptors[IdOf("kpk")].entries[1]);
  // knpk with Black on move is kpk with Black on move times the knight's 61 squares.
  EXPECT_EQ(Descriptors[IdOf("knpk")].entries[1], Descriptors[IdOf("kpk")].entries[1] * 61);
  // Without pawns the format's ranges are the pair count times the placements of the others.
  EXPECT_EQ(Descriptors[IdOf("kqqk")].entries[1], 462u * 1891);
  EXPECT_EQ(Descriptors[IdOf("kbnk")].entries[1], 462u * 3782);
}

TEST(NalimovIndexTables, FreeSquaresSkipTheKingAndContactChecks) {
  EXPECT_EQ(FreeSquare[QUEEN][E4][E4], NOT_ALLOWED);
  EXPECT_EQ(FreeSquare[QUEEN][E4][F5], NOT_ALLOWED);
  EXPECT_EQ(FreeCount[QUEEN][E4], 55);
  EXPECT_EQ(FreeCount[QUEEN][A1], 60);
  EXPECT_EQ(FreeCount[KNIGHT][E4], 55);
  EXPECT_EQ(FreeSquare[ROOK][E4][F5], FreeSquare[ROOK][E4][D5] + 1);  // e5 is skipped, d5 and f5 not
  // A white pawn checks from below; code 0 pawns are numbered around the king alone.
  EXPECT_EQ(FreeSquare[PAWN][E4][D3], NOT_ALLOWED);
  EXPECT_EQ(FreeSquare[PAWN][E4][F3], NOT_ALLOWED);
  EXPECT_NE(FreeSquare[PAWN][E4][D5], NOT_ALLOWED);
  EXPECT_EQ(FreeCount[PAWN][E4], 45);
  EXPECT_EQ(FreeCount[BARE_KING_PAWN][E4], 47);
  EXPECT_EQ(FreeCount[BARE_KING_PAWN][A1], 48);
  EXPECT_EQ(FreeSquare[PAWN][A1][A2], 0);
  EXPECT_EQ(FreeSquare[PAWN][A1][A1], NOT_ALLOWED);
}

TEST(NalimovIndex, FirstAndLastIndexOfKnkWithBlackOnMove) {
  EndgamePosition first = MakeMaterial("knk", BLACK);
  first.pieces = {{WHITE, KING, C1}, {BLACK, KING, A1}, {WHITE, KNIGHT, B1}};
  EXPECT_EQ(IndexOf(first), 0u);
  EndgamePosition last = MakeMaterial("knk", BLACK);
  last.pieces = {{WHITE, KING, H8}, {BLACK, KING, D4}, {WHITE, KNIGHT, G8}};
  EXPECT_EQ(IndexOf(last), 28643u);
}

TEST(NalimovIndex, WorkedMembers) {
  // kqkr, White on move, already in the frame: wk b1, bk d3, q a5, r h8.
  EndgamePosition kqkr = MakeMaterial("kqkr", WHITE);
  kqkr.pieces = {{WHITE, KING, B1}, {BLACK, KING, D3}, {WHITE, QUEEN, A5}, {BLACK, ROOK, H8}};
  std::uint64_t expected = (Cumulative[QUEEN][NO_CODE][KingPair[B1][D3]] +
                            FreeSquare[QUEEN][D3][A5] - 1) * 61 + H8 - 3;
  EXPECT_EQ(IndexOf(kqkr), expected);

  // knkp, White on move: (Cumulative[knight] + F(n)) * 48 + p - 8.
  EndgamePosition knkp = MakeMaterial("knkp", WHITE);
  knkp.pieces = {{WHITE, KING, C2}, {BLACK, KING, G6}, {WHITE, KNIGHT, A8}, {BLACK, PAWN, B5}};
  expected = (CumulativePawn[KNIGHT][NO_CODE][KingPairPawn[C2][G6]] +
              FreeSquare[KNIGHT][G6][A8] - 1) * 48 + B5 - 8;
  EXPECT_EQ(IndexOf(knkp), expected);

  // kpk, Black on move: everything read rank-mirrored, the pawn as code 0.
  EndgamePosition kpk = MakeMaterial("kpk", BLACK);
  kpk.pieces = {{WHITE, KING, B2}, {BLACK, KING, D7}, {WHITE, PAWN, C4}};
  expected = CumulativePawn[BARE_KING_PAWN][NO_CODE][KingPairPawn[D7 ^ 56][B2 ^ 56]] +
             FreeSquare[BARE_KING_PAWN][B2 ^ 56][C4 ^ 56] - 1;  // d2 lies below c5
  EXPECT_EQ(IndexOf(kpk), expected);

  // kppkp, White on move: the black pawn's digit skips both white pawns below it.
  EndgamePosition kppkp = MakeMaterial("kppkp", WHITE);
  kppkp.pieces = {{WHITE, KING, A1}, {BLACK, KING, H8}, {WHITE, PAWN, B2},
                  {WHITE, PAWN, C3}, {BLACK, PAWN, D6}};
  int fl = FreeSquare[PAWN][H8][B2] - 0, fh = FreeSquare[PAWN][H8][C3] - 0;
  expected = (CumulativePawn[PAWN][PAWN][KingPairPawn[A1][H8]] + fh * (fh - 1) / 2 + fl) * 46 +
             D6 - 2 - 8;
  EXPECT_EQ(IndexOf(kppkp), expected);
}

TEST(NalimovIndex, KrkWithWhiteOnMoveEndsSixEntriesEarly) {
  // The formula reaches 27,036; the last six are a rook on a8..f8 against a king on h8 with White
  // on move, which cannot happen.
  EXPECT_EQ(Cumulative[ROOK][NO_CODE][PAWNLESS_PAIRS], 27036u);
  EndgamePosition position = MakeMaterial("krk", WHITE);
  position.pieces = {{WHITE, KING, D4}, {BLACK, KING, H8}, {WHITE, ROOK, A8}};
  EXPECT_EQ(IndexOf(position), 27030u);
  position.pieces[2].square = F8;
  EXPECT_EQ(IndexOf(position), 27035u);
}

TEST(NalimovIndex, DiagonalKingsAndTransposition) {
  // k1 on the diagonal and k2 above it: transposed onto k2 below it.
  EndgamePosition above = MakeMaterial("kqk", WHITE);
  above.pieces = {{WHITE, KING, B2}, {BLACK, KING, B6}, {WHITE, QUEEN, E2}};
  EndgamePosition below = above;
  below.pieces = {{WHITE, KING, B2}, {BLACK, KING, F2}, {WHITE, QUEEN, B5}};
  EXPECT_EQ(IndexOf(above), IndexOf(below));
  // Both kings on the diagonal: no transposition, so the queen's two images differ.
  EndgamePosition diagonal = above;
  diagonal.pieces = {{WHITE, KING, B2}, {BLACK, KING, E5}, {WHITE, QUEEN, G3}};
  EndgamePosition transposed = diagonal;
  transposed.pieces[2].square = C7;
  EXPECT_NE(IndexOf(diagonal), IndexOf(transposed));
}

TEST(NalimovIndex, InvertedListsOfTheColourReversedTwin) {
  std::mt19937_64 random(7);
  for (std::string name : {"kpkp", "krkp", "kqkp", "kpk"})
    for (int side : {WHITE, BLACK})
      for (int n = 0; n < 2000; ++n) {
        EndgamePosition position = RandomLegalPosition(name, side, random);
        EndgamePosition twin = position.ColourReversed();
        int white[SQUARE_LIST_SIZE], black[SQUARE_LIST_SIZE];
        twin.FillSquareLists(white, black);
        // Look-up of the twin finds the table reversed: the lists are swapped.
        std::uint64_t twin_index =
            GetIndexFunction(IdOf(name), side)(black, white, NO_EN_PASSANT, true);
        ASSERT_EQ(twin_index, IndexOf(position)) << name << " " << side;
      }
}

TEST(NalimovIndex, EveryThreePieceTableIsDenseAndInjective) {
  for (std::string name : {"kpk", "knk", "kbk", "krk", "kqk"})
    for (int side : {WHITE, BLACK}) {
      IndexChecker checker(name, side);
      ForEachLegalPosition(name, side, [&](const EndgamePosition& p) { checker.Add(p); });
      EXPECT_EQ(checker.Collisions(), 0) << name << " side " << side;
      // The legal positions reach the last entry of every file.
      EXPECT_EQ(checker.Range(), Descriptors[IdOf(name)].entries[side]) << name << " " << side;
    }
}

TEST(NalimovIndex, FourAndFivePieceSamplesAreInRangeAndInjective) {
  std::mt19937_64 random(11);
  for (std::string name : {"kqkr", "kbnk", "kqqk", "krpk", "kppk", "kpkp", "knkp", "kbbk",
                           "kqrkr", "kppkp", "krpkp", "knpkb", "kqqkr"})
    for (int side : {WHITE, BLACK}) {
      IndexChecker checker(name, side);
      for (int n = 0; n < 40000; ++n) checker.Add(RandomLegalPosition(name, side, random));
      EXPECT_EQ(checker.Collisions(), 0) << name << " side " << side;
    }
}
