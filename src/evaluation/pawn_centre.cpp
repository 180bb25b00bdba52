#include "evaluation/pawn_centre.h"

#include <initializer_list>

#include "evaluation/pawn_geometry.h"
#include "evaluation/pawn_sets.h"
#include "evaluation/wings.h"

namespace {

constexpr Bitboard Squares(std::initializer_list<int> squares) {
  Bitboard set = 0;
  for (int square : squares) set |= SquareBit(square);
  return set;
}

// The formations of one colour, written for White and read on the boards as that colour sees
// them. `own` and `enemy` are pawns.
void FormationsOf(int colour, Bitboard own, Bitboard enemy, PawnScoreSheet& sheet) {
  const Bitboard pawns = own | enemy;
  const auto has = [own](int square) { return (own & SquareBit(square)) != 0; };
  const auto any_pawn = [pawns](int square) { return (pawns & SquareBit(square)) != 0; };
  const auto enemy_on = [enemy](int square) { return (enemy & SquareBit(square)) != 0; };
  const auto apply = [&](ScorePair pair, int attack_wing, int attack, int defence) {
    sheet.Add(colour, pair);
    if (attack != 0) sheet.Attack(colour, attack_wing, attack);
    if (defence != 0) sheet.Defence(colour, CENTRE, defence);
  };

  // The centre pawns still at home, and what stands in their way.
  if (has(D2) && has(E2)) apply({-8, -20}, CENTRE, -6, -4);
  if (has(D2)) {
    if (any_pawn(D3)) {
      apply({-12, -20}, CENTRE, -6, -6);
    } else {
      apply({}, CENTRE, -4, -2);
    }
  }
  if (has(E2)) {
    if (any_pawn(E3)) {
      apply({-12, -20}, CENTRE, -6, -6);
    } else if (has(D2) || has(G2)) {
      apply({-7, -14}, CENTRE, -5, -4);
    }
  }
  // The queen's pawn advanced: with the c-pawn behind it, or beside it.
  if (has(D4)) {
    if (has(C2)) {
      if (enemy_on(D5)) {
        apply({-12, -20}, CENTRE, -6, 0);
      } else {
        apply({-2, -14}, CENTRE, -3, 0);
      }
    } else {
      const Bitboard b_to_e = own & (FileMask(1) | FileMask(2) | FileMask(3) | FileMask(4));
      if (b_to_e == Squares({C3, D4}) || b_to_e == Squares({C4, D4})) {
        apply({-6, 2}, CENTRE, 0, -2);
      } else {
        if (has(C3)) apply({10, 8}, CENTRE, 0, 3);
        if (has(C4)) apply({8, 12}, CENTRE, 3, 0);
      }
    }
  }
  // The king's pawn advanced, and the f-pawn behind or beside it.
  if (has(E4)) {
    if (has(F2)) {
      if (enemy_on(E5)) {
        apply({-3, -16}, KINGSIDE, -4, 0);
      } else {
        apply({0, -8}, KINGSIDE, -3, 0);
      }
    }
    if (has(F3)) apply({3, 4}, CENTRE, 0, 2);
    if (has(F4)) apply({3, 10}, KINGSIDE, 6, 0);
  }
}

}  // namespace

void CentreFormationTerm(const Board& board, PawnScoreSheet& sheet) {
  for (int colour = WHITE; colour <= BLACK; ++colour) {
    FormationsOf(colour, RelativeSet(colour, board.Pieces(colour).pawns),
                 RelativeSet(colour, board.Pieces(colour ^ 1).pawns), sheet);
  }
}

void CentreControlTerm(EvaluationState& evaluation, const Board& board, PawnScoreSheet& sheet) {
  const PawnBlock& white = evaluation.pawns[WHITE];
  const PawnBlock& black = evaluation.pawns[BLACK];
  evaluation.pawns[WHITE].unreachable_centre = UnreachableCentre(evaluation, board, WHITE);
  evaluation.pawns[BLACK].unreachable_centre = UnreachableCentre(evaluation, board, BLACK);
  const Bitboard empty_centre = CENTRE_SQUARES & ~(board.white.pawns | board.black.pawns);
  for (Bitboard rest = empty_centre; rest != 0;) {
    const int square = FindHighestBit(rest);
    const Bitboard bit = SquareBit(square);
    rest ^= bit;
    const bool wa = white.pawn_attacks & bit, ba = black.pawn_attacks & bit;
    const bool wp = white.potential_attacks & bit, bp = black.potential_attacks & bit;
    // Held by one side: worth more when the other can never contest it.
    if (wa != ba) {
      const int holder = wa ? WHITE : BLACK;
      const bool contested = holder == WHITE ? bp : wp;
      sheet.Add(holder, contested ? ScorePair{2, 4} : ScorePair{4, 12});
      sheet.Attack(holder, CENTRE, contested ? 4 : 6);
    } else if (!wa && wp != bp) {
      const int holder = wp ? WHITE : BLACK;
      sheet.Add(holder, {2, 1});
      sheet.Defence(holder, CENTRE, 2);
    }
  }
  const Bitboard d_and_e = FileMask(3) | FileMask(4);
  const int c = PopCount(board.white.pawns & d_and_e) - PopCount(board.black.pawns & d_and_e);
  if (c != 0) {
    const int ahead = c > 0 ? WHITE : BLACK;
    sheet.Add(ahead, {2, 2});
    sheet.Attack(ahead, CENTRE, 1);
  }
}
