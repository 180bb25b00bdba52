// Piece terms and king safety worked out by hand in small positions: openness 8, endgame factor
// 0, units from 0, the pawn sets worked out plainly from the board.
#include "evaluation/piece_terms.h"

#include <gtest/gtest.h>

#include <tuple>
#include <utility>

#include "evaluation/blend.h"
#include "evaluation/king_safety.h"
#include "evaluation/king_shelter.h"
#include "evaluation/wings.h"
#include "support/board_from_fen.h"
#include "support/random_positions.h"
#include "term_setup.h"

namespace {

using Term = ScorePair (*)(EvaluationState&, const Board&);

ScorePair Rook(EvaluationState& e, const Board& b) { return RookTerm(e, b, WHITE); }
ScorePair Bishop(EvaluationState& e, const Board& b) { return BishopTerm(e, b, WHITE); }
ScorePair Knight(EvaluationState& e, const Board& b) { return KnightTerm(e, b, WHITE, false); }
ScorePair KnightLater(EvaluationState& e, const Board& b) { return KnightTerm(e, b, WHITE, true); }
ScorePair Queen(EvaluationState& e, const Board& b) { return QueenTerm(e, b, WHITE, false); }
ScorePair QueenLater(EvaluationState& e, const Board& b) { return QueenTerm(e, b, WHITE, true); }

// The shelter of the king of the side on move; the curves follow the king's units.
ScorePair Shelter(EvaluationState& e, const Board& b) {
  const int colour = b.side_on_move;
  const ScorePair value = KingShelter(e, b, int(b.Own().king_square), colour);
  EXPECT_DOUBLE_EQ(e.attack_curve[colour], AttackCurve(e.king_attack[colour]));
  EXPECT_DOUBLE_EQ(e.defence_curve[colour], DefenceCurve(e.king_defence[colour]));
  return value;
}
// From king units 5/5, with the enemy rook's reach along the back rank as the rook term adds it.
ScorePair Corner(EvaluationState& e, const Board& b) {
  if (b.black.rooks) e.attacked[BLACK] |= b.RookAttacksFrom(D8);
  e.king_attack[WHITE] = e.king_defence[WHITE] = 5;
  return CornerTerm(e, b, WHITE);
}

constexpr const char* INITIAL = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1";
constexpr const char* QUEEN_OUT = "4k3/8/8/8/3Q4/8/8/4K3 w - - 0 1";
constexpr Bitboard EVERYTHING = ~Bitboard{0};

struct TermCase {
  const char* fen;
  Term term;
  ScorePair expected;
  const char* state;  // as StateText gives it
  Bitboard watched = 0;  // squares that Black watches with pieces other than queens
};

const TermCase TERMS[] = {
    // Rooks: base by pawns (60 - 12 per pawn over two), reach, files, seventh rank, king's file.
    // A rook on an open file: 14 pawns (-9, -39); d2..d8 (+4, +10); only open file, uncontested
    // (+35, +36).
    {"6k1/ppp1pppp/8/8/8/8/PPP1PPPP/3R2K1 w - - 0 1", Rook, {30, 7}, "WC 8/8 trend 24"},
    // As above, contested by the enemy rook: (+25, +30) instead.
    {"3r2k1/ppp1pppp/8/8/8/8/PPP1PPPP/3R2K1 w - - 0 1", Rook, {20, 1}, "WC 12/4 trend 24"},
    // 6 pawns (39, 9); 7 squares (+4, +10); one of five open files (+7, +15); 7th (+28, +50).
    {"6k1/1R3ppp/8/8/8/8/5PPP/6K1 w - - 0 1", Rook, {78, 84}, "WQ 6/3 WC 14/0 trend 24"},
    // (75, 45); sees a2 (-4, -10); closed, o = 1 (-6, -14); free first rank b1..f1 (+6, +12).
    {"6k1/8/8/8/8/8/P7/R5K1 w - - 0 1", Rook, {71, 33}, "trend 24"},
    // (63, 33) - (4, 10) closed (6, 14), rank blocked (2, 6), shut in the corner (50, 70).
    {"6k1/8/8/8/8/8/6PP/6KR w - - 0 1", Rook, {1, -67}, "WK -17/-5 trend 24"},
    // (63, 33); e2..e7 (+3, +8); half open (+12, +18); the enemy king's file (+15, +38).
    {"4k3/4p3/8/8/8/8/P7/4R1K1 w - - 0 1", Rook, {93, 97}, "WC 19/0 trend 24"},
    // Closed on the king's file gets no king file bonus: (63 - 4 - 6 + 6, 33 - 10 - 14 + 12).
    {"4k3/4p3/8/8/8/8/4P3/4R1K1 w - - 0 1", Rook, {59, 21}, "trend 24"},
    // h1 sees a1 (+8, +12): (75 + 4 + 8 + 7, 45 + 10 + 12 + 15); a1 sees a walked rook: (86, 70).
    {"4k3/8/8/8/8/8/4K3/R6R w - - 0 1", Rook, {180, 152}, "WQ 6/3 WK 6/3 WC 0/2 trend 48"},

    // (14, 18); n = 6 (-2, -6); ring (1, 6); bad behind e4 d5 (-8, -10); no pair (-15, -17).
    {"4k3/8/3p4/3Pp3/4P3/8/4B3/4K3 w - - 0 1", Bishop, {-10, -9}, "WC -12/-10 trend -5"},
    // (20, 22); hole (+8, +10); free long diagonal (+24, +24); mobility (-2 + 3, -6 + 15).
    {"4k3/8/8/2p5/2Pp4/3P2P1/5PBP/6K1 w - - 0 1", Bishop, {53, 65}, "WQ 6/0 WK 0/5"},
    // (-2, 4); n = 0 (-24, -38); deep (0, 2); trapped by defended b6 (-180, -180); reckless -2.
    {"4k3/B1p5/1p6/8/8/8/8/4K3 w - - 0 1", Bishop, {-206, -214}, ""},

    // (-24, -24); e5 (22, 38); defended (+2, 0); unassailable (+9, +14); outpost (+13, +18).
    {"4k3/8/2p5/4N3/3P4/8/8/4K3 w - - 0 1", Knight, {22, 46}, "WC 16/4"},
    // e5 (26, 44); reckless +2; defended (+2, +2); unassailable (+13, +23); outpost (+13, +20).
    {"4k3/8/2p5/4N3/3P4/8/8/4K3 w - - 0 1", KnightLater, {30, 67}, "WC 18/5"},
    // A knight on a1 reaches b3 and c2; watched squares count only where no own pawn holds them.
    {"4k3/8/8/8/8/8/8/N3K3 w - - 0 1", KnightMobilityTerm, {2, 4}, ""},
    {"4k3/8/8/8/8/8/8/N3K3 w - - 0 1", KnightMobilityTerm, {-2, -4}, "WC -3/-3", Bits({B3})},
    {"4k3/8/8/8/8/8/8/N3K3 w - - 0 1", KnightMobilityTerm, {-6, -12}, "WC -6/-6", Bits({B3, C2})},

    // Queens: d1 (4, 4); the knight pinned by d8 (-30, -30); no safe-square rows on rank 1.
    {"3rk3/8/8/8/8/8/3N4/3QK3 w - - 0 1", Queen, {-26, -26}, "WC 16/0"},
    // d1 (-6, -6); pinned (-30, -30); 8 squares from e8 (-8, -24), attack -1.
    {"3rk3/8/8/8/8/8/3N4/3QK3 w - - 0 1", QueenLater, {-44, -60}, "WC 17/0"},
    // Out on d4 in the opening (0, 4) - (5, 2), then by the squares no enemy piece but a queen
    // watches: none, one, two off the first two ranks, one on rank 2, one on rank 1 too.
    {QUEEN_OUT, Queen, {-75, -108}, "WC 0/-10", EVERYTHING},  // (-70, -110), -16 / -10
    {QUEEN_OUT, Queen, {-45, -68}, "WC 4/-8", EVERYTHING & ~Bits({A7})},  // (-40, -70), -12 / -8
    {QUEEN_OUT, Queen, {-23, -28}, "WC 16/-4", EVERYTHING & ~Bits({A7, G7})},  // (-18, -30), -4
    {QUEEN_OUT, Queen, {-13, -8}, "WC 16/-2", EVERYTHING & ~Bits({A7, B2})},  // (-8, -10), -2
    {QUEEN_OUT, Queen, {-5, 2}, "WC 16/0", EVERYTHING & ~Bits({A7, B2, A1})},  // nothing more
    {"4k3/8/8/8/8/8/3Q4/4K3 w - - 0 1", Queen, {6, 6}, "WC 16/0", EVERYTHING},  // at home: no rows

    // Development: home pieces on both wings cancel; White to move (+6, +14).
    {INITIAL, DevelopmentTerm, {6, 14}, "WQ -4/-8 WK -4/-6 WC 4/6 BQ -4/-8 BK -4/-6"},
    // g3 pushed with f1 at home (-8, -14); b1 and c1 at home (-18, -45); Black to move (-6, -14).
    {"4k3/8/8/8/8/6P1/5P1P/1NB1KB2 b - - 0 1", DevelopmentTerm, {-32, -73},
     "WQ -4/-8 WK 0/-4 BC 4/6"},
    // Knights c3 and f3 before the c- and f-pawns (-4, -8), centre units -3/+3; with e3 against
    // d5 (-10, -20) more; with d4 against e4 too (-25, -35) instead; a third knight breaks it.
    {"4k3/8/8/8/8/2N2N2/2P2P2/4K3 w - - 0 1", OpeningFormationTerm, {-4, -8}, "WC -3/3"},
    {"4k3/8/8/3p4/8/2N1PN2/2P2P2/4K3 w - - 0 1", OpeningFormationTerm, {-14, -28}, "WC -3/3"},
    {"4k3/8/8/3p4/3Pp3/2N1PN2/2P2P2/4K3 w - - 0 1", OpeningFormationTerm, {-29, -43}, "WC -3/3"},
    {"4k3/8/8/8/8/2N2N2/2P2P2/4K1N1 w - - 0 1", OpeningFormationTerm, {0, 0}, ""},
    // Equal reach: no pair. No wing reached: attack -4, defence +6; own men on ranks 1-3 cost the
    // queenside attack 14 (files e-h) and the kingside attack 16 (files a-d).
    {INITIAL, SpaceTerm, {0, 0}, "WQ -18/6 WK -20/6 BQ -18/6 BK -20/6"},

    // A king with a broken shelter: (6, 2); f2 h2 (40, 56); g bare (-12, -14); three open
    // files (-9, -18); the gap (-20, -30).
    {"6k1/8/8/8/8/8/5P1P/6K1 w - - 0 1", Shelter, {5, -4}, "Wking 13/-20 Wgaps 1/3"},
    {"6k1/5p1p/8/8/8/8/8/6K1 b - - 0 1", Shelter, {5, -4}, "Bking 13/-20 Bgaps 1/3"},
    // (6, 2); three pawns (60, 84); none missing (15, 26); three open files (-9, -18).
    {"6k1/8/8/8/8/8/5PPP/6K1 w - - 0 1", Shelter, {72, 94}, "Wking 13/14 Wgaps 0/3"},
    // Intact, f open (0, -6); storm g4 (-5, -13) met on g3 (-3, -8), h5 (-3, -8) on h3 (-1, -5).
    {"6k1/8/8/7p/6p1/8/5PPP/6K1 w - - 0 1", Shelter, {69, 72}, "Wking 33/14 Wgaps 0/3"},
    // Storms f4 g4 (-5, -13) each, met (-3, -8); f4's partner (-5, -16); knight behind (+4, +8).
    {"6k1/8/8/6n1/5pp1/8/5PPP/6K1 w - - 0 1", Shelter, {64, 56}, "Wking 42/14 Wgaps 0/3"},
    // a-file: two files at most, both open (-6, -12); a2 b2 (40, 56); none missing (15, 26).
    {"6k1/8/8/8/8/8/PP6/K7 w - - 0 1", Shelter, {51, 72}, "Wking 9/14 Wgaps 0/2"},
    // Out on the third rank: (-120, -200), attack the enemy's units + 10, whatever stands around.
    {"6k1/8/8/8/8/5PKP/5PPP/8 w - - 0 1", Shelter, {-120, -200}, "Wking 10/0"},
    // h2 (6 - 6, 2 - 14), then from h1: g2 (20, 28), h3 (13, 22), two open (-6, -12), (3, 10).
    {"6k1/8/8/8/8/7P/6PK/8 w - - 0 1", Shelter, {30, 36}, "Wking 9/0 Wgaps 1/1"},
    {"6k1/8/8/8/8/8/5PpP/6K1 w - - 0 1", Corner, {200, 240}, "Wking -5/7"},  // takes a lone g2
    {"6k1/8/8/8/8/7p/5PpP/6K1 w - - 0 1", Corner, {0, 0}, "Wking 5/5"},  // g2 defended by h3
    {"3r2k1/8/8/8/8/8/5PPP/6K1 w - - 0 1", Corner, {-6, -12}, "Wking 5/-1"},  // the rook watches
    {"6k1/8/8/8/8/8/5PPP/6K1 w - - 0 1", Corner, {0, 0}, "Wking 5/5"},  // no rook on the rank
    {"3r2k1/8/8/8/8/8/3PPP2/4K3 w - - 0 1", Corner, {0, 0}, "Wking 5/5"},  // not in a corner
    // w = (-20, -100) + shelter (20, 26), b = (-20, -100) + (81, 106); no queens: times 3 / 8,
    // w = (0, -27), b = (22, 2); weight 1.2: w = (0, -31), b = (26, 2); w reckless * 0.2: -6.
    {"6k1/5ppp/8/8/8/8/5P1P/6K1 w - - 0 1", KingSafetyTerm, {-26, -8},
     "Wking -6/-20 Wgaps 1/3 Bking 4/14 Bgaps 0/3"},
};

}  // namespace

TEST(PieceAndKingTerms, HandWorkedValuesAndWhatTheyLeaveInTheState) {
  for (const TermCase& c : TERMS) {
    const Board board = BoardFromFen(c.fen);
    EvaluationState evaluation;
    PrepareForPieceTerms(evaluation, board);
    evaluation.attacked_without_queens[BLACK] = c.watched;
    EXPECT_EQ(c.term(evaluation, board), c.expected) << c.fen;
    EXPECT_EQ(StateText(evaluation), c.state) << c.fen;
  }
}

TEST(SpaceTerm, ALeadInSquaresReached) {
  // Set by hand: White reaches 24 squares, Black 20 or 22. 20 * 24 > 21 * 20 and 7 * 24 > 8 * 20:
  // +20; against 22: 20 * 24 > 21 * 22 but 7 * 24 <= 8 * 22: +12; against 23: nothing.
  const Board board = BoardFromFen("4k3/8/8/8/8/8/8/4K3 w - - 0 1");
  for (const auto& [black_squares, centre_attack] : {std::pair{20, 20}, {22, 12}, {23, 0}}) {
    EvaluationState evaluation;
    PrepareForPieceTerms(evaluation, board);
    // Ranks 3 to 5 for White, the same less the lowest squares for Black.
    const Bitboard middle = 0x000000FFFFFF0000ULL;
    const int dropped = 24 - black_squares;
    evaluation.attacked[WHITE] = middle;
    evaluation.attacked[BLACK] = middle & (~Bitboard{0} << (16 + dropped));
    EXPECT_EQ(SpaceTerm(evaluation, board), ScorePair(2 * dropped, 4 * dropped));
    EXPECT_EQ(evaluation.zone_units[WHITE][CENTRE].attack, centre_attack);
    EXPECT_EQ(evaluation.zone_units[BLACK][CENTRE].attack, 0);
  }
}

TEST(KingShelter, WingUnitsBecomeTheKingsUnitsAndTheCAndFFilesLeanToTheirWing) {
  const Board board = BoardFromFen("6k1/8/8/8/8/8/5PPP/6K1 w - - 0 1");
  for (const auto& [square, attack, defence] : {
           // Enemy centre / 4 + wing, own centre / 2 + wing, then the shelter's own (+13, +14).
           std::tuple{G1, 20 / 4 + 7 + 13, 9 / 2 + 3 + 14},
           // No pawns: three open files +13, three missing fronts -16, three bare files -30.
           {B1, 20 / 4 + 5 + 13, 9 / 2 + 4 - 16 - 30},
           // Every wing's attack, the own centre's defence; d2 e2 bare -20, two missing -9.
           {E1, 5 + 7 + 20 + 13, 9 - 20 - 9}}) {
    EvaluationState evaluation;
    PrepareForPieceTerms(evaluation, board);
    evaluation.zone_units[BLACK][QUEENSIDE].attack = 5;
    evaluation.zone_units[BLACK][KINGSIDE].attack = 7;
    evaluation.zone_units[BLACK][CENTRE].attack = 20;
    evaluation.zone_units[WHITE][QUEENSIDE].defence = 4;
    evaluation.zone_units[WHITE][KINGSIDE].defence = 3;
    evaluation.zone_units[WHITE][CENTRE].defence = 9;
    KingShelter(evaluation, board, square, WHITE);
    EXPECT_EQ(evaluation.king_attack[WHITE], attack) << square;
    EXPECT_EQ(evaluation.king_defence[WHITE], defence) << square;
  }
  // c1 is three parts b1 and one part d1, with b1's units; f1 likewise with g1 and e1.
  const Board both = BoardFromFen("6k1/8/8/8/8/8/PPP2PPP/2K5 w - - 0 1");
  for (const auto& [square, wing, centre] : {std::tuple{C1, B1, D1}, {F1, G1, E1}}) {
    EvaluationState evaluation;
    PrepareForPieceTerms(evaluation, both);
    const ScorePair at_wing = KingShelter(evaluation, both, wing, WHITE);
    const ZoneUnits units = {evaluation.king_attack[WHITE], evaluation.king_defence[WHITE]};
    const ScorePair at_centre = KingShelter(evaluation, both, centre, WHITE);
    const ScorePair blended = ShelterAt(evaluation, both, square, WHITE);
    EXPECT_EQ(blended.positional, (at_centre.positional + 3 * at_wing.positional) / 4);
    EXPECT_EQ(blended.reckless, (at_centre.reckless + 3 * at_wing.reckless) / 4);
    EXPECT_EQ(evaluation.king_attack[WHITE], units.attack);
    EXPECT_EQ(evaluation.king_defence[WHITE], units.defence);
  }
}

TEST(KingSafetyTerm, KingInTheCentreIsJudgedByTheBetterCastledPosition) {
  // The king's units are those of the better castled position, whichever was looked at last;
  // with f1 watched the short right counts as gone and the king is judged on e1. The rights cost
  // centre units before any shelter is looked at.
  for (const auto& [fen, watched, judged_on, black_centre] :
       {std::tuple{"r3k2r/pppppppp/8/8/8/8/5PPP/R3K2R w KQkq - 0 1", 0ULL, G1, ZoneUnits{-4, -6}},
        {"r3k2r/pppppppp/8/8/8/8/PPP5/R3K2R w KQkq - 0 1", 0ULL, B1, ZoneUnits{-4, -6}},
        {"4k3/pppppppp/8/8/8/8/5PPP/4K2R w K - 0 1", SquareBit(F1), E1, ZoneUnits{0, 0}}}) {
    const Board board = BoardFromFen(fen);
    EvaluationState evaluation, reference;
    PrepareForPieceTerms(evaluation, board);
    PrepareForPieceTerms(reference, board);
    evaluation.attacked[BLACK] |= watched;
    reference.attacked[BLACK] |= watched;
    reference.zone_units[WHITE][CENTRE] = {-4, -6};
    reference.zone_units[BLACK][CENTRE] = black_centre;
    KingShelter(reference, board, judged_on, WHITE);
    KingSafetyTerm(evaluation, board);
    EXPECT_EQ(evaluation.king_attack[WHITE], reference.king_attack[WHITE]) << fen;
    EXPECT_EQ(evaluation.king_defence[WHITE], reference.king_defence[WHITE]) << fen;
  }
}

TEST(ZoneBalanceTerm, PlayForAPawn) {
  // A pawn down, the side with the stronger attack plays for it; both ways round by colour.
  const char* const white_down = "4k3/pp6/8/8/8/8/P7/4K3 w - - 0 1";
  for (const auto& [fen, white_attack, black_attack, expected] : {
           std::tuple{white_down, -1, 0, ScorePair{-20, -12}},
           {white_down, 30, 5, ScorePair{-4, 10}},   // 5 < 30 / 2 and 30 > 5 + 20
           {white_down, 30, 15, ScorePair{-13, 4}},  // 15 is not below 15; 30 > 15 + 10
           {white_down, 25, 15, ScorePair{-16, 0}},
           {"4k3/8/8/8/8/8/PP6/4K3 w - - 0 1", 0, 50, ScorePair{}},  // two pawns: no compensation
           {"4k3/p7/8/8/8/8/P7/4K3 w - - 0 1", 0, 50, ScorePair{}}}) {
    const Board board = BoardFromFen(fen), flipped = ColourFlipped(board);
    for (const int colour : {WHITE, BLACK}) {
      const Board& position = colour == WHITE ? board : flipped;
      EvaluationState evaluation;
      PrepareForPieceTerms(evaluation, position);
      // Spread over the wings: only the sums count.
      evaluation.zone_units[colour][QUEENSIDE].attack = std::int16_t(white_attack - 3);
      evaluation.zone_units[colour][CENTRE].attack = 3;
      evaluation.zone_units[colour ^ 1][KINGSIDE].attack = std::int16_t(black_attack);
      EXPECT_EQ(ZoneBalanceTerm(evaluation, position), colour == WHITE ? expected : -expected)
          << fen << " " << white_attack << " " << black_attack << " colour " << colour;
    }
  }
}
