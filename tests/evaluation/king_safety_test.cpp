// King shelters and king safety worked out by hand, and the rules on castling prospects, scaling
// and the balance of the wings. Units start at 0, openness is 8 and the endgame factor 0.
#include "evaluation/king_safety.h"

#include <gtest/gtest.h>

#include "evaluation/blend.h"
#include "evaluation/king_shelter.h"
#include "evaluation/wings.h"
#include "piece_term_setup.h"
#include "support/board_from_fen.h"

namespace {

struct ShelterCase {
  const char* what;
  const char* fen;
  int square;
  ScorePair expected;
  int king_attack;
  int king_defence;
  int missing_front;
  int missing_second;
};

}  // namespace

TEST(KingShelter, PawnsInFrontOpenFilesAndStorms) {
  const ShelterCase cases[] = {
      // (6, 2); f2 h2 (40, 56); g bare (-12, -14); three open files (-9, -18); gap (-20, -30).
      {"g-pawn gone", "6k1/8/8/8/8/8/5P1P/6K1 w - - 0 1", G1, {5, -4}, 13, -20, 1, 3},
      // (6, 2); three pawns (60, 84); none missing (15, 26); three open files (-9, -18).
      {"intact", "6k1/8/8/8/8/8/5PPP/6K1 w - - 0 1", G1, {72, 94}, 13, 14, 0, 3},
      // Intact, f open (0, -6); storm g4 (-5, -13) met on g3 (-3, -8), h5 (-3, -8) on h3 (-1, -5).
      {"storm", "6k1/8/8/7p/6p1/8/5PPP/6K1 w - - 0 1", G1, {69, 72}, 33, 14, 0, 3},
      // Storms f4 g4 (-5, -13) each, met (-3, -8); f4's partner (-5, -16); knight behind (+4, +8).
      {"storm with a partner", "6k1/8/8/6n1/5pp1/8/5PPP/6K1 w - - 0 1", G1, {64, 56}, 42, 14, 0,
       3},
      // a-file: two files at most, both open (-6, -12); a2 b2 (40, 56); none missing (15, 26).
      {"a-file", "6k1/8/8/8/8/8/PP6/K7 w - - 0 1", A1, {51, 72}, 9, 14, 0, 2},
      // Out on the third rank: (-120, -200), attack the enemy's units + 10, whatever stands around.
      {"third rank", "6k1/8/8/8/8/5PKP/5PPP/8 w - - 0 1", G3, {-120, -200}, 10, 0, 0, 0},
      // h2 (6 - 6, 2 - 14), then from h1: g2 (20, 28), h3 (13, 22), two open (-6, -12), (3, 10).
      {"second rank", "6k1/8/8/8/8/7P/6PK/8 w - - 0 1", H2, {30, 36}, 9, 0, 1, 1},
      {"black g-pawn gone", "6k1/5p1p/8/8/8/8/8/6K1 b - - 0 1", G8, {5, -4}, 13, -20, 1, 3},
  };
  for (const ShelterCase& c : cases) {
    SCOPED_TRACE(c.what);
    const Board board = BoardFromFen(c.fen);
    const int colour = board.squares[c.square] > 0 ? WHITE : BLACK;
    EvaluationState evaluation;
    PrepareForPieceTerms(evaluation, board);
    EXPECT_EQ(KingShelter(evaluation, board, c.square, colour), c.expected);
    EXPECT_EQ(evaluation.king_attack[colour], c.king_attack);
    EXPECT_EQ(evaluation.king_defence[colour], c.king_defence);
    EXPECT_EQ(evaluation.missing_front[colour], c.missing_front);
    EXPECT_EQ(evaluation.missing_second[colour], c.missing_second);
    EXPECT_DOUBLE_EQ(evaluation.attack_curve[colour], AttackCurve(c.king_attack));
    EXPECT_DOUBLE_EQ(evaluation.defence_curve[colour], DefenceCurve(c.king_defence));
  }
}

TEST(KingShelter, WingUnitsBecomeTheKingsUnits) {
  // The enemy's attack and the own defence by wing, as the king's file sees them.
  const Board board = BoardFromFen("6k1/8/8/8/8/8/5PPP/6K1 w - - 0 1");
  const struct {
    int square;
    int attack;
    int defence;
  } cases[] = {
      // Enemy centre / 4 + wing, own centre / 2 + wing, then the shelter's own (+13, +14).
      {G1, 20 / 4 + 7 + 13, 9 / 2 + 3 + 14},
      // No pawns: three open files +13, three missing fronts -16, three bare files -30.
      {B1, 20 / 4 + 5 + 13, 9 / 2 + 4 - 16 - 30},
      // Every wing's attack, the own centre's defence; d2 e2 bare -20, two missing -9.
      {E1, 5 + 7 + 20 + 13, 9 - 20 - 9},
  };
  for (const auto& c : cases) {
    EvaluationState evaluation;
    PrepareForPieceTerms(evaluation, board);
    evaluation.zone_units[BLACK][QUEENSIDE].attack = 5;
    evaluation.zone_units[BLACK][KINGSIDE].attack = 7;
    evaluation.zone_units[BLACK][CENTRE].attack = 20;
    evaluation.zone_units[WHITE][QUEENSIDE].defence = 4;
    evaluation.zone_units[WHITE][KINGSIDE].defence = 3;
    evaluation.zone_units[WHITE][CENTRE].defence = 9;
    KingShelter(evaluation, board, c.square, WHITE);
    EXPECT_EQ(evaluation.king_attack[WHITE], c.attack) << c.square;
    EXPECT_EQ(evaluation.king_defence[WHITE], c.defence) << c.square;
  }
}

TEST(ShelterAt, KingOnTheCOrFFileLeansToItsWing) {
  // c1 is three parts b1 and one part d1, with b1's units; f1 likewise with g1 and e1.
  const Board board = BoardFromFen("6k1/8/8/8/8/8/PPP2PPP/2K5 w - - 0 1");
  const struct {
    int square;
    int wing;
    int centre;
  } cases[] = {{C1, B1, D1}, {F1, G1, E1}};
  for (const auto& c : cases) {
    EvaluationState evaluation;
    PrepareForPieceTerms(evaluation, board);
    const ScorePair wing = KingShelter(evaluation, board, c.wing, WHITE);
    const std::int16_t wing_attack = evaluation.king_attack[WHITE];
    const std::int16_t wing_defence = evaluation.king_defence[WHITE];
    const ScorePair centre = KingShelter(evaluation, board, c.centre, WHITE);
    const ScorePair blended = ShelterAt(evaluation, board, c.square, WHITE);
    EXPECT_EQ(blended.positional, (centre.positional + 3 * wing.positional) / 4);
    EXPECT_EQ(blended.reckless, (centre.reckless + 3 * wing.reckless) / 4);
    EXPECT_EQ(evaluation.king_attack[WHITE], wing_attack);
    EXPECT_EQ(evaluation.king_defence[WHITE], wing_defence);
  }
}

TEST(CornerTerm, LoosePawnBeforeTheKingAndTheBackRank) {
  const struct {
    const char* what;
    const char* fen;
    ScorePair expected;
    int attack_change;
    int defence_change;
  } cases[] = {
      // A lone enemy pawn on g2, undefended, the only gap: the king takes it.
      {"loose pawn", "6k1/8/8/8/8/8/5PpP/6K1 w - - 0 1", {200, 240}, -10, 2},
      // The same pawn defended by another on h3: nothing.
      {"defended pawn", "6k1/8/8/8/8/7p/5PpP/6K1 w - - 0 1", {0, 0}, 0, 0},
      // Shut in behind f2 g2 h2 with an enemy rook watching the back rank.
      {"back rank", "3r2k1/8/8/8/8/8/5PPP/6K1 w - - 0 1", {-6, -12}, 0, -6},
      // The same without the rook.
      {"back rank quiet", "6k1/8/8/8/8/8/5PPP/6K1 w - - 0 1", {0, 0}, 0, 0},
      // Not in a corner.
      {"centre", "3r2k1/8/8/8/8/8/3PPP2/4K3 w - - 0 1", {0, 0}, 0, 0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    const Board board = BoardFromFen(c.fen);
    EvaluationState evaluation;
    PrepareForPieceTerms(evaluation, board);
    // The rook's reach along the back rank, as the rook term would have added it.
    if (board.black.rooks) evaluation.attacked[BLACK] |= board.RookAttacksFrom(D8);
    evaluation.king_attack[WHITE] = 5;
    evaluation.king_defence[WHITE] = 5;
    EXPECT_EQ(CornerTerm(evaluation, board, WHITE), c.expected);
    EXPECT_EQ(evaluation.king_attack[WHITE], 5 + c.attack_change);
    EXPECT_EQ(evaluation.king_defence[WHITE], 5 + c.defence_change);
  }
}

TEST(KingSafetyTerm, WorkedThroughWithoutQueens) {
  // w = (-20, -100) + shelter (20, 26), b = (-20, -100) + (81, 106); no queens: times 3 / 8,
  // w = (0, -27), b = (22, 2); weight 1.2: w = (0, -31), b = (26, 2); w reckless * 0.2: -6.
  const Board board = BoardFromFen("6k1/5ppp/8/8/8/8/5P1P/6K1 w - - 0 1");
  EvaluationState evaluation;
  PrepareForPieceTerms(evaluation, board);
  EXPECT_EQ(KingSafetyTerm(evaluation, board), ScorePair(-26, -8));
  EXPECT_EQ(evaluation.king_attack[WHITE], -6);
  EXPECT_EQ(evaluation.king_defence[WHITE], -20);
  EXPECT_EQ(evaluation.king_attack[BLACK], 4);
  EXPECT_EQ(evaluation.king_defence[BLACK], 14);
}

TEST(KingSafetyTerm, KingInTheCentreIsJudgedByTheBetterCastledPosition) {
  // The king's units are those of the better castled position, whichever was looked at last;
  // with f1 watched the short right counts as gone and the king is judged on e1. The rights cost
  // centre units before any shelter is looked at.
  const struct {
    const char* fen;
    Bitboard watched;
    int judged_on;
    ZoneUnits black_centre;
  } cases[] = {
      {"r3k2r/pppppppp/8/8/8/8/5PPP/R3K2R w KQkq - 0 1", 0, G1, {-4, -6}},
      {"r3k2r/pppppppp/8/8/8/8/PPP5/R3K2R w KQkq - 0 1", 0, B1, {-4, -6}},
      {"4k3/pppppppp/8/8/8/8/5PPP/4K2R w K - 0 1", SquareBit(F1), E1, {0, 0}},
  };
  for (const auto& c : cases) {
    const Board board = BoardFromFen(c.fen);
    EvaluationState evaluation, reference;
    PrepareForPieceTerms(evaluation, board);
    PrepareForPieceTerms(reference, board);
    evaluation.attacked[BLACK] |= c.watched;
    reference.attacked[BLACK] |= c.watched;
    reference.zone_units[WHITE][CENTRE] = {-4, -6};
    reference.zone_units[BLACK][CENTRE] = c.black_centre;
    KingShelter(reference, board, c.judged_on, WHITE);
    KingSafetyTerm(evaluation, board);
    EXPECT_EQ(evaluation.king_attack[WHITE], reference.king_attack[WHITE]) << c.fen;
    EXPECT_EQ(evaluation.king_defence[WHITE], reference.king_defence[WHITE]) << c.fen;
  }
}

TEST(ZoneBalanceTerm, PlayForAPawn) {
  const char* const white_down = "4k3/pp6/8/8/8/8/P7/4K3 w - - 0 1";
  const char* const black_down = "4k3/p7/8/8/8/8/PP6/4K3 w - - 0 1";
  const struct {
    const char* fen;
    int white_attack;
    int black_attack;
    ScorePair expected;
  } cases[] = {
      {white_down, -1, 0, {-20, -12}},
      {white_down, 30, 5, {-4, 10}},   // 5 < 30 / 2 and 30 > 5 + 20
      {white_down, 30, 15, {-13, 4}},  // 15 is not below 15; 30 > 15 + 10
      {white_down, 25, 15, {-16, 0}},
      {black_down, 0, -1, {20, 12}},
      {black_down, 5, 30, {4, -10}},
      {black_down, 15, 30, {13, -4}},
      {black_down, 15, 25, {16, 0}},
      {"4k3/8/8/8/8/8/PP6/4K3 w - - 0 1", 0, 50, {0, 0}},  // two pawns: no compensation term
      {"4k3/p7/8/8/8/8/P7/4K3 w - - 0 1", 0, 50, {0, 0}},
  };
  for (const auto& c : cases) {
    const Board board = BoardFromFen(c.fen);
    EvaluationState evaluation;
    PrepareForPieceTerms(evaluation, board);
    // Spread over the wings: only the sums count.
    evaluation.zone_units[WHITE][QUEENSIDE].attack = std::int16_t(c.white_attack - 3);
    evaluation.zone_units[WHITE][CENTRE].attack = 3;
    evaluation.zone_units[BLACK][KINGSIDE].attack = std::int16_t(c.black_attack);
    EXPECT_EQ(ZoneBalanceTerm(evaluation, board), c.expected)
        << c.fen << " " << c.white_attack << " " << c.black_attack;
  }
}
