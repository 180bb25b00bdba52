#include "kpk_solver.h"

#include "chess/board_tables.h"

namespace KpkSolver {

namespace {

bool Adjacent(int a, int b) { return (BoardTables.KingAttacks[a] & SquareBit(b)) != 0; }

Bitboard PawnAttacks(int pawn) { return BoardTables.PawnAttacks[WHITE][pawn]; }

struct Step {
  int file, rank;
};
constexpr Step STEPS[8] = {{1, 0}, {-1, 0}, {0, 1}, {0, -1}, {1, 1}, {1, -1}, {-1, 1}, {-1, -1}};

// A rook's or a queen's attacks on a board that holds only the blocker. The bare king is no
// blocker: stepping back along the line keeps it in the line of fire.
Bitboard SliderAttacks(int type, int square, Bitboard blockers) {
  Bitboard attacks = 0;
  for (int d = 0; d < (type == ROOK ? 4 : 8); ++d) {
    int file = File(square), rank = Rank(square);
    for (;;) {
      file += STEPS[d].file, rank += STEPS[d].rank;
      if (file < 0 || file > 7 || rank < 0 || rank > 7) break;
      attacks |= SquareBit(MakeSquare(file, rank));
      if (blockers & SquareBit(MakeSquare(file, rank))) break;
    }
  }
  return attacks;
}

}  // namespace

bool PromotionWins(int promotion_square, int king, int bare_king) {
  const bool capturable =
      Adjacent(bare_king, promotion_square) && !Adjacent(king, promotion_square);
  if (capturable) return false;
  for (int type : {QUEEN, ROOK}) {
    const Bitboard attacked = SliderAttacks(type, promotion_square, SquareBit(king)) |
                              BoardTables.KingAttacks[king] | SquareBit(promotion_square);
    const bool in_check = (attacked & SquareBit(bare_king)) != 0;
    // The new piece's own square counts as attacked: the bare king cannot take it here.
    const Bitboard escapes = BoardTables.KingAttacks[bare_king] & ~attacked;
    if (in_check || escapes != 0) return true;
  }
  return false;
}

Solution::Solution() : won_(2 * 64 * 64 * 64, false) {
  for (bool changed = true; changed;) {
    changed = false;
    for (int pawn = A2; pawn <= H7; ++pawn)
      for (int king = 0; king < 64; ++king)
        for (int bare_king = 0; bare_king < 64; ++bare_king)
          for (int side : {PAWN_SIDE, BARE_KING_SIDE}) {
            const int index = Index(side, pawn, king, bare_king);
            if (won_[index] || !IsLegal(side, pawn, king, bare_king)) continue;
            const bool wins = side == PAWN_SIDE ? PawnSideCanWin(pawn, king, bare_king)
                                                : BareKingMustLose(pawn, king, bare_king);
            if (wins) won_[index] = changed = true;
          }
  }
}

bool Solution::IsLegal(int side, int pawn, int king, int bare_king) const {
  if (pawn < A2 || pawn > H7) return false;
  if (pawn == king || pawn == bare_king || king == bare_king || Adjacent(king, bare_king))
    return false;
  return side == BARE_KING_SIDE || (PawnAttacks(pawn) & SquareBit(bare_king)) == 0;
}

bool Solution::PawnSideCanWin(int pawn, int king, int bare_king) const {
  for (Bitboard targets = BoardTables.KingAttacks[king]; targets; targets &= targets - 1) {
    const int to = __builtin_ctzll(targets);
    if (to != pawn && !Adjacent(to, bare_king) && won_[Index(BARE_KING_SIDE, pawn, to, bare_king)])
      return true;
  }
  const int step = pawn + 8;
  if (step == king || step == bare_king) return false;
  if (Rank(step) == 7) return PromotionWins(step, king, bare_king);
  if (won_[Index(BARE_KING_SIDE, step, king, bare_king)]) return true;
  const int jump = pawn + 16;
  return Rank(pawn) == 1 && jump != king && jump != bare_king &&
         won_[Index(BARE_KING_SIDE, jump, king, bare_king)];
}

bool Solution::BareKingMustLose(int pawn, int king, int bare_king) const {
  const Bitboard guarded = BoardTables.KingAttacks[king] | PawnAttacks(pawn);
  const Bitboard moves = BoardTables.KingAttacks[bare_king] & ~guarded;
  if (moves & SquareBit(pawn)) return false;  // takes the undefended pawn
  if (moves == 0) return false;               // stalemate
  for (Bitboard targets = moves; targets; targets &= targets - 1)
    if (!won_[Index(PAWN_SIDE, pawn, king, __builtin_ctzll(targets))]) return false;
  return true;
}

Bitboard Solution::DrawRow(int side, int pawn, int king) const {
  Bitboard row = 0;
  for (int bare_king = 0; bare_king < 64; ++bare_king)
    if (IsLegal(side, pawn, king, bare_king) && !PawnSideWins(side, pawn, king, bare_king))
      row |= SquareBit(bare_king);
  return row;
}

}  // namespace KpkSolver
