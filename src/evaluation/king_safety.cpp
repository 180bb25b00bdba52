#include "evaluation/king_safety.h"

#include <algorithm>
#include <cmath>

#include "chess/bitboard.h"
#include "evaluation/colour_view.h"
#include "evaluation/king_shelter.h"
#include "evaluation/wings.h"

namespace {

// Every king starts a little in debt: safety has to be earned.
constexpr ScorePair KING_BASE{-20, -100};
// A king that has not castled yet is not safe yet, however good the squares it may go to.
constexpr ScorePair UNCASTLED{65, 75};

// By the occupied squares between the king and the castled position, 0 to 3; subtracted.
constexpr ScorePair CastlingPathBlocked[4] = {{-4, -8}, {4, 8}, {8, 10}, {12, 14}};

// By openness / 2: how much the king's safety matters where lines are open.
constexpr int KingOpenScale[8] = {6, 6, 7, 8, 8, 9, 10, 11};

constexpr Bitboard SHORT_PATH = SquareSet({F1, G1});
constexpr Bitboard LONG_PATH = SquareSet({B1, C1, D1});

// Castling is out for now when the enemy watches a square the king must cross or land on.
int UsableRights(const EvaluationState& evaluation, int rights) {
  struct Watch {
    int right;
    int colour;
    Bitboard squares;
  };
  constexpr Watch watches[4] = {
      {WHITE_SHORT, WHITE, SHORT_PATH},
      {WHITE_LONG, WHITE, LONG_PATH},
      {BLACK_SHORT, BLACK, MirrorRanksOfSet(SHORT_PATH)},
      {BLACK_LONG, BLACK, MirrorRanksOfSet(LONG_PATH)},
  };
  for (const Watch& w : watches)
    if (evaluation.attacked[w.colour ^ 1] & w.squares) rights &= ~w.right;
  return rights;
}

int TruncatedMean(ScorePair s) { return (s.positional + s.reckless) / 2; }

// The king where it stands, or the better of the castled positions still open to it.
ScorePair ShelterOfColour(EvaluationState& evaluation, const Board& board, int colour, int rights) {
  const ColourView v(evaluation, board, colour);
  const bool can_short = (rights & (colour == WHITE ? WHITE_SHORT : BLACK_SHORT)) != 0;
  const bool can_long = (rights & (colour == WHITE ? WHITE_LONG : BLACK_LONG)) != 0;
  if (!can_short && !can_long) {
    // In this order: the corner adjusts the units that the shelter sets.
    const ScorePair shelter = ShelterAt(evaluation, board, int(v.own.king_square), colour);
    return shelter + CornerTerm(evaluation, board, colour);
  }
  ScorePair s;
  Bitboard path;
  if (can_short && can_long) {
    const ScorePair long_side = ShelterAt(evaluation, board, v.Square(B1), colour);
    const ShelterFields long_fields = ShelterFields::Of(evaluation, colour);
    const ScorePair short_side = ShelterAt(evaluation, board, v.Square(G1), colour);
    if (TruncatedMean(short_side) < TruncatedMean(long_side)) {
      s = long_side;
      long_fields.RestoreTo(evaluation, colour);
      path = LONG_PATH;
    } else {
      s = short_side;
      path = SHORT_PATH;
    }
  } else if (can_short) {
    s = ShelterAt(evaluation, board, v.Square(G1), colour);
    path = SHORT_PATH;
  } else {
    s = ShelterAt(evaluation, board, v.Square(B1), colour);
    path = LONG_PATH;
  }
  return s - CastlingPathBlocked[PopCount(board.occupied & v.Set(path))];
}

int ScaleOne(int x, int scale, double weight) {
  // x * scale / 8 stays an integer; adding 0.5 and truncating rounds negatives towards zero.
  return int((x * scale / 8) * weight + 0.5);
}

ScorePair ScaleByOpennessAndPhase(const EvaluationState& evaluation, ScorePair s) {
  const int scale = KingOpenScale[std::clamp(evaluation.openness >> 1, 0, 7)];
  const double weight = 1.2 - evaluation.endgame_factor;
  return {ScaleOne(s.positional, scale, weight), ScaleOne(s.reckless, scale, weight)};
}

// A king in danger makes its reckless deficit weigh up to 1.2 times; a safe one only 0.2 times.
ScorePair WeighByDanger(const EvaluationState& evaluation, ScorePair s, int colour) {
  if (s.reckless >= 0) return s;
  const double factor = std::min(0.2 + evaluation.attack_curve[colour], 1.2);
  s.reckless = std::int16_t(std::lround(s.reckless * factor));
  return s;
}

ScorePair ThreeEighths(ScorePair s) { return {s.positional * 3 / 8, s.reckless * 3 / 8}; }

}  // namespace

ScorePair KingSafetyTerm(EvaluationState& evaluation, const Board& board) {
  ScorePair side[2] = {KING_BASE, KING_BASE};
  const int rights = board.Castling();
  for (int colour = WHITE; colour <= BLACK; ++colour) {
    if (!CastlingRightsOf(board, colour)) continue;
    side[colour] -= UNCASTLED;
    evaluation.zone_units[colour][CENTRE].attack -= 4;
    evaluation.zone_units[colour][CENTRE].defence -= 6;
  }
  const int usable = UsableRights(evaluation, rights);
  for (int colour = WHITE; colour <= BLACK; ++colour)
    side[colour] += ShelterOfColour(evaluation, board, colour, usable);
  // Without the enemy queen the king has much less to fear.
  if (!board.white.queens) side[BLACK] = ThreeEighths(side[BLACK]);
  if (!board.black.queens) side[WHITE] = ThreeEighths(side[WHITE]);
  for (int colour = WHITE; colour <= BLACK; ++colour) {
    side[colour] = ScaleByOpennessAndPhase(evaluation, side[colour]);
    side[colour] = WeighByDanger(evaluation, side[colour], colour);
  }
  return side[WHITE] - side[BLACK];
}

ScorePair ZoneBalanceTerm(EvaluationState& evaluation, const Board& board) {
  const int pawn_difference = PopCount(board.white.pawns) - PopCount(board.black.pawns);
  if (pawn_difference != 1 && pawn_difference != -1) return {};
  int wa = 0;
  int ba = 0;
  for (int wing = QUEENSIDE; wing <= CENTRE; ++wing) {
    wa += evaluation.zone_units[WHITE][wing].attack;
    ba += evaluation.zone_units[BLACK][wing].attack;
  }
  // The side a pawn down: how much play does it have for it? Scores from its own view, then
  // turned to White's.
  const int down_attack = pawn_difference == -1 ? wa : ba;
  const int up_attack = pawn_difference == -1 ? ba : wa;
  ScorePair s;
  if (down_attack < 0) {
    s = {-20, -12};
  } else if (up_attack < down_attack >> 1 && down_attack > up_attack + 20) {
    s = {-4, 10};
  } else if (down_attack > up_attack + 10) {
    s = {-13, 4};
  } else {
    s = {-16, 0};
  }
  return pawn_difference == -1 ? s : -s;
}
