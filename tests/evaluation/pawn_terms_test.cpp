// Pawn terms of small positions, each worked out by hand from the rules of the pawn structure.
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "evaluation/passed_pawns.h"
#include "evaluation/pawn_entry_construction.h"
#include "evaluation/pawn_majorities.h"
#include "evaluation/pawn_sets.h"
#include "evaluation/pawn_structure.h"
#include "evaluation/pawn_structure_terms.h"
#include "evaluation/pawn_tables.h"
#include "support/board_from_fen.h"

namespace {

// The pawn information of a position as a full evaluation prepares it without a hash table.
struct Prepared {
  explicit Prepared(const std::string& fen) : board(BoardFromFen(fen)) {
    ListPawns(evaluation, board);
    FindPassedPawns(evaluation, board);
    passed = PassedPawnTerm(evaluation);
    PrepareFileData(evaluation, board);
    PrepareStructure(evaluation, board);
  }
  Board board;
  EvaluationState evaluation;
  ScorePair passed;
};

constexpr Bitboard Bits(std::initializer_list<int> squares) {
  Bitboard set = 0;
  for (int square : squares) set |= SquareBit(square);
  return set;
}

}  // namespace

TEST(PassedPawnTerm, OnlyTheFrontmostPasserOfAFileCounts) {
  Prepared p("4k3/8/8/3P4/8/3P3p/8/4K3 w - - 0 1");
  // d5 (30, 20) * 5 / 8 (d3 behind it does not count); h3 (55, 46) * 7 / 8.
  EXPECT_EQ(p.passed, ScorePair(18 - 48, 12 - 40));
  EXPECT_EQ(p.evaluation.pawns[WHITE].frontmost_passed, SquareBit(D5));
  EXPECT_EQ(p.evaluation.pawns[WHITE].passed_rank[3], 4);
  EXPECT_EQ(p.evaluation.pawns[BLACK].passed_rank[7], 2);  // the board's rank, not Black's
  EXPECT_EQ(p.evaluation.pawns[WHITE].passed_count, 2);
}

TEST(PawnEndingTerm, PassersDoubledPawnsAndMajorities) {
  const struct {
    const char* fen;
    int expected;
    int queenside_majority;
  } cases[] = {
      // d5: table 7, isolated with nothing ahead -14; one pawn over four files is no majority.
      {"4k3/8/8/3P4/8/8/8/4K3 w - - 0 1", 7 - 14, NO_MAJORITY},
      // a2 0, a4 3; doubled isolated -48; a-file against none is a majority +17, king far +18.
      {"4k3/8/8/8/P7/8/P7/4K3 w - - 0 1", 0 + 3 - 48 + 17 + 18, WHITE_MAJORITY},
      // Tables 8 - 4, duos 8 - 5; majority +17 without candidates, the king on g8 far +18.
      {"6k1/pp6/8/8/8/8/PPP5/6K1 w - - 0 1", (8 - 4) + (8 - 5) + 17 + 18, WHITE_MAJORITY},
  };
  for (const auto& c : cases) {
    Prepared p(c.fen);
    EXPECT_EQ(PawnEndingTerm(p.evaluation, p.board), c.expected) << c.fen;
    EXPECT_EQ(p.evaluation.majority[0].kind, c.queenside_majority) << c.fen;
    EXPECT_EQ(p.evaluation.majority[1].kind, NO_MAJORITY) << c.fen;
  }
  Prepared doubled("4k3/8/8/8/P7/8/P7/4K3 w - - 0 1");
  EXPECT_EQ(doubled.evaluation.pawns[WHITE].doubled, Bits({A2, A4}));
  EXPECT_EQ(doubled.evaluation.pawns[WHITE].isolated, Bits({A2, A4}));
  const Prepared majority("6k1/pp6/8/8/8/8/PPP5/6K1 w - - 0 1");
  const PawnMajority& queenside = majority.evaluation.majority[0];
  EXPECT_EQ(queenside.files, 3);
  EXPECT_EQ(queenside.opposing_pawns, 2);
  EXPECT_EQ(queenside.mask, FileMask(0) | FileMask(1) | FileMask(2));
}

TEST(ConstructPawnEntry, ABackwardIsolatedPawnOnItsSecondRank) {
  Prepared p("4k3/8/8/4p3/8/8/3P4/4K3 w - - 0 1");
  const PawnBlock& white = p.evaluation.pawns[WHITE];
  const PawnBlock& black = p.evaluation.pawns[BLACK];
  // d4 is Black's and no white pawn can ever cover d3: d2 is backward.
  EXPECT_EQ(white.backward, SquareBit(D2));
  EXPECT_EQ(white.backward_low, SquareBit(D2));
  EXPECT_EQ(white.safe_advance, SquareBit(D3));
  EXPECT_EQ(black.backward, 0u);
  EXPECT_EQ(black.safe_advance, SquareBit(E4));

  ConstructPawnEntry(p.evaluation, p.board, MiddlegamePawnPositional, MiddlegamePawnReckless);
  // d2: (8, 0), backward low (-15, -12), isolated (-18, -6); e5: (18, 28), isolated (-18, -6);
  // d2 with d3 free: centre units -4/-2; d4 Black's (-4, -12), e4 in White's reach (+2, +1).
  const ScorePair expected = ScorePair(8 - 15 - 18, 0 - 12 - 6) - ScorePair(18 - 18, 28 - 6) +
                             ScorePair(-4, -12) + ScorePair(2, 1);
  EXPECT_EQ(ScorePair(p.evaluation.pawn_scores.positional, p.evaluation.pawn_scores.reckless),
            expected);
  const ZoneUnits(&units)[2][3] = p.evaluation.pawn_scores.units;
  EXPECT_EQ(units[WHITE][2].attack, -3 - 4);
  EXPECT_EQ(units[WHITE][2].defence, -8 - 4 - 2 + 2);
  EXPECT_EQ(units[BLACK][2].attack, 6);
  EXPECT_EQ(units[BLACK][2].defence, -4);
  EXPECT_EQ(white.unreachable_centre, Bits({D4, D5}));
  EXPECT_EQ(black.unreachable_centre, Bits({E4, D5}));
}

TEST(AdjacentPassers, AFileJoinsOnePairAtMost) {
  struct Case {
    std::initializer_list<int> files;
    std::initializer_list<std::pair<int, int>> pairs;
  };
  const Case cases[] = {
      {{0, 1, 2}, {{0, 1}}},
      {{0, 1, 2, 3}, {{0, 1}, {2, 3}}},
      {{1, 2, 3}, {{1, 2}}},
      {{0, 2, 4, 6}, {}},
      {{6, 7}, {{6, 7}}},
  };
  for (const Case& c : cases) {
    PawnBlock block{};
    for (int file : c.files) block.passed_rank[file] = 4;
    std::vector<std::pair<int, int>> found;
    ForEachAdjacentPassers(block, [&](int a, int b) { found.emplace_back(a, b); });
    const std::vector<std::pair<int, int>> expected(c.pairs);
    EXPECT_EQ(found, expected);
  }
}

namespace {

struct DynamicCase {
  const char* fen;
  ScorePair (*term)(EvaluationState&, const Board&);
  ScorePair expected;
  ZoneUnits white_centre, black_centre;  // zone units of wing 2 after the term
};

}  // namespace

TEST(PawnStructureTerm, TermsThatNeedThePieces) {
  const DynamicCase cases[] = {
      // Isolated d4, 8 piece points (-18, -16); defended by e3 (0, -2); rook on d1 (+6, +6).
      {"6k1/8/8/8/3P4/4B3/8/3R2K1 w - - 0 1", IsolatedQueenPawnTerm, {-18 + 6, -16 - 2 + 6},
       {0, 4}, {0, 0}},
      // The rook behind the passed d4: (+5, +5); d5 is empty but d4 is only on rank 3.
      {"6k1/8/8/8/3P4/4B3/8/3R2K1 w - - 0 1", PassedPawnPiecesTerm, {5, 5}, {0, 0}, {0, 0}},
      // Nd3 before d2 (-18, -28), Bc3 before c2 (-8, -10); Black's Ne6 before e7 mirrors it.
      {"4k3/4p3/4n3/8/8/2BN4/2PP4/4K3 w - - 0 1", BlockedCentreTerm,
       {-18 - 8 + 18, -28 - 10 + 28}, {-8, -4}, {-6, -4}},
  };
  for (const DynamicCase& c : cases) {
    Prepared p(c.fen);
    EXPECT_EQ(c.term(p.evaluation, p.board), c.expected) << c.fen;
    EXPECT_EQ(p.evaluation.zone_units[WHITE][2].attack, c.white_centre.attack) << c.fen;
    EXPECT_EQ(p.evaluation.zone_units[WHITE][2].defence, c.white_centre.defence) << c.fen;
    EXPECT_EQ(p.evaluation.zone_units[BLACK][2].attack, c.black_centre.attack) << c.fen;
    EXPECT_EQ(p.evaluation.zone_units[BLACK][2].defence, c.black_centre.defence) << c.fen;
  }
}

TEST(PawnStructureTerm, AMajorityAgainstTheKing) {
  const struct {
    const char* fen;
    ScorePair expected;
    int trend, attack;
  } cases[] = {
      // Four against three on the queenside, Black's king on that side: (+5, +14).
      {"2k5/ppp5/8/8/8/8/PPPP4/6K1 w - - 0 1", {5, 14}, 20, 5},
      // The same with the king on the other half: (+20, +7).
      {"6k1/ppp5/8/8/8/8/PPPP4/6K1 w - - 0 1", {20, 7}, 12, 2},
  };
  for (const auto& c : cases) {
    Prepared p(c.fen);
    const PawnMajority& queenside = p.evaluation.majority[0];
    EXPECT_EQ(queenside.kind, WHITE_MAJORITY);
    EXPECT_EQ(queenside.files, 4);
    EXPECT_EQ(queenside.opposing_pawns, 3);
    EXPECT_EQ(MajorityKingTerm(p.evaluation, p.board), c.expected) << c.fen;
    EXPECT_EQ(p.evaluation.endgame_trend, c.trend);
    EXPECT_EQ(p.evaluation.zone_units[WHITE][0].attack, c.attack);
  }
}

TEST(PrepareFileData, FilesWithoutPawnsAndTheOnlyOpenFile) {
  const struct {
    const char* fen;
    std::uint16_t white, black;
    int only_open_file;
  } cases[] = {
      {"4k3/pp3ppp/8/8/8/8/PPP2PPP/4K3 w - - 0 1", 0x18, 0x1C, -1},  // d and e both open
      {"4k3/pp2pppp/8/8/8/8/PPP1PPPP/4K3 w - - 0 1", 0x08, 0x0C, 3},  // the d-file alone
      {"4k3/8/8/8/8/8/8/4K3 w - - 0 1", 0xFF, 0xFF, -1},
  };
  for (const auto& c : cases) {
    Prepared p(c.fen);
    EXPECT_EQ(p.evaluation.files_without_pawn[WHITE], c.white) << c.fen;
    EXPECT_EQ(p.evaluation.files_without_pawn[BLACK], c.black) << c.fen;
    EXPECT_EQ(p.evaluation.files_without_pawn_count[WHITE], PopCount(c.white)) << c.fen;
    EXPECT_EQ(p.evaluation.files_without_pawn_count[BLACK], PopCount(c.black)) << c.fen;
    EXPECT_EQ(p.evaluation.only_open_file, c.only_open_file) << c.fen;
  }
}
