// King and pawn against king, solved from the rules alone by a fixed-point iteration over every
// placement. The pawn moves up the board; index order: [side][pawn][pawn side's king][bare king],
// side 0 when the pawn side is on move.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "chess/basic.h"

namespace KpkSolver {

constexpr int PAWN_SIDE = 0;
constexpr int BARE_KING_SIDE = 1;

class Solution {
 public:
  Solution();

  bool IsLegal(int side, int pawn, int king, int bare_king) const;
  bool PawnSideWins(int side, int pawn, int king, int bare_king) const {
    return won_[Index(side, pawn, king, bare_king)];
  }
  // The table the engine embeds: a set bit is a legal draw.
  Bitboard DrawRow(int side, int pawn, int king) const;

 private:
  static int Index(int side, int pawn, int king, int bare_king) {
    return ((side * 64 + pawn) * 64 + king) * 64 + bare_king;
  }
  bool PawnSideCanWin(int pawn, int king, int bare_king) const;
  bool BareKingMustLose(int pawn, int king, int bare_king) const;

  std::vector<bool> won_;
};

// Whether promoting on the eighth rank to a queen or a rook wins at once: the new piece must
// neither fall to the bare king nor leave it without a move while out of check.
bool PromotionWins(int promotion_square, int king, int bare_king);

}  // namespace KpkSolver
