// The running score of the pawn structure in the opening and middlegame: a pair from White's
// view, and the attack and defence units of each colour by wing.
#pragma once

#include "evaluation/evaluation_state.h"
#include "evaluation/score_pair.h"

class PawnScoreSheet {
 public:
  explicit PawnScoreSheet(ZoneUnits (&units)[2][3]) : units(units) {}

  // A term of the colour, from its own view.
  void Add(int colour, ScorePair term) {
    if (colour == WHITE) {
      pair += term;
    } else {
      pair -= term;
    }
  }
  void Attack(int colour, int wing, int n) { Bump(units[colour][wing].attack, n); }
  void Defence(int colour, int wing, int n) { Bump(units[colour][wing].defence, n); }

  ScorePair pair;

 private:
  static void Bump(std::int16_t& field, int n) { field = std::int16_t(field + n); }
  ZoneUnits (&units)[2][3];
};
