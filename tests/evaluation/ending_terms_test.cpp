// The ending evaluation: its frame (bounds, lazy exits, scaling), the terms and knowledge of each
// kind of ending, and the pawn races, worked out by hand in small positions.
#include <gtest/gtest.h>

#include <cstdint>
#include <tuple>
#include <vector>

#include "bitbases/special_bitbases.h"
#include "evaluation/ending_evaluators.h"
#include "evaluation/ending_frame.h"
#include "evaluation/evaluate.h"
#include "evaluation/material.h"
#include "evaluation/minor_piece_endings.h"
#include "evaluation/passed_pawn_quick.h"
#include "evaluation/pawn_endings.h"
#include "evaluation/pawn_races.h"
#include "evaluation/queen_endings.h"
#include "evaluation/rook_endings.h"
#include "search/hash.h"
#include "search/position_type.h"
#include "support/board_from_fen.h"
#include "support/random_positions.h"
#include "term_setup.h"

namespace {

// Every term below answers for `colour`, so that the colour-flipped twin of a position must give
// the same answer for Black as the position gives for White.
using Term = int (*)(EvaluationState&, const Board&, int colour);

int Sign(int colour) { return colour == WHITE ? 1 : -1; }

template <auto TERM>
int FromWhite(EvaluationState& e, const Board& b, int c) { return Sign(c) * TERM(e, b); }
template <auto TERM>
int ForColour(EvaluationState& e, const Board& b, int c) { return TERM(e, b, c); }
template <auto TERM>
int AsIs(EvaluationState& e, const Board& b, int) { return TERM(e, b); }

constexpr int NOT_KNOWN = -99999;  // the special knowledge does not apply
template <auto KNOWLEDGE>
int Knowledge(EvaluationState&, const Board& b, int c) {
  int value = 0;
  return KNOWLEDGE(b, value) ? Sign(c) * value : NOT_KNOWN;
}

constexpr Term QUICK = FromWhite<PassedPawnQuickTerm>, ROOKS = ForColour<EndingRookTerm>,
               LOOSE = FromWhite<LoosePawnsTerm>, NO_PAWNS = AsIs<EvaluateNoPawns>,
               ROOK_AND_PAWN = Knowledge<RookEndingKnowledge>,
               BISHOP_AND_PAWNS = Knowledge<BishopAndPawnsEnding>;

int Knights(EvaluationState& e, const Board& b, int c) {
  const int value = EndingKnightsTerm(e, b);
  // Every knight of these positions attacks c6 (c3 in the twin); later terms read the attacks.
  EXPECT_NE(e.attacked[c] & SquareBit(c == WHITE ? C6 : C3), 0u) << "attacks of the knight";
  return Sign(c) * value;
}
int Bishops(EvaluationState& e, const Board& b, int c) {
  bool opposite = true;
  const int value = EndingBishopsTerm(e, b, opposite);
  EXPECT_FALSE(opposite);
  return Sign(c) * value;
}
int OppositeBishops(EvaluationState& e, const Board& b, int) {
  e.has_bishop_pair[WHITE] = HasBishopPair(b.white);
  e.has_bishop_pair[BLACK] = HasBishopPair(b.black);
  bool opposite = false;
  EndingBishopsTerm(e, b, opposite);
  return opposite;
}
int Queens(EvaluationState& e, const Board& b, int c) {
  const int value = EndingQueenTerm(e, b, c, WhiteMaterial(b));
  EXPECT_NE(e.attacked[c], 0u) << "attacks of the queen";
  return value;
}
int ChecksScaleALoss(EvaluationState&, const Board& b, int) { return ScaleByChecks(b, -200); }
// 1 when `colour` can no longer win, -1 when the other side can't, 0 when both can.
int CannotWin(EvaluationState&, const Board& b, int c) {
  const MaterialBound bound = FindMaterialBound(b);
  return bound == BOTH_CAN_WIN ? 0 : (bound == WHITE_CANNOT_WIN) == (c == WHITE) ? 1 : -1;
}
template <int LEAD, bool OPPOSITE_BISHOPS>
int Scaled(EvaluationState&, const Board& b, int c) {
  return Sign(c) * ScaleEnding(Sign(c) * LEAD, b, OPPOSITE_BISHOPS);
}
int Kings(EvaluationState&, const Board& b, int c) { return Sign(c) * EndingKingTerm(b); }
int BarePawns(EvaluationState& e, const Board& b, int c) {
  PawnRaceMode mode = NO_RACE;
  return Sign(c) * BarePawnsTerm(e, b, mode);
}
// 1 when the pieces must decide a race that the pawns of `colour` lose, -1 for the other side's.
int RaceLeftToThePieces(EvaluationState& e, const Board& b, int c) {
  PawnRaceMode mode = NO_RACE;
  BarePawnsTerm(e, b, mode);
  return mode == NO_RACE ? 0 : (mode == WHITE_RACE) == (c == WHITE) ? 1 : -1;
}

struct TermCase {
  const char* fen;
  Term term;
  int value;
};

const TermCase TERMS[] = {
    // A pawn ending with a passed pawn: e2 7 * 30 / 8 = 26; kings: own to the pawn 1 (+4),
    // enemy to it 6 (+6), own to e8 7 (-6), enemy on e8 (-5).
    {"4k3/8/8/8/8/8/4P3/4K3 w - - 0 1", QUICK, 26 + 4 + 6 - 6 - 5},
    // b6 9 * 115 / 8; rooks behind +12, ahead -4 and -4 * 40 / 8; kings 5, 5, 7, 5.
    {"6k1/1r6/1P6/8/8/8/8/1R4K1 w - - 0 1", QUICK, 129 + 12 - 4 - 20 - 3 + 3 - 6 + 12},
    // e5, the path free: 7 * 85 / 8 + 6; kings 4, 4, 7, 4.
    {"8/8/8/k3P3/8/8/8/K7 w - - 0 1", QUICK, 74 + 6 - 2 - 0 - 6 + 5},

    // Rook and pawn against rook: the defending king on the queening square.
    {"4k3/8/8/8/4P3/8/r7/4K2R w - - 0 1", ROOK_AND_PAWN, 10},
    // Lucena, the defender cut off three files, his rook beside the pawn: 350 + 4 * 3 - |0 - 24|.
    {"3K4/3P2k1/8/8/8/8/4r3/5R2 w - - 0 1", ROOK_AND_PAWN, 350 + 12 - 24},
    {"k6r/8/4P3/8/6K1/8/8/2R5 w - - 0 1", ROOK_AND_PAWN, 8 * 4 + 250},  // cut off four files
    // Both kings at the pawn: 15 - Distance(e5, a8) + 4 * 3, the strong king in front: + 60.
    {"r7/4k3/8/4K3/4P3/8/8/7R w - - 0 1", ROOK_AND_PAWN, 15 - 4 + 12 + 60},
    // Defender away: 15 - 7 + 20 + 32 * (0 + 5 - 6) + 45; strong king cut off: - 8 * 3 - 16.
    {"2r4k/8/4P3/8/8/8/1R6/1K6 w - - 0 1", ROOK_AND_PAWN, 28 + 13 - 24 - 16},
    // The defender's king behind the pawn (up = 4 - 2): 15 - 7 + 16 - 19 + 8 * 2.
    {"r7/8/8/4P3/8/4k3/7R/7K w - - 0 1", ROOK_AND_PAWN, 5 + 16},
    {"4k3/p7/8/8/4P3/8/r7/4K2R w - - 0 1", ROOK_AND_PAWN, NOT_KNOWN},  // two pawns
    {"4k3/8/8/8/4P3/8/rr6/4K2R w - - 0 1", ROOK_AND_PAWN, NOT_KNOWN},  // two rooks against one

    // A rook on an open file: 85 - 12 * 3 each; the a-file open 14 + 12 (the only open one),
    // the h-file half open 9; Black's h7 isolated + 4.
    {"6k1/7p/8/8/8/8/1PPPPPP1/R5KR w - - 0 1", ROOKS, (49 + 14 + 12) + (49 + 9) + 4},
    // Own pawns keep file terms out; 85 - 12 each; e7 connected on the 7th + 25 + 50; b7 + 50.
    {"6k1/1R2R3/8/8/8/8/1P2P3/4K3 w - - 0 1", ROOKS, 73 + 25 + 50 + 73 + 50},
    // 85 - 24 each; e7 attacks h7 before the rook on h8, defended, but rooks doubled: + 30.
    {"6kr/1R2R2p/6p1/8/8/8/1P2P3/4K3 w - - 0 1", ROOKS, 61 + 25 + 50 + 30 + 61 + 50},
    {"6k1/8/8/8/8/8/1P2P3/1R2R1K1 w - - 0 1", ROOKS, 73 + 4 + 73},  // connected elsewhere
    {"4qk2/8/8/8/8/8/1P2P3/1R2R1K1 w - - 0 1", ROOKS, 73 + 12 + 73},  // ... against a lone queen
    {"6k1/8/8/8/r3P3/8/8/4R1K1 w - - 0 1", LOOSE, -30},  // e4 seen by both rooks
    {"6k1/8/8/8/r3P3/5K2/8/4R3 w - - 0 1", LOOSE, 0},  // next to its king
    {"6k1/8/8/8/r2NP3/8/8/4R1K1 w - - 0 1", LOOSE, 0},  // the knight shields it
    {"4k3/1r4p1/8/6R1/r3P3/8/8/4R1K1 w - - 0 1", LOOSE, 0},  // one loose pawn each
    {"6k1/8/8/8/r3P3/3P4/8/4R1K1 w - - 0 1", LOOSE, 0},  // defended by a pawn

    // Bishop and pawns: a light bishop with an a-pawn on rank index 3; the dark one draws near
    // the corner, and far from it the pawn may yet run; pawns on two files win with either.
    {"8/8/8/8/P1B5/8/8/4K2k w - - 0 1", BISHOP_AND_PAWNS, 835 + 55},
    {"8/1k6/8/8/P2B4/8/8/4K3 w - - 0 1", BISHOP_AND_PAWNS, 0},
    {"k7/8/8/8/P2B4/P7/8/4K3 b - - 0 1", BISHOP_AND_PAWNS, 0},
    {"8/8/8/8/P2B4/8/8/4K2k w - - 0 1", BISHOP_AND_PAWNS, 315 + 90 - 30 + 55},  // Loser, Winner[7]
    {"8/8/8/8/PP1B4/8/8/4K2k w - - 0 1", BISHOP_AND_PAWNS, 835 + 55 + 55},
    {"8/p7/8/8/P2B4/8/8/4K2k w - - 0 1", BISHOP_AND_PAWNS, NOT_KNOWN},  // pawns on both sides
    {"8/8/8/8/P2N4/8/8/4K2k w - - 0 1", BISHOP_AND_PAWNS, NOT_KNOWN},  // a knight
    {"8/8/8/8/3B4/8/8/4K2k w - - 0 1", BISHOP_AND_PAWNS, NOT_KNOWN},  // no pawn

    // Knights by square, pawn count (6 * n - 30) and pawns on both wings or far from them.
    {"4k3/p6p/8/8/3N4/8/P6P/4K3 w - - 0 1", Knights, 28 - 18 - 12},
    {"4k3/7p/8/8/1N6/8/7P/4K3 w - - 0 1", Knights, 16 - 24 - 8},
    {"4k3/p7/8/8/1N6/8/P7/4K3 w - - 0 1", Knights, 16 - 24},
    // Bishops: d4 12; ten squares 2 * 10 - 15; centre d4 e5 2 * 2; ring f6 c3 c5 e3 (3 * 4) >> 1.
    {"k7/8/8/8/3B4/8/8/7K w - - 0 1", Bishops, 12 + 5 + 4 + 6},
    // a7 0; no square off the rim -45; trapped by b6, shut in by c7 -180 (or -100 without c7).
    {"7k/B1p5/1p6/1P6/8/8/8/7K w - - 0 1", Bishops, 0 - 45 - 180},
    {"7k/B7/1p6/1P6/8/8/8/7K w - - 0 1", Bishops, 0 - 45 - 100},
    {"4k3/8/3b4/8/8/4B3/8/4K3 w - - 0 1", OppositeBishops, false},  // both dark
    {"4k3/8/2b5/8/8/4B3/8/4K3 w - - 0 1", OppositeBishops, true},
    {"4k3/8/2b5/8/8/4B3/8/3BK3 w - - 0 1", OppositeBishops, false},  // White has the pair
    {"4k3/8/2n5/8/8/4B3/8/4K3 w - - 0 1", OppositeBishops, false},

    // Queens by square, Manhattan distances to the kings, a pin, the seventh, safe checks.
    {"4k3/8/8/8/3Q4/8/8/4K3 w - - 0 1", Queens, 7 - 2 * 9},
    {"3rk3/8/8/8/3N4/8/8/3QK3 w - - 0 1", Queens, -2 - 30 - 2 * 9},  // the knight pinned
    {"6k1/Q7/8/8/8/8/8/4K3 w - - 0 1", Queens, -3 - 2 * 17 + 55},  // the king on the eighth
    // Against four knights: checks from e8, e5, b2, h5 and h2, 4 * 5 + 33 on move, 2 * 5 + 16 not.
    {"7k/8/8/8/8/n7/n3Q3/nn2K3 w - - 0 1", Queens, 1 - 2 * 10 + 53},
    {"7k/8/8/8/8/n7/n3Q3/nn2K3 b - - 0 1", Queens, 1 - 2 * 10 + 26},
    // EndingQueen2 d4 14 / 2 against a8 -14 / 2; White's passer on e6 75 against Black's none 45.
    {"q3k3/8/4P3/8/3Q4/8/8/4K3 w - - 0 1", FromWhite<QueenEndingPlacement>, 7 + 7 + 75 + 45},
    // Checks shrink a loss: five (f1 guarded by the queen), then two shelter pawns off the rook
    // file 8 * (v / 8) / 8; three from b3; none from h4.
    {"6k1/8/8/q7/8/3Q4/5PPP/6K1 b - - 0 1", ChecksScaleALoss, -125},
    {"6k1/8/8/q7/8/1Q6/5PPP/6K1 b - - 0 1", ChecksScaleALoss, -75},
    {"6k1/8/8/8/7q/3Q4/5PPP/6K1 b - - 0 1", ChecksScaleALoss, -200},

    // No pawns: 500 - 44 * 3 / 2 for d5 + 2000 - 2 * 4 - Corner h1 80 - 4 * 8; + 6 on move.
    {"8/8/8/3k4/8/8/8/R6K w - - 0 1", NO_PAWNS, 2314 + 6},
    {"8/8/8/3k4/8/8/8/R6K b - - 0 1", NO_PAWNS, -2314 + 6},
    {"8/8/8/3k4/3r4/8/8/Q6K w - - 0 1", NO_PAWNS, 978 + 6},  // 520 - 66 + 650 - 6 - 8 - 80 - 32
    {"8/8/8/3k4/5K2/4n3/8/R7 w - - 0 1", NO_PAWNS, 18 + 4},  // 195 >> 2 - 44 + 12 - 8 + 10
    {"8/8/8/3k4/5K2/4n3/8/R7 b - - 0 1", NO_PAWNS, -18 + 4},
    {"3k4/3r4/8/8/8/8/3R4/3K4 b - - 0 1", NO_PAWNS, 3},  // even: + 3 for the side on move
    // Bishop and knight: Corner e1 -44 + 1000 - 4 * 3; mate on h1 with the light bishop only.
    {"8/8/8/8/8/8/2B5/1N2K2k w - - 0 1", NO_PAWNS, 944 + 120 + 6},
    {"8/8/8/8/8/8/3B4/1N2K2k w - - 0 1", NO_PAWNS, 944 - 60 + 6},

    // Kings: KingCentre twice for the side with majors, KingMiddle for the other, then attack.
    {"4k3/8/8/8/8/8/8/RR2K3 w - - 0 1", Kings, 24 - 8 + 30},  // no defenders: 20 + 10
    {"4k3/3pp3/8/8/8/8/8/3QK2r w - - 0 1", Kings, 2 * 12 - 8 + 100 - 30},  // KingCover[2]

    // Mating material: a pawn, a major piece, three minors, or two with a bishop among them.
    {"4k3/8/8/8/8/8/P7/4K3 w - - 0 1", CannotWin, -1},
    {"4k3/p7/8/8/8/8/8/4KN2 w - - 0 1", CannotWin, 1},  // the piece without a pawn
    {"4k3/p7/8/8/8/8/P7/4KN2 w - - 0 1", CannotWin, 0},
    {"4k3/8/8/8/8/8/8/3BKN2 w - - 0 1", CannotWin, -1},
    {"3nkn2/8/8/8/8/8/8/3BKN2 w - - 0 1", CannotWin, -1},
    {"3bkn2/8/8/8/8/8/8/3NKN2 w - - 0 1", CannotWin, 1},
    {"3bkn2/8/8/8/8/8/8/2NNKN2 w - - 0 1", CannotWin, 0},
    {"3bkn2/8/8/8/8/8/8/4K2R w - - 0 1", CannotWin, 0},
    // Scaling by pawns: max(5 * v / 8, v - 50) with two, max(2 * v / 8, v - 50) with none.
    {"4k3/8/8/8/8/8/PP6/4KR2 w - - 0 1", Scaled<300, false>, 250},
    {"4k3/8/8/8/8/8/PP6/4KR2 w - - 0 1", Scaled<1000, false>, 950},
    {"4k3/8/8/8/8/8/8/4KR2 w - - 0 1", Scaled<30, false>, 7},
    // Only opposite bishops, one black pawn on the light squares: t = max(6 * 400 / 8, 350) = 350,
    // u = 4 * (350 * 6 / 8) / 8 = 131, max(131, 350 - 250); a big lead keeps all but 250.
    {"3b2k1/p6p/8/8/8/8/PPP1B3/6K1 w - - 0 1", Scaled<400, true>, 131},
    {"3b2k1/p6p/8/8/8/8/PPP1B3/6K1 w - - 0 1", Scaled<2000, true>, 1950 - 250},
    // With a rook each the pawns on the bishop's colour don't count: max(350 * 6 / 8, 100).
    {"3b2k1/p6p/8/8/8/8/PPP1B3/R5Kr w - - 0 1", Scaled<400, true>, 262},

    // Pawns alone: h4 against the king on a6 is outside the square whoever moves.
    {"8/8/k7/8/7P/8/8/1K4N1 w - - 0 1", BarePawns, 720},
    {"8/8/k7/8/7P/8/8/1K4N1 b - - 0 1", BarePawns, 640},
    {"8/8/2k5/8/7P/8/8/1K4N1 w - - 0 1", BarePawns, 720},  // c6 reaches the square only on move
    {"8/8/k5n1/8/7P/8/8/1K4N1 w - - 0 1", BarePawns, 0},  // pieces on both sides: no race
    {"8/8/k5n1/8/7P/8/8/1K4N1 w - - 0 1", RaceLeftToThePieces, 0},
    {"8/8/8/4k3/7P/p7/8/1K4N1 w - - 0 1", BarePawns, 0},  // White's caught: the pieces decide
    {"8/8/8/4k3/7P/p7/8/1K4N1 w - - 0 1", RaceLeftToThePieces, 1},
    // Ke6 and e5 against Ke8 win whoever moves: 225 for rank 4; two such pawns capped at 400.
    {"4k3/8/4K3/4P3/8/8/8/8 w - - 0 1", ForColour<SinglePawnsTerm>, 225},
    {"4k3/8/4K3/P3P3/8/8/8/8 w - - 0 1", ForColour<SinglePawnsTerm>, 400},
    {"8/8/k7/8/7P/8/8/1K6 w - - 0 1", FromWhite<PawnRaceTerm>, 2 * 720},  // a runner counts double
    {"8/8/k7/p7/P7/8/8/1K6 w - - 0 1", FromWhite<PawnRaceTerm>, 0},
};

}  // namespace

TEST(EndingTerms, HandWorkedValuesAlikeForBothColours) {
  for (const TermCase& c : TERMS) {
    const Board board = BoardFromFen(c.fen), flipped = ColourFlipped(board);
    EvaluationState evaluation;
    PrepareForEndingTerms(evaluation, board);
    EXPECT_EQ(c.term(evaluation, board, WHITE), c.value) << c.fen;
    PrepareForEndingTerms(evaluation, flipped);
    EXPECT_EQ(c.term(evaluation, flipped, BLACK), c.value) << c.fen << ", colours flipped";
  }
}

TEST(EndingFrame, BoundKeepsTheSideThatCannotMateAtTheDrawValueAtBest) {
  // Where neither side can mate (two knights can't), the bound names White.
  for (const char* fen : {"4kn2/8/8/8/8/8/8/4KN2 w - - 0 1", "4k3/8/8/8/8/8/8/3NKN2 w - - 0 1"})
    EXPECT_EQ(FindMaterialBound(BoardFromFen(fen)), WHITE_CANNOT_WIN) << fen;
  EXPECT_EQ(ApplyBound(-300, BLACK_CANNOT_WIN, 20), 20);
  EXPECT_EQ(ApplyBound(300, BLACK_CANNOT_WIN, 20), 300);
  EXPECT_EQ(ApplyBound(300, WHITE_CANNOT_WIN, -20), -20);
  EXPECT_EQ(ApplyBound(-300, WHITE_CANNOT_WIN, -20), -300);
  EXPECT_EQ(ApplyBound(300, BOTH_CAN_WIN, 0), 300);

  // Through the whole evaluation: a knight against pawns is never better than the draw value.
  for (const char* fen : {"4k3/pp6/8/8/8/8/8/3NK3 w - - 0 1", "4k3/8/8/8/8/8/1p6/3NK3 b - - 0 1"}) {
    const Board board = BoardFromFen(fen);
    for (int draw_value : {0, 35}) {
      EVALUATION_HASH_TABLE.Clear();
      EvaluationState evaluation;
      evaluation.settings->draw_value = std::int16_t(draw_value);
      const int value = EvaluateExact(evaluation, board, ClassifyPosition(board, UNCLASSIFIED));
      EXPECT_LE(ForSideOnMove(board, value), draw_value) << fen;
    }
  }
}

TEST(EndingFrame, LazyExitFromJustBeyondTheMargin) {
  for (const auto& [estimate, beta, margin, lazy, answer] :
       {std::tuple{0, 700, 700, false, 0}, {0, 701, 700, true, 700}, {0, -700, 700, false, 0},
        {0, -701, 700, true, -701}, {100, 3100, 3000, false, 0}, {100, 3101, 3000, true, 3100},
        {100, -2901, 3000, true, -2901}}) {
    int result = 0;
    EXPECT_EQ(EndingLazyExit(estimate, beta, margin, result), lazy) << beta;
    EXPECT_EQ(result, answer) << beta;
  }
}

// Far from beta the evaluators answer with a bound at once; near it they count everything.
TEST(EndingFrame, EvaluatorsAnswerLazilyOnlyFarFromBeta) {
  for (const auto& [fen, evaluate, far] :
       {std::tuple{"8/5pk1/6p1/8/3N4/6P1/5PK1/8 w - - 0 1", &EvaluateEnding, 2000},
        {"8/5pk1/6p1/8/3R4/6P1/5PK1/1r6 b - - 0 1", EvaluateRookEnding, 2000},
        {"6k1/5p2/6p1/8/1q6/6P1/4QPK1/8 w - - 0 1", EvaluateQueenEnding, 2000},
        {"8/5pk1/6p1/8/8/6P1/5PK1/8 w - - 0 1", EvaluatePawnEnding, 5000}}) {
    const Board board = BoardFromFen(fen);
    EvaluationState evaluation;
    for (int beta : {far, -far, 0}) {
      PrepareForEndingTerms(evaluation, board);
      bool lazy = false;
      const int result = evaluate(evaluation, board, beta, lazy);
      EXPECT_EQ(lazy, beta != 0) << fen << " beta " << beta;
      if (beta != 0) {
        EXPECT_EQ(result, beta > 0 ? beta - 1 : beta) << fen;
      }
    }
  }
}

TEST(EvaluateNoPawns, TheBareKingIsWorseOffTheNearerItIsToTheEdgeOrInOpposition) {
  EvaluationState evaluation;
  int previous = 0;
  for (const char* fen : {"8/8/8/3k4/8/8/8/R6K w - - 0 1", "8/8/8/2k5/8/8/8/R6K w - - 0 1",
                          "8/8/8/1k6/8/8/8/R6K w - - 0 1", "8/8/k7/8/8/8/8/1R5K w - - 0 1",
                          "k7/8/8/8/8/8/1R5K/8 w - - 0 1"}) {
    const int value = EvaluateNoPawns(evaluation, BoardFromFen(fen));
    EXPECT_GT(value, previous) << fen;
    previous = value;
  }
  // Kings facing each other with the defender on the rim: + 40 instead of - Corner * 3 / 2.
  const int facing = EvaluateNoPawns(evaluation, BoardFromFen("3k4/8/3K4/8/8/8/8/R7 w - - 0 1"));
  const int beside = EvaluateNoPawns(evaluation, BoardFromFen("3k4/8/2K5/8/8/8/8/R7 w - - 0 1"));
  // d8: 44 * 3 / 2 = 66 against 40; Corner d6 24 against c6 14; Manhattan 2 against 3.
  EXPECT_EQ(facing - beside, (40 - 66) + (24 - 14) + 4 * (3 - 2));
}

TEST(KingRaceRegions, EachKingHasItsOwnSquaresAndAKingThatMustCatchAPasserStaysInItsSquare) {
  const auto regions = [](const Board& board) {
    EvaluationState evaluation;
    PrepareForEndingTerms(evaluation, board);
    return KingRaceRegions(evaluation, board);
  };
  for (const char* fen :
       {"4k3/8/8/8/8/8/8/4K3 w - - 0 1", "8/5pk1/6p1/8/8/1P4P1/5PK1/8 b - - 0 1",
        "8/8/2k5/8/2P5/8/5K2/8 w - - 0 1", "8/pp4k1/8/8/8/8/PPP3K1/8 w - - 0 1"}) {
    const Board board = BoardFromFen(fen);
    const KingRegions found = regions(board), flipped = regions(ColourFlipped(board));
    EXPECT_EQ(found.region[WHITE] & found.region[BLACK], 0u) << fen;
    for (int colour = WHITE; colour <= BLACK; ++colour) {
      const PieceSet& own = board.Pieces(colour);
      EXPECT_NE(found.region[colour] & SquareBit(int(own.king_square)), 0u) << fen;
      EXPECT_EQ(found.region[colour] & own.pawns, 0u) << fen;
      EXPECT_EQ(PopCount(flipped.region[colour ^ 1]), PopCount(found.region[colour])) << fen;
    }
  }
  // The a5 pawn's square is a5-d8; the king on h8 is outside it and can go nowhere.
  EXPECT_EQ(regions(BoardFromFen("7k/8/8/P7/8/8/8/K7 w - - 0 1")).region[BLACK], SquareBit(H8));
  // Inside the square it may move within it only.
  const Bitboard inside = regions(BoardFromFen("3k4/8/8/P7/8/8/8/7K w - - 0 1")).region[BLACK];
  EXPECT_EQ(inside & ~Bitboard{0x0F0F0F0F00000000ULL}, 0u);
  EXPECT_NE(inside & SquareBit(C6), 0u);
}

TEST(PawnRaceTerm, PassersOnBothSidesAreDecidedByTheFileTableForTheSideOnMove) {
  const Board board = BoardFromFen("8/8/k7/8/7P/p7/8/1K6 w - - 0 1");
  // A table of one verdict throughout: four entries a byte of 3 (the side on move wins) or 1
  // (it loses); without the table no verdict at all.
  const std::uint8_t* const saved = BraskBitbases::two_pawns_data;
  for (const auto& [table, byte, for_side_on_move] :
       {std::tuple{false, 0, 0}, {true, 0xFF, 150}, {true, 0x55, -150}}) {
    std::vector<std::uint8_t> bytes(1179648, std::uint8_t(byte));
    BraskBitbases::two_pawns_data = table ? bytes.data() : nullptr;
    for (const Board& position : {board, ColourFlipped(board)}) {
      EvaluationState evaluation;
      PrepareForEndingTerms(evaluation, position);
      EXPECT_EQ(PawnRaceTerm(evaluation, position), ForSideOnMove(position, for_side_on_move));
    }
  }
  BraskBitbases::two_pawns_data = saved;
}
