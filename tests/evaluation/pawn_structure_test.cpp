// Pawn terms of small positions, each worked out by hand from the rules of the pawn structure, and
// the pawn hash entry, which keeps everything the pawn evaluation needs again: a hit must give
// what a fresh computation gives.
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "evaluation/passed_pawns.h"
#include "evaluation/pawn_entry_construction.h"
#include "evaluation/pawn_hash_entry.h"
#include "evaluation/pawn_majorities.h"
#include "evaluation/pawn_sets.h"
#include "evaluation/pawn_structure.h"
#include "evaluation/pawn_structure_terms.h"
#include "evaluation/pawn_tables.h"
#include "search/hash.h"
#include "search/position_type.h"
#include "support/board_from_fen.h"
#include "support/random_positions.h"
#include "term_setup.h"

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

// The fields of a pawn entry, compared as one.
auto Fields(const PawnMajority& m) { return std::tie(m.kind, m.files, m.opposing_pawns, m.mask); }
auto Fields(const PawnBlock& b) {
  return std::tie(b.passed, b.passed_count, b.isolated, b.backward, b.backward_low, b.obstructed,
                  b.safe_advance, b.unreachable_centre);
}
auto Fields(const EvaluationState& e) {
  return std::tuple(Fields(e.pawns[WHITE]), Fields(e.pawns[BLACK]), Fields(e.majority[0]),
                    Fields(e.majority[1]), e.openness);
}

}  // namespace

TEST(PassedPawnTerm, OnlyTheFrontmostPasserOfAFileCounts) {
  Prepared p("4k3/8/8/3P4/8/3P3p/8/4K3 w - - 0 1");
  // d5 (30, 20) * 5 / 8 (d3 behind it does not count); h3 (55, 46) * 7 / 8.
  EXPECT_EQ(p.passed, ScorePair(18 - 48, 12 - 40));
  const PawnBlock &white = p.evaluation.pawns[WHITE], &black = p.evaluation.pawns[BLACK];
  EXPECT_EQ(white.frontmost_passed, SquareBit(D5));
  EXPECT_EQ(std::tuple(white.passed_count, white.passed_rank[3]), std::tuple(2, 4));
  EXPECT_EQ(black.passed_rank[7], 2);  // the board's rank, not Black's
}

TEST(PawnEndingTerm, PassersDoubledPawnsAndMajorities) {
  for (const auto& [fen, expected, queenside] : {
           // A pawn ending with a passed pawn: d5 table 7, isolated with nothing ahead -14; one
           // pawn over four files is no majority.
           std::tuple{"4k3/8/8/3P4/8/8/8/4K3 w - - 0 1", 7 - 14, NO_MAJORITY},
           // a2 0, a4 3; doubled isolated -48; a-file against none is a majority +17, king far +18.
           {"4k3/8/8/8/P7/8/P7/4K3 w - - 0 1", 0 + 3 - 48 + 17 + 18, WHITE_MAJORITY},
           // Tables 8 - 4, duos 8 - 5; majority +17 without candidates, the king on g8 far +18.
           {"6k1/pp6/8/8/8/8/PPP5/6K1 w - - 0 1", (8 - 4) + (8 - 5) + 17 + 18, WHITE_MAJORITY}}) {
    Prepared p(fen);
    EXPECT_EQ(PawnEndingTerm(p.evaluation, p.board), expected) << fen;
    EXPECT_EQ(p.evaluation.majority[0].kind, queenside) << fen;
    EXPECT_EQ(p.evaluation.majority[1].kind, NO_MAJORITY) << fen;
  }
  const Prepared two("4k3/8/8/8/P7/8/P7/4K3 w - - 0 1");
  const PawnBlock& doubled = two.evaluation.pawns[WHITE];
  EXPECT_EQ(doubled.doubled, Bits({A2, A4}));
  EXPECT_EQ(doubled.isolated, Bits({A2, A4}));
  const Prepared three("6k1/pp6/8/8/8/8/PPP5/6K1 w - - 0 1");
  const PawnMajority& majority = three.evaluation.majority[0];
  EXPECT_EQ(std::tie(majority.files, majority.opposing_pawns, majority.mask),
            std::tuple(3, 2, FileMask(0) | FileMask(1) | FileMask(2)));
}

TEST(ConstructPawnEntry, ABackwardIsolatedPawnOnItsSecondRank) {
  Prepared p("4k3/8/8/4p3/8/8/3P4/4K3 w - - 0 1");
  const PawnBlock& white = p.evaluation.pawns[WHITE];
  const PawnBlock& black = p.evaluation.pawns[BLACK];
  // d4 is Black's and no white pawn can ever cover d3: d2 is backward.
  EXPECT_EQ(std::tie(white.backward, white.backward_low, white.safe_advance),
            std::tuple(Bits({D2}), Bits({D2}), Bits({D3})));
  EXPECT_EQ(std::tie(black.backward, black.safe_advance), std::tuple(Bits({}), Bits({E4})));

  ConstructPawnEntry(p.evaluation, p.board, MiddlegamePawnPositional, MiddlegamePawnReckless);
  // d2: (8, 0), backward low (-15, -12), isolated (-18, -6); e5: (18, 28), isolated (-18, -6);
  // d4 Black's (-4, -12), e4 in White's reach (+2, +1).
  const ScorePair expected = ScorePair(8 - 15 - 18, 0 - 12 - 6) - ScorePair(18 - 18, 28 - 6) +
                             ScorePair(-4, -12) + ScorePair(2, 1);
  EXPECT_EQ(ScorePair(p.evaluation.pawn_scores.positional, p.evaluation.pawn_scores.reckless),
            expected);
  // White's centre: attack -3 - 4, defence -8 - 4, and d2 with d3 free -2 + 2.
  EXPECT_EQ(UnitsText(p.evaluation.pawn_scores.units), "WC -7/-12 BC 6/-4");
  EXPECT_EQ(std::tie(white.unreachable_centre, black.unreachable_centre),
            std::tuple(Bits({D4, D5}), Bits({E4, D5})));
}

TEST(AdjacentPassers, AFileJoinsOnePairAtMost) {
  const std::pair<std::vector<int>, std::vector<std::pair<int, int>>> cases[] = {
      {{0, 1, 2}, {{0, 1}}}, {{0, 1, 2, 3}, {{0, 1}, {2, 3}}}, {{1, 2, 3}, {{1, 2}}},
      {{0, 2, 4, 6}, {}},    {{6, 7}, {{6, 7}}},
  };
  for (const auto& [files, pairs] : cases) {
    PawnBlock block{};
    for (int file : files) block.passed_rank[file] = 4;
    std::vector<std::pair<int, int>> found;
    ForEachAdjacentPassers(block, [&](int a, int b) { found.emplace_back(a, b); });
    EXPECT_EQ(found, pairs);
  }
}

TEST(PawnStructureTerm, TermsThatNeedThePieces) {
  using Term = ScorePair (*)(EvaluationState&, const Board&);
  const std::tuple<const char*, Term, ScorePair, const char*> cases[] = {
      // Isolated d4, 8 piece points (-18, -16); defended by e3 (0, -2); rook on d1 (+6, +6).
      {"6k1/8/8/8/3P4/4B3/8/3R2K1 w - - 0 1", IsolatedQueenPawnTerm, {-18 + 6, -16 - 2 + 6},
       "WC 0/4"},
      // The rook behind the passed d4: (+5, +5); d5 is empty but d4 is only on rank 3.
      {"6k1/8/8/8/3P4/4B3/8/3R2K1 w - - 0 1", PassedPawnPiecesTerm, {5, 5}, ""},
      // Nd3 before d2 (-18, -28), Bc3 before c2 (-8, -10); Black's Ne6 before e7 mirrors it.
      {"4k3/4p3/4n3/8/8/2BN4/2PP4/4K3 w - - 0 1", BlockedCentreTerm,
       {-18 - 8 + 18, -28 - 10 + 28}, "WC -8/-4 BC -6/-4"},
      // Four against three on the queenside, Black's king on that side; then on the other half.
      {"2k5/ppp5/8/8/8/8/PPPP4/6K1 w - - 0 1", MajorityKingTerm, {5, 14}, "WQ 5/0 trend 20"},
      {"6k1/ppp5/8/8/8/8/PPPP4/6K1 w - - 0 1", MajorityKingTerm, {20, 7}, "WQ 2/0 trend 12"},
  };
  for (const auto& [fen, term, expected, state] : cases) {
    Prepared p(fen);
    EXPECT_EQ(term(p.evaluation, p.board), expected) << fen;
    EXPECT_EQ(StateText(p.evaluation), state) << fen;
  }
}

TEST(PrepareFileData, FilesWithoutPawnsAndTheOnlyOpenFile) {
  for (const auto& [fen, white, black, only_open_file] : {
           std::tuple{"4k3/pp3ppp/8/8/8/8/PPP2PPP/4K3 w - - 0 1", 0x18, 0x1C, -1},  // d and e
           {"4k3/pp2pppp/8/8/8/8/PPP1PPPP/4K3 w - - 0 1", 0x08, 0x0C, 3},  // the d-file alone
           {"4k3/8/8/8/8/8/8/4K3 w - - 0 1", 0xFF, 0xFF, -1}}) {
    const Prepared p(fen);
    const EvaluationState& e = p.evaluation;
    EXPECT_EQ(std::tuple(e.files_without_pawn[WHITE], e.files_without_pawn[BLACK],
                         e.files_without_pawn_count[WHITE], e.files_without_pawn_count[BLACK],
                         e.only_open_file),
              std::tuple(white, black, PopCount(white), PopCount(black), only_open_file))
        << fen;
  }
}

namespace {

// Random pawns of both colours on distinct squares of the second to seventh rank, and sets of
// pawns, other sets, majorities, openness, scores and units that fit their fields.
struct RandomStructure {
  explicit RandomStructure(std::mt19937_64& random) {
    const Bitboard pawns = random() & random() & 0x00FFFFFFFFFFFF00ULL;
    const Bitboard white_half = random();
    board.white.pawns = pawns & white_half;
    board.black.pawns = pawns & ~white_half;
    for (int colour = WHITE; colour <= BLACK; ++colour) {
      const Bitboard own = board.Pieces(colour).pawns;
      PawnBlock& block = evaluation.pawns[colour];
      block.passed = own & random();
      block.passed_count = std::uint16_t(PopCount(block.passed));
      block.isolated = own & random();
      block.backward = own & random();
      block.backward_low = block.backward & random();
      block.obstructed = own & random();
      block.safe_advance = random();
      block.unreachable_centre = random() & Bits({D4, E4, D5, E5});
      const auto unit = [&random] { return std::int16_t(int(random() % 1023) - 511); };
      for (ZoneUnits& units : evaluation.pawn_scores.units[colour]) units = {unit(), unit()};
    }
    for (int wing = 0; wing < 2; ++wing) {
      PawnMajority& majority = evaluation.majority[wing];
      majority.kind = int(random() % 3);
      if (majority.kind == NO_MAJORITY) continue;
      majority.files = int(random() % 8);
      majority.opposing_pawns = int(random() % 8);
      const int edge = int(random() % 8);
      for (int file = 0; file < 8; ++file)
        if (wing == 0 ? file <= edge : file >= edge) majority.mask |= FileMask(file);
    }
    evaluation.openness = int(random() % 1024);
    evaluation.pawn_scores.positional = std::int16_t(random());
    evaluation.pawn_scores.reckless = std::int16_t(random());
    evaluation.pawn_scores.ending = std::int16_t(random());
  }
  Board board;
  EvaluationState evaluation;
};

}  // namespace

TEST(PawnHashEntry, EveryFieldSurvivesPackingAndUnpacking) {
  std::mt19937_64 random(20261123);
  for (int round = 0; round < 2000; ++round) {
    const RandomStructure structure(random);
    const EvaluationState& written = structure.evaluation;
    const int type = round % 2 == 0 ? int(random() % 2) : 2 + int(random() % 14);
    EvaluationState read;
    ReadPawnEntry(BuildPawnEntry(written, 0x1234, type), structure.board, read);
    ASSERT_TRUE(read.pawn_entry_from_hash);
    ASSERT_EQ(Fields(read), Fields(written)) << "round " << round;
    if (type <= MIDDLEGAME) {
      ASSERT_EQ(read.pawn_scores.positional, written.pawn_scores.positional) << round;
      ASSERT_EQ(read.pawn_scores.reckless, written.pawn_scores.reckless) << round;
      ASSERT_EQ(UnitsText(read.pawn_scores.units), UnitsText(written.pawn_scores.units)) << round;
    } else {
      ASSERT_EQ(read.pawn_scores.ending, written.pawn_scores.ending) << "round " << round;
    }
  }
  // A wing without a majority packs to nothing, whatever its other fields say.
  const PawnMajority none[2] = {{NO_MAJORITY, 3, 2, FileMask(0)}, {}};
  EXPECT_EQ(PackCounts(none, 0), 0u);
}

// The pawn terms of a position computed afresh (and stored), then read from the table.
TEST(PawnHashHit, GivesTheTermsOfAFreshComputation) {
  // The pawn terms, with what they leave in the state, as the full evaluation computes them.
  const auto terms = [](EvaluationState& evaluation, const Board& board, int type) {
    PreparePawns(evaluation, board, type);
    const ScorePair passed = PassedPawnTerm(evaluation);
    PrepareFileData(evaluation, board);
    PrepareStructure(evaluation, board);
    const ScorePair structure = type <= MIDDLEGAME
                                    ? PawnStructureTerm(evaluation, board, type)
                                    : ScorePair(PawnEndingTerm(evaluation, board), 0);
    return std::tuple(passed, structure, StateText(evaluation));
  };
  int hits = 0;
  for (const Board& board : RandomPositions(1500, 7)) {
    const int type = ClassifyPosition(board, UNCLASSIFIED);
    if (type == ENDGAME_NO_PAWNS_LEFT) continue;
    EvaluationState fresh, again;
    PAWN_HASH_TABLE.Clear();
    const auto computed = terms(fresh, board, type);
    ASSERT_FALSE(fresh.pawn_entry_from_hash);
    PAWN_HASH_TABLE.Store(BuildPawnEntry(fresh, board.PawnKey(), type));
    EXPECT_EQ(terms(again, board, type), computed);
    ASSERT_TRUE(again.pawn_entry_from_hash);
    ++hits;
    EXPECT_EQ(Fields(again), Fields(fresh));
    for (int colour = WHITE; colour <= BLACK; ++colour) {
      const PawnBlock &x = again.pawns[colour], &y = fresh.pawns[colour];
      // The lists are filled where the hit left them.
      EXPECT_EQ(std::tie(x.pawn_count, x.frontmost_passed, x.controlled, x.doubled),
                std::tie(y.pawn_count, y.frontmost_passed, y.controlled, y.doubled));
    }
    if (HasFailure()) FAIL() << "type " << type << ", position key " << board.Key();
  }
  EXPECT_GT(hits, 1000);
  PAWN_HASH_TABLE.Clear();
}
