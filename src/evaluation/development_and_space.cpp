// Development of the minor pieces, a passive formation of the opening, and space: the squares
// that each side's pieces reach, and where on the board its men stand.
#include "chess/bitboard.h"
#include "evaluation/colour_view.h"
#include "evaluation/piece_terms.h"
#include "evaluation/wings.h"

namespace {

// Squares and sets are seen from White's side.
constexpr Bitboard QUEENSIDE_FILES = FILE_A | FileMask(1) | FileMask(2);
constexpr Bitboard KINGSIDE_FILES = FileMask(5) | FileMask(6) | FileMask(7);
constexpr Bitboard FILES_A_TO_D = FILE_A | FileMask(1) | FileMask(2) | FileMask(3);
constexpr Bitboard FILES_E_TO_H = ~FILES_A_TO_D;
constexpr Bitboard OWN_CAMP = RANK_1 | RankMask(1) | RankMask(2);
constexpr Bitboard ENEMY_CAMP = RankMask(5) | RankMask(6) | RankMask(7);
constexpr Bitboard FAR_HALF = RankMask(4) | ENEMY_CAMP;

ScorePair ForColour(int colour, ScorePair pair) { return colour == WHITE ? pair : -pair; }

ScorePair UndevelopedPieces(const ColourView& v) {
  ScorePair s;
  const auto on = [&v](Bitboard set, int square) { return v.Holds(set, square); };
  if (on(v.own.knights, B1) && on(v.own.bishops, C1)) {
    s += {-18, -45};
    v.units[QUEENSIDE].attack -= 4;
    v.units[QUEENSIDE].defence -= 8;
  }
  if (on(v.own.knights, G1) && on(v.own.bishops, F1)) {
    s += {-14, -40};
    v.units[KINGSIDE].attack -= 4;
    v.units[KINGSIDE].defence -= 6;
  }
  // A pawn pushed for a fianchetto while the bishop stays at home leaves holes for nothing.
  const Bitboard pawns = v.own.pawns;
  if (on(v.own.bishops, F1) && !on(pawns, G2) && on(pawns, G3) && (on(pawns, F2) || on(pawns, H2))) {
    s += {-8, -14};
    v.units[KINGSIDE].defence -= 4;
  }
  if (on(v.own.bishops, C1) && !on(pawns, B2) && on(pawns, B3) && (on(pawns, A2) || on(pawns, C2))) {
    s += {-5, -8};
    v.units[QUEENSIDE].defence -= 3;
  }
  return s;
}

// Knights on c3 and f3 in front of their pawns, with the e-pawn on the third rank facing a
// pawn on d5: a formation that gives the opponent the centre.
ScorePair PassiveKnights(const ColourView& v) {
  const auto on = [&v](Bitboard set, int square) { return v.Holds(set, square); };
  if (PopCount(v.own.knights) != 2 || !on(v.own.knights, C3) || !on(v.own.knights, F3) ||
      !on(v.own.pawns, C2) || !on(v.own.pawns, F2))
    return {};
  ScorePair s{-4, -8};
  v.units[CENTRE].attack -= 3;
  v.units[CENTRE].defence += 3;
  if (on(v.own.pawns, E3) && on(v.other.pawns, D5)) {
    const bool centre_locked = on(v.own.pawns, D4) && on(v.other.pawns, E4);
    s += centre_locked ? ScorePair(-25, -35) : ScorePair(-10, -20);
  }
  return s;
}

// Units for the squares that a side reaches on one wing of the other side's camp.
void WingReach(ZoneUnits& attacker, ZoneUnits& defender, int reached) {
  if (reached == 0) {
    attacker.attack -= 4;
    defender.defence += 6;
  } else {
    attacker.attack += reached == 1 ? 4 : reached == 2 ? 6 : 8;
  }
}

// Men kept back on one wing weaken the attack on the other; men far up the board add to the
// attack on their own wing.
void WhereTheMenStand(const ColourView& v) {
  const Bitboard third_rank_rooks = v.Set(v.own.rooks) & RankMask(2);
  const Bitboard men = v.Set(v.own.all);
  const Bitboard back = men & ~SquareBit(v.Square(v.own.king_square)) & ~third_rank_rooks & OWN_CAMP;
  const Bitboard forward = men & FAR_HALF;
  v.units[QUEENSIDE].attack -= 2 * PopCount(back & FILES_E_TO_H);
  v.units[KINGSIDE].attack -= 2 * PopCount(back & FILES_A_TO_D);
  v.units[QUEENSIDE].attack += 2 * PopCount(forward & FILES_A_TO_D);
  v.units[KINGSIDE].attack += 2 * PopCount(forward & FILES_E_TO_H);
}

}  // namespace

ScorePair DevelopmentTerm(EvaluationState& evaluation, const Board& board) {
  ScorePair s;
  for (int colour = WHITE; colour <= BLACK; ++colour)
    s += ForColour(colour, UndevelopedPieces(ColourView(evaluation, board, colour)));
  // The move in hand is worth a little development of its own.
  const int mover = int(board.side_on_move);
  evaluation.zone_units[mover][CENTRE].attack += 4;
  evaluation.zone_units[mover][CENTRE].defence += 6;
  return s + ForColour(mover, {6, 14});
}

ScorePair OpeningFormationTerm(EvaluationState& evaluation, const Board& board) {
  return PassiveKnights(ColourView(evaluation, board, WHITE)) -
         PassiveKnights(ColourView(evaluation, board, BLACK));
}

ScorePair SpaceTerm(EvaluationState& evaluation, const Board& board) {
  const Bitboard white_attacked = evaluation.attacked[WHITE];
  const Bitboard black_attacked = evaluation.attacked[BLACK];
  const int wa = PopCount(white_attacked);
  const int ba = PopCount(black_attacked);
  ZoneUnits* white = evaluation.zone_units[WHITE];
  ZoneUnits* black = evaluation.zone_units[BLACK];
  // A clear lead in squares reached counts as attack in the centre.
  if (wa > ba && 20 * wa > 21 * ba) {
    white[CENTRE].attack += 7 * wa > 8 * ba ? 20 : 12;
  } else if (!(wa > ba) && 20 * ba > 21 * wa) {
    black[CENTRE].attack += 7 * ba > 8 * wa ? 20 : 12;
  }
  const Bitboard black_frame = MirrorRanksOfSet(black_attacked);
  const Bitboard wing_files[2] = {QUEENSIDE_FILES, KINGSIDE_FILES};
  for (int wing = QUEENSIDE; wing <= KINGSIDE; ++wing) {
    WingReach(white[wing], black[wing], PopCount(white_attacked & wing_files[wing] & ENEMY_CAMP));
    WingReach(black[wing], white[wing], PopCount(black_frame & wing_files[wing] & ENEMY_CAMP));
  }
  WhereTheMenStand(ColourView(evaluation, board, WHITE));
  WhereTheMenStand(ColourView(evaluation, board, BLACK));
  return {2 * (wa - ba), 4 * (wa - ba)};
}
