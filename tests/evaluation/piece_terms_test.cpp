// Piece terms worked out by hand in small positions where only a few rules apply. Openness is 8
// and the endgame factor 0 unless a case says otherwise; units start at 0.
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

struct RookCase {
  const char* what;
  const char* fen;
  ScorePair expected;
  Units units[3];
};

}  // namespace

TEST(RookTerm, FilesSeventhRankAndLockedRooks) {
  const RookCase cases[] = {
      // 14 pawns: base 60 - 12 * 7 = -24, so (-9, -39). Sees d2..d8: 7 squares (+4, +10). The
      // only open file, no enemy rook on it: (+35, +36), centre +8/+8.
      // (-9 + 4 + 35, -39 + 10 + 36) = (30, 7).
      {"only open file", "6k1/ppp1pppp/8/8/8/8/PPP1PPPP/3R2K1 w - - 0 1", {30, 7},
       {{0, 0}, {0, 0}, {8, 8}}},
      // As above, but an enemy rook on the file: own 1 <= enemy 1: (+25, +30), centre +12/+4.
      // (-9 + 4 + 25, -39 + 10 + 30) = (20, 1).
      {"open file contested", "3r2k1/ppp1pppp/8/8/8/8/PPP1PPPP/3R2K1 w - - 0 1", {20, 1},
       {{0, 0}, {0, 0}, {12, 4}}},
      // 6 pawns: base 60 - 36 = 24, (39, 9). b8 and b6..b1: 7 squares (+4, +10). Open, one of
      // five open files: (+7, +15), queenside +6/+3. Seventh rank, king on the eighth:
      // (+28, +50), centre attack +14. (39 + 4 + 7 + 28, 9 + 10 + 15 + 50) = (78, 84).
      {"seventh rank", "6k1/1R3ppp/8/8/8/8/5PPP/6K1 w - - 0 1", {78, 84},
       {{6, 3}, {0, 0}, {14, 0}}},
      // One pawn: base 60, (75, 45). Sees only a2: (-4, -10). Own pawn ahead on a2, none of the
      // enemy: closed. o = 1 < 3: (-6, -14), queenside attack -4; b1..f1 are free first-rank
      // squares on files without own pawns: (+6, +12) and the 4 back.
      // (75 - 4 - 6 + 6, 45 - 10 - 14 + 12) = (71, 33).
      {"behind its own pawn", "6k1/8/8/8/8/8/P7/R5K1 w - - 0 1", {71, 33},
       {{0, 0}, {0, 0}, {0, 0}}},
      // Two pawns: base 48, (63, 33). Sees h2: (-4, -10). Closed, o = 1: (-6, -14), attack -4;
      // its rank reaches only its own king: (-2, -6), attack -5; no castling, king and rook in
      // the corner, no way out: (-50, -70), attack -8, defence -5.
      // (63 - 4 - 6 - 2 - 50, 33 - 10 - 14 - 6 - 70) = (1, -67).
      {"locked in by its king", "6k1/8/8/8/8/8/6PP/6KR w - - 0 1", {1, -67},
       {{0, 0}, {-17, -5}, {0, 0}}},
      // Two pawns: base 48, (63, 33). Sees e2..e7 up to the enemy pawn: 6 squares (+3, +8).
      // Half open: (+12, +18), centre attack +6. On the enemy king's file: (+15, +38), attack on
      // the king's wing (centre) +13. (63 + 3 + 12 + 15, 33 + 8 + 18 + 38) = (93, 97).
      {"half open on the king's file", "4k3/4p3/8/8/8/8/P7/4R1K1 w - - 0 1", {93, 97},
       {{0, 0}, {0, 0}, {19, 0}}},
  };
  for (const RookCase& c : cases) {
    SCOPED_TRACE(c.what);
    const Board board = BoardFromFen(c.fen);
    EvaluationState evaluation;
    PrepareForPieceTerms(evaluation, board);
    EXPECT_EQ(RookTerm(evaluation, board, WHITE), c.expected);
    EXPECT_EQ(evaluation.endgame_trend, 24);
    for (int wing = 0; wing < 3; ++wing) ExpectUnits(evaluation, WHITE, wing, c.units[wing]);
  }
}

TEST(RookTerm, ClosedFileKeepsTheRookFromTheKingsFile) {
  // The same rook with its own pawn ahead on the enemy king's file gets none of the king file
  // bonus and no half-open bonus: only the closed-file rows.
  const Board board = BoardFromFen("4k3/4p3/8/8/8/8/4P3/4R1K1 w - - 0 1");
  EvaluationState evaluation;
  PrepareForPieceTerms(evaluation, board);
  // Two pawns: (63, 33). Sees e2: (-4, -10). o = 1: (-6, -14), attack -4; f1 is free on a file
  // without own pawns: (+6, +12), attack +4. (63 - 4 - 6 + 6, 33 - 10 - 14 + 12) = (59, 21).
  EXPECT_EQ(RookTerm(evaluation, board, WHITE), ScorePair(59, 21));
  ExpectUnits(evaluation, WHITE, CENTRE, {0, 0});
}

TEST(RookTerm, RooksThatSeeEachOther) {
  // Walked from h1 down: h1 sees a1 along the first rank (+8, +12) and centre defence +2; a1 then sees only a rook
  // already walked. Both: no pawns, base 60, (75, 45); seven squares up the file (+4, +10);
  // open, one of eight open files: (+7, +15), attack +6, defence +3 on their wings.
  // h1: (75 + 4 + 8 + 7, 45 + 10 + 12 + 15) = (94, 82); a1: (86, 70). Sum (180, 152).
  const Board board = BoardFromFen("4k3/8/8/8/8/8/4K3/R6R w - - 0 1");
  EvaluationState evaluation;
  PrepareForPieceTerms(evaluation, board);
  EXPECT_EQ(RookTerm(evaluation, board, WHITE), ScorePair(180, 152));
  ExpectUnits(evaluation, WHITE, QUEENSIDE, {6, 3});
  ExpectUnits(evaluation, WHITE, KINGSIDE, {6, 3});
  ExpectUnits(evaluation, WHITE, CENTRE, {0, 2});
  EXPECT_EQ(evaluation.endgame_trend, 48);
}

TEST(KnightTerm, OutpostHeldByAPawnThatIsNotPassed) {
  const Board board = BoardFromFen("4k3/8/2p5/4N3/3P4/8/8/4K3 w - - 0 1");
  {
    // Two pawns: pawn bonus 6 * 1 - 30 = -24. Tables at e5: (22, 38), centre attack +10.
    // d4 defends it: (+2, 0), defence +1. Fourth rank or beyond, no enemy pawn can chase it:
    // (+9, +14). Fifth rank, file ahead free, d4 not passed (c6): outpost with one pawn
    // (+13, +18), attack +6, defence +3.
    // (-24 + 22 + 2 + 9 + 13, -24 + 38 + 0 + 14 + 18) = (22, 46).
    EvaluationState evaluation;
    PrepareForPieceTerms(evaluation, board);
    EXPECT_EQ(KnightTerm(evaluation, board, WHITE, false), ScorePair(22, 46));
    ExpectUnits(evaluation, WHITE, CENTRE, {16, 4});
  }
  {
    // Middlegame tables at e5: (26, 44). Three squares from the king on its own wing: no
    // distance penalty. Openness 8: reckless +2, attack +1. Defended (+2, +2), unassailable
    // (+13, +23), outpost (+13, +20) with attack +7, defence +4.
    // (-24 + 26 + 2 + 13 + 13, -24 + 44 + 2 + 2 + 23 + 20) = (30, 67).
    EvaluationState evaluation;
    PrepareForPieceTerms(evaluation, board);
    EXPECT_EQ(KnightTerm(evaluation, board, WHITE, true), ScorePair(30, 67));
    ExpectUnits(evaluation, WHITE, CENTRE, {18, 5});
  }
}

TEST(KnightMobilityTerm, SafeSquaresByNumber) {
  // A knight on a1 reaches b3 and c2. Squares watched by the enemy count only where an own pawn
  // holds them; occupied squares never.
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

TEST(BishopTerm, BadBishopBehindFixedPawns) {
  // Tables at e2: (14, 18). It reaches d1 f1 d3 c4 b5 a6 f3 g4 h5; inside the ring: e2 d3 c4 b5
  // f3 g4, n = 6: (-2, -6); ring squares d3 f3 c4: (3 / 2, 2 * 3) = (1, 6). Own pawns e4 and
  // d5 are fixed on its colour: bad, n > 1: (-8, -10), centre -8/-6. No pair, bad, no knights:
  // (-15, -17), centre -4/-4, trend -5. Black's defended pawn e5 is on the other colour.
  // (14 - 2 + 1 - 8 - 15, 18 - 6 + 6 - 10 - 17) = (-10, -9).
  const Board board = BoardFromFen("4k3/8/3p4/3Pp3/4P3/8/4B3/4K3 w - - 0 1");
  EvaluationState evaluation;
  PrepareForPieceTerms(evaluation, board);
  EXPECT_EQ(BishopTerm(evaluation, board, WHITE), ScorePair(-10, -9));
  ExpectUnits(evaluation, WHITE, CENTRE, {-12, -10});
  EXPECT_EQ(evaluation.endgame_trend, -5);
}

TEST(BishopTerm, ClearLongDiagonalSkipsTheBadBishopTest) {
  // Tables at g2: (20, 22). g3 holds the hole; home g2 without pawn; no enemy bishop: (+8, +10);
  // the long diagonal is free of pawns: (+24, +24), kingside defence +5, queenside attack +6.
  // Mobility: g2 f3 e4 d5 c6 b7 inside the ring, n = 6: (-2, -6); centre e4 d5, ring f3 c6,
  // deep c6 b7 a8: (2 + 1 + 0, 8 + 4 + 3). The fixed pawns d3 and c4 on its colour don't count.
  // (20 + 8 + 24 - 2 + 3, 22 + 10 + 24 - 6 + 15) = (53, 65).
  const Board board = BoardFromFen("4k3/8/8/2p5/2Pp4/3P2P1/5PBP/6K1 w - - 0 1");
  EvaluationState evaluation;
  PrepareForPieceTerms(evaluation, board);
  EXPECT_EQ(BishopTerm(evaluation, board, WHITE), ScorePair(53, 65));
  ExpectUnits(evaluation, WHITE, QUEENSIDE, {6, 0});
  ExpectUnits(evaluation, WHITE, KINGSIDE, {0, 5});
  ExpectUnits(evaluation, WHITE, CENTRE, {0, 0});
  EXPECT_EQ(evaluation.endgame_trend, 0);
}

TEST(BishopTerm, TrappedOnTheRimByADefendedPawn) {
  // The bishop on a7 sees b8 and b6 only. Table (-2, 4). Inside the ring nothing but b6, which
  // holds a pawn: n = 0: (-24, -38); deep b8 and b6: (2 / 4, 2) = (0, 2). Trapped by b6,
  // defended by c7: (-180, -180). Black's defended b6 is on the bishop's colour: reckless -2.
  // (-2 - 24 + 0 - 180, 4 - 38 + 2 - 180 - 2) = (-206, -214).
  const Board board = BoardFromFen("4k3/B1p5/1p6/8/8/8/8/4K3 w - - 0 1");
  EvaluationState evaluation;
  PrepareForPieceTerms(evaluation, board);
  EXPECT_EQ(BishopTerm(evaluation, board, WHITE), ScorePair(-206, -214));
}

TEST(QueenTerm, PinnedPieceInTheOpeningAndMiddlegame) {
  const Board board = BoardFromFen("3rk3/8/8/8/8/8/3N4/3QK3 w - - 0 1");
  {
    // Table at d1: (4, 4). Centre attack 6 + 10. The knight on d2 is pinned by the rook on d8:
    // (-30, -30). On its first rank it has no safe-square rows. (4 - 30, 4 - 30).
    EvaluationState evaluation;
    PrepareForPieceTerms(evaluation, board);
    EXPECT_EQ(QueenTerm(evaluation, board, WHITE, false), ScorePair(-26, -26));
    ExpectUnits(evaluation, WHITE, CENTRE, {16, 0});
  }
  {
    // Table at d1: (-6, -6). Centre attack 6 + 12. Pinned knight (-30, -30). Black can't castle:
    // Manhattan distance to e8 is 8: (-8, -24), attack at the king -1.
    // (-6 - 30 - 8, -6 - 30 - 24) = (-44, -60).
    EvaluationState evaluation;
    PrepareForPieceTerms(evaluation, board);
    EXPECT_EQ(QueenTerm(evaluation, board, WHITE, true), ScorePair(-44, -60));
    ExpectUnits(evaluation, WHITE, CENTRE, {17, 0});
  }
}

TEST(QueenTerm, SafeSquaresOfAQueenOutInTheOpening) {
  // A queen on d4 (table (0, 4), centre attack 16) loses (5, 2) for being out, then by the
  // squares that no enemy piece but a queen watches. A queen on d2 never gets these rows.
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
  // Both sides: knight and bishop at home on both wings, (-18, -45) and (-14, -40) each, which
  // cancel. White to move: (+6, +14), centre +4/+6.
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
  // White: g3 pushed, bishop f1 at home (with the g1 knight gone): (-8, -14), kingside defence
  // -4; knight b1 and bishop c1: (-18, -45). Black to move: (-6, -14) for White.
  // (-8 - 18 - 6, -14 - 45 - 14) = (-32, -73).
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
  // The initial position with kings' and pawns' attacks alone: equal counts, pair (0, 0), no
  // centre units. Neither side reaches the other's camp on either wing: attack -4, the other's
  // defence +6. White's men on ranks 1 to 3 without the king: f1 g1 h1 e2..h2 on files e to h
  // take 14 off the queenside attack, a1..d1 a2..d2 take 16 off the kingside attack.
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
    // Ranks 3 to 5, 24 squares, and for Black the same less its lowest squares. Neither reaches
    // the other's camp in a way that touches the centre units.
    const Bitboard middle = 0x000000FFFFFF0000ULL;
    const int dropped = 24 - c.black_squares;
    evaluation.attacked[WHITE] = middle;
    evaluation.attacked[BLACK] = middle & (~Bitboard{0} << (16 + dropped));
    EXPECT_EQ(SpaceTerm(evaluation, board), ScorePair(2 * dropped, 4 * dropped));
    EXPECT_EQ(evaluation.zone_units[WHITE][CENTRE].attack, c.centre_attack);
    EXPECT_EQ(evaluation.zone_units[BLACK][CENTRE].attack, 0);
  }
}
