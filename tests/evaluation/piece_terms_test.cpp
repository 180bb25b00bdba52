// Piece terms worked out by hand in small positions. Openness 8, endgame factor 0, units from 0.
#include "evaluation/piece_terms.h"

#include <gtest/gtest.h>

#include "evaluation/wings.h"
#include "piece_term_setup.h"
#include "support/board_from_fen.h"

namespace {

struct Units {
  int attack;
  int defence;
};

void ExpectUnits(const EvaluationState& evaluation, int colour, int wing, Units expected) {
  EXPECT_EQ(evaluation.zone_units[colour][wing].attack, expected.attack) << "wing " << wing;
  EXPECT_EQ(evaluation.zone_units[colour][wing].defence, expected.defence) << "wing " << wing;
}

struct TermCase {
  const char* what;
  const char* fen;
  ScorePair expected;
  Units units[3];  // queenside, kingside, centre
  int trend;
};

void ExpectTerm(const TermCase& c, ScorePair (*term)(EvaluationState&, const Board&, int)) {
  SCOPED_TRACE(c.what);
  const Board board = BoardFromFen(c.fen);
  EvaluationState evaluation;
  PrepareForPieceTerms(evaluation, board);
  EXPECT_EQ(term(evaluation, board, WHITE), c.expected);
  EXPECT_EQ(evaluation.endgame_trend, c.trend);
  for (int wing = 0; wing < 3; ++wing) ExpectUnits(evaluation, WHITE, wing, c.units[wing]);
}

}  // namespace

// Base by pawns (60 - 12 per pawn over two), then reach, files, seventh rank, king's file.
TEST(RookTerm, FilesSeventhRankKingsFileAndLockedRooks) {
  const TermCase cases[] = {
      // 14 pawns (-9, -39); d2..d8 (+4, +10); only open file, uncontested (+35, +36).
      {"only open file", "6k1/ppp1pppp/8/8/8/8/PPP1PPPP/3R2K1 w - - 0 1", {30, 7},
       {{0, 0}, {0, 0}, {8, 8}}, 24},
      // As above, contested by the enemy rook: (+25, +30) instead.
      {"open file contested", "3r2k1/ppp1pppp/8/8/8/8/PPP1PPPP/3R2K1 w - - 0 1", {20, 1},
       {{0, 0}, {0, 0}, {12, 4}}, 24},
      // 6 pawns (39, 9); 7 squares (+4, +10); one of five open files (+7, +15); 7th (+28, +50).
      {"seventh rank", "6k1/1R3ppp/8/8/8/8/5PPP/6K1 w - - 0 1", {78, 84},
       {{6, 3}, {0, 0}, {14, 0}}, 24},
      // (75, 45); sees a2 (-4, -10); closed, o = 1 (-6, -14); free first rank b1..f1 (+6, +12).
      {"behind its own pawn", "6k1/8/8/8/8/8/P7/R5K1 w - - 0 1", {71, 33},
       {{0, 0}, {0, 0}, {0, 0}}, 24},
      // (63, 33) - (4, 10) closed (6, 14), rank blocked (2, 6), shut in the corner (50, 70).
      {"locked in by its king", "6k1/8/8/8/8/8/6PP/6KR w - - 0 1", {1, -67},
       {{0, 0}, {-17, -5}, {0, 0}}, 24},
      // (63, 33); e2..e7 (+3, +8); half open (+12, +18); the enemy king's file (+15, +38).
      {"half open on the king's file", "4k3/4p3/8/8/8/8/P7/4R1K1 w - - 0 1", {93, 97},
       {{0, 0}, {0, 0}, {19, 0}}, 24},
      // Closed on the king's file gets no king file bonus: (63 - 4 - 6 + 6, 33 - 10 - 14 + 12).
      {"closed on the king's file", "4k3/4p3/8/8/8/8/4P3/4R1K1 w - - 0 1", {59, 21},
       {{0, 0}, {0, 0}, {0, 0}}, 24},
      // h1 sees a1 (+8, +12): (75 + 4 + 8 + 7, 45 + 10 + 12 + 15); a1 sees a walked rook: (86, 70).
      {"rooks that see each other", "4k3/8/8/8/8/8/4K3/R6R w - - 0 1", {180, 152},
       {{6, 3}, {6, 3}, {0, 2}}, 48},
  };
  for (const TermCase& c : cases) ExpectTerm(c, RookTerm);
}

TEST(BishopTerm, BadLongDiagonalAndTrapped) {
  const TermCase cases[] = {
      // (14, 18); n = 6 (-2, -6); ring (1, 6); bad behind e4 d5 (-8, -10); no pair (-15, -17).
      {"bad behind fixed pawns", "4k3/8/3p4/3Pp3/4P3/8/4B3/4K3 w - - 0 1", {-10, -9},
       {{0, 0}, {0, 0}, {-12, -10}}, -5},
      // (20, 22); hole (+8, +10); free long diagonal (+24, +24); mobility (-2 + 3, -6 + 15).
      {"clear long diagonal", "4k3/8/8/2p5/2Pp4/3P2P1/5PBP/6K1 w - - 0 1", {53, 65},
       {{6, 0}, {0, 5}, {0, 0}}, 0},
      // (-2, 4); n = 0 (-24, -38); deep (0, 2); trapped by defended b6 (-180, -180); reckless -2.
      {"trapped on the rim", "4k3/B1p5/1p6/8/8/8/8/4K3 w - - 0 1", {-206, -214},
       {{0, 0}, {0, 0}, {0, 0}}, 0},
  };
  for (const TermCase& c : cases) ExpectTerm(c, BishopTerm);
}

TEST(KnightAndQueenTerm, OpeningAndMiddlegame) {
  const struct {
    const char* fen;
    bool knight, middlegame;
    ScorePair expected;
    Units centre;
  } cases[] = {
      // (-24, -24); e5 (22, 38); defended (+2, 0); unassailable (+9, +14); outpost (+13, +18)
      {"4k3/8/2p5/4N3/3P4/8/8/4K3 w - - 0 1", true, false, {22, 46}, {16, 4}},
      // e5 (26, 44); reckless +2; defended (+2, +2); unassailable (+13, +23); outpost (+13, +20).
      {"4k3/8/2p5/4N3/3P4/8/8/4K3 w - - 0 1", true, true, {30, 67}, {18, 5}},
      // d1 (4, 4); the knight pinned by d8 (-30, -30); no safe-square rows on the first rank.
      {"3rk3/8/8/8/8/8/3N4/3QK3 w - - 0 1", false, false, {-26, -26}, {16, 0}},
      // d1 (-6, -6); pinned (-30, -30); 8 squares from e8 (-8, -24), attack -1.
      {"3rk3/8/8/8/8/8/3N4/3QK3 w - - 0 1", false, true, {-44, -60}, {17, 0}},
  };
  for (const auto& c : cases) {
    const Board board = BoardFromFen(c.fen);
    EvaluationState evaluation;
    PrepareForPieceTerms(evaluation, board);
    EXPECT_EQ(c.knight ? KnightTerm(evaluation, board, WHITE, c.middlegame)
                       : QueenTerm(evaluation, board, WHITE, c.middlegame),
              c.expected)
        << c.fen << " " << c.middlegame;
    ExpectUnits(evaluation, WHITE, CENTRE, c.centre);
  }
}

TEST(KnightMobilityTerm, SafeSquaresByNumber) {
  // A knight on a1 reaches b3 and c2; watched squares count only where an own pawn holds them.
  const Board board = BoardFromFen("4k3/8/8/8/8/8/8/N3K3 w - - 0 1");
  const struct {
    Bitboard watched;
    ScorePair expected;
    int units;
  } cases[] = {
      {0, {2, 4}, 0},
      {SquareBit(B3), {-2, -4}, -3},
      {SquareBit(B3) | SquareBit(C2), {-6, -12}, -6},
  };
  for (const auto& c : cases) {
    EvaluationState evaluation;
    PrepareForPieceTerms(evaluation, board);
    evaluation.attacked_without_queens[BLACK] = c.watched;
    EXPECT_EQ(KnightMobilityTerm(evaluation, board), c.expected);
    ExpectUnits(evaluation, WHITE, CENTRE, {c.units, c.units});
  }
}

TEST(QueenTerm, SafeSquaresOfAQueenOutInTheOpening) {
  // Out on d4 (0, 4) - (5, 2), then by the squares no enemy piece but a queen watches.
  const Bitboard everything = ~Bitboard{0};
  const struct {
    const char* fen;
    Bitboard watched;
    ScorePair expected;
    Units centre;
  } cases[] = {
      // None: (-70, -110), attack -16, defence -10.
      {"4k3/8/8/8/3Q4/8/8/4K3 w - - 0 1", everything, {-75, -108}, {0, -10}},
      // One: (-40, -70), attack -12, defence -8.
      {"4k3/8/8/8/3Q4/8/8/4K3 w - - 0 1", everything & ~SquareBit(A7), {-45, -68}, {4, -8}},
      // Two, neither on the first two ranks: (-18, -30), defence -4.
      {"4k3/8/8/8/3Q4/8/8/4K3 w - - 0 1", everything & ~SquareBit(A7) & ~SquareBit(G7),
       {-23, -28}, {16, -4}},
      // Two, one on the second rank: (-8, -10), defence -2.
      {"4k3/8/8/8/3Q4/8/8/4K3 w - - 0 1", everything & ~SquareBit(A7) & ~SquareBit(B2),
       {-13, -8}, {16, -2}},
      // One on the first rank too: nothing more.
      {"4k3/8/8/8/3Q4/8/8/4K3 w - - 0 1",
       everything & ~SquareBit(A7) & ~SquareBit(B2) & ~SquareBit(A1), {-5, 2}, {16, 0}},
      // At home on d2 (table (6, 6)): no rows at all.
      {"4k3/8/8/8/8/8/3Q4/4K3 w - - 0 1", everything, {6, 6}, {16, 0}},
  };
  for (const auto& c : cases) {
    const Board board = BoardFromFen(c.fen);
    EvaluationState evaluation;
    PrepareForPieceTerms(evaluation, board);
    evaluation.attacked_without_queens[BLACK] = c.watched;
    EXPECT_EQ(QueenTerm(evaluation, board, WHITE, false), c.expected);
    ExpectUnits(evaluation, WHITE, CENTRE, c.centre);
  }
}

TEST(DevelopmentTerm, HomePiecesCancelAndTheMoveCounts) {
  // Home pieces on both wings cancel; White to move (+6, +14), centre +4/+6.
  const Board board = BoardFromFen("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1");
  EvaluationState evaluation;
  PrepareForPieceTerms(evaluation, board);
  EXPECT_EQ(DevelopmentTerm(evaluation, board), ScorePair(6, 14));
  for (int colour = WHITE; colour <= BLACK; ++colour) {
    ExpectUnits(evaluation, colour, QUEENSIDE, {-4, -8});
    ExpectUnits(evaluation, colour, KINGSIDE, {-4, -6});
  }
  ExpectUnits(evaluation, WHITE, CENTRE, {4, 6});
  ExpectUnits(evaluation, BLACK, CENTRE, {0, 0});
}

TEST(DevelopmentTerm, PushedFianchettoPawnWithTheBishopAtHome) {
  // g3 pushed with f1 at home (-8, -14); b1 and c1 at home (-18, -45); Black to move (-6, -14).
  const Board board = BoardFromFen("4k3/8/8/8/8/6P1/5P1P/1NB1KB2 b - - 0 1");
  EvaluationState evaluation;
  PrepareForPieceTerms(evaluation, board);
  EXPECT_EQ(DevelopmentTerm(evaluation, board), ScorePair(-32, -73));
  ExpectUnits(evaluation, WHITE, KINGSIDE, {0, -4});
  ExpectUnits(evaluation, BLACK, CENTRE, {4, 6});
}

TEST(OpeningFormationTerm, KnightsBeforeTheirPawnsAgainstTheCentre) {
  const struct {
    const char* fen;
    ScorePair expected;
  } cases[] = {
      // Knights c3 and f3 before c2 and f2: (-4, -8).
      {"4k3/8/8/8/8/2N2N2/2P2P2/4K3 w - - 0 1", {-4, -8}},
      // With e3 against d5: (-10, -20) more.
      {"4k3/8/8/3p4/8/2N1PN2/2P2P2/4K3 w - - 0 1", {-14, -28}},
      // With d4 against e4 too: (-25, -35) instead.
      {"4k3/8/8/3p4/3Pp3/2N1PN2/2P2P2/4K3 w - - 0 1", {-29, -43}},
      // A third knight breaks the pattern.
      {"4k3/8/8/8/8/2N2N2/2P2P2/4K1N1 w - - 0 1", {0, 0}},
  };
  for (const auto& c : cases) {
    const Board board = BoardFromFen(c.fen);
    EvaluationState evaluation;
    PrepareForPieceTerms(evaluation, board);
    EXPECT_EQ(OpeningFormationTerm(evaluation, board), c.expected) << c.fen;
  }
}

TEST(SpaceTerm, EqualReachGivesNoCentreUnits) {
  // Equal reach: no pair. No wing reached: attack -4, defence +6; own men on ranks 1-3 cost the
  // queenside attack 14 (files e-h) and the kingside attack 16 (files a-d).
  const Board board = BoardFromFen("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1");
  EvaluationState evaluation;
  PrepareForPieceTerms(evaluation, board);
  EXPECT_EQ(SpaceTerm(evaluation, board), ScorePair(0, 0));
  for (int colour = WHITE; colour <= BLACK; ++colour) {
    ExpectUnits(evaluation, colour, QUEENSIDE, {-18, 6});
    ExpectUnits(evaluation, colour, KINGSIDE, {-20, 6});
    ExpectUnits(evaluation, colour, CENTRE, {0, 0});
  }
}

TEST(SpaceTerm, ALeadInSquaresReached) {
  // Set by hand: White reaches 24 squares, Black 20 or 22. 20 * 24 > 21 * 20 and 7 * 24 > 8 * 20:
  // +20; against 22: 20 * 24 > 21 * 22 but 7 * 24 <= 8 * 22: +12; against 23: nothing.
  const Board board = BoardFromFen("4k3/8/8/8/8/8/8/4K3 w - - 0 1");
  const struct {
    int black_squares;
    int centre_attack;
  } cases[] = {{20, 20}, {22, 12}, {23, 0}};
  for (const auto& c : cases) {
    EvaluationState evaluation;
    PrepareForPieceTerms(evaluation, board);
    // Ranks 3 to 5 for White, the same less the lowest squares for Black.
    const Bitboard middle = 0x000000FFFFFF0000ULL;
    const int dropped = 24 - c.black_squares;
    evaluation.attacked[WHITE] = middle;
    evaluation.attacked[BLACK] = middle & (~Bitboard{0} << (16 + dropped));
    EXPECT_EQ(SpaceTerm(evaluation, board), ScorePair(2 * dropped, 4 * dropped));
    EXPECT_EQ(evaluation.zone_units[WHITE][CENTRE].attack, c.centre_attack);
    EXPECT_EQ(evaluation.zone_units[BLACK][CENTRE].attack, 0);
  }
}
