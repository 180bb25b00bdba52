// Queens: square tables, pieces pinned against the queen, a queen out early with nowhere safe to
// go, and a queen near the enemy king or far from its own.
#include "chess/bitboard.h"
#include "chess/board_tables.h"
#include "evaluation/colour_view.h"
#include "evaluation/piece_square_tables.h"
#include "evaluation/piece_terms.h"
#include "evaluation/wings.h"

namespace {

constexpr int SEVENTH_RANK = 6;
constexpr int LAST_HOME_SQUARE = 15;  // a queen above it has left its first two ranks

struct QueenRules {
  const SquareTable* positional;
  const SquareTable* reckless;
  int wing_attack;
  ScorePair early_sortie;  // taken off a queen out in the opening before its squares are counted
  ScorePair no_retreat;    // no safe square on the first two ranks
  int no_retreat_defence;
  ScorePair retreat_on_second_only;
  int retreat_on_second_only_defence;
  ScorePair seventh;
  int seventh_attack;
};

constexpr QueenRules OPENING_QUEEN{
    &QueenOpeningPositional, &QueenOpeningReckless, 10, {5, 2},
    {-18, -30}, 4, {-8, -10}, 2, {10, 18}, 6};
constexpr QueenRules MIDDLEGAME_QUEEN{
    &QueenMiddlegamePositional, &QueenMiddlegameReckless, 12, {0, 0},
    {-12, -20}, 4, {-8, -14}, 1, {15, 25}, 8};

// By the Manhattan distance to an enemy king that can no longer castle away, 1 to 15.
constexpr int QueenNearKing[16] = {0, 18, 14, 12, 6, 2, 1, 0, -1, -2, -3, -4, -5, -6, -7, -8};

// Pieces that can't move without losing the queen behind them.
ScorePair PinnedAgainstQueen(const Board& board, const ColourView& v, int square, Bitboard a) {
  const Bitboard pinned = board.FindPinned(a & v.own.all, v.other, square, ~Bitboard{0});
  const int n = PopCount(pinned);
  return {-30 * n, -30 * n};
}

// A queen out in the field with few squares that no enemy piece watches can be hunted.
ScorePair SafeSquares(const EvaluationState& evaluation, const Board& board, const ColourView& v,
                      const QueenRules& rules, int square, Bitboard a) {
  if (v.Square(square) <= LAST_HOME_SQUARE) return {};
  const int wing = PawnWing[File(square)];
  ScorePair s = -rules.early_sortie;
  const Bitboard free = a & ~evaluation.attacked_without_queens[v.enemy] & ~board.occupied;
  const Bitboard free_seen_from_white = v.Set(free);
  if (free == 0) {
    s += {-70, -110};
    v.units[CENTRE].attack -= 16;
    v.units[wing].defence -= 10;
  } else if (PopCount(free) == 1) {
    s += {-40, -70};
    v.units[CENTRE].attack -= 12;
    v.units[wing].defence -= 8;
  } else if (!(free_seen_from_white & (RANK_1 | RankMask(1)))) {
    s += rules.no_retreat;
    v.units[wing].defence -= rules.no_retreat_defence;
  } else if (!(free_seen_from_white & RANK_1)) {
    s += rules.retreat_on_second_only;
    v.units[wing].defence -= rules.retreat_on_second_only_defence;
  }
  return s;
}

// Middlegame only: the queen next to the enemy king.
ScorePair NearEnemyKing(const EvaluationState& evaluation, const ColourView& v, Bitboard a) {
  if (!(a & BoardTables.KingAttacks[v.other.king_square])) return {};
  const int king_wing = evaluation.king_zone[v.enemy];
  v.units[king_wing].attack += 4;
  v.enemy_units[king_wing].defence -= 4;
  return {0, 8};
}

// Middlegame only: the queen against an enemy king that can no longer castle away, and a queen
// that strays too far from its own king once castling is gone.
ScorePair KingsWithoutCastling(const EvaluationState& evaluation, const Board& board,
                               const ColourView& v, int square, Bitboard a) {
  ScorePair s;
  const int enemy_king = int(v.other.king_square);
  const int own_king = int(v.own.king_square);
  if (CastlingRightsOf(board, v.enemy) == 0) {
    const int m = BoardTables.ManhattanDistance[square][enemy_king];
    s += {-m, -3 * m};
    v.units[evaluation.king_zone[v.enemy]].attack += QueenNearKing[m];
  }
  if (v.CastlingRights(board) == 0 && BoardTables.ManhattanDistance[square][own_king] > 8 &&
      !(a & BoardTables.KingAttacks[own_king])) {
    // Could it come back to guard the king over squares the enemy does not watch?
    const Bitboard safe_reach = a & ~evaluation.attacked_without_queens[v.enemy];
    if (!(board.QueenAttacksFrom(own_king) & safe_reach)) {
      s += {-8, -20};
      v.units[evaluation.king_zone[v.colour]].defence -= 16;
    }
  }
  return s;
}

}  // namespace

ScorePair QueenTerm(EvaluationState& evaluation, const Board& board, int colour, bool middlegame) {
  const QueenRules& rules = middlegame ? MIDDLEGAME_QUEEN : OPENING_QUEEN;
  const ColourView v(evaluation, board, colour);
  ScorePair s;
  for (Bitboard rest = v.own.queens; rest != 0;) {
    const int square = PopHighest(rest);
    const int table_square = v.Square(square);
    const int wing = PawnWing[File(square)];
    v.units[CENTRE].attack += 6;
    v.units[wing].attack += rules.wing_attack;
    s += {(*rules.positional)[table_square], (*rules.reckless)[table_square]};
    const Bitboard a = board.QueenAttacksFrom(square);
    evaluation.attacked[colour] |= a;
    s += PinnedAgainstQueen(board, v, square, a);
    if (middlegame) s += NearEnemyKing(evaluation, v, a);
    s += SafeSquares(evaluation, board, v, rules, square, a);
    if (middlegame) s += KingsWithoutCastling(evaluation, board, v, square, a);
    if (v.RankOf(square) == SEVENTH_RANK && v.RankOf(v.other.king_square) >= SEVENTH_RANK) {
      s += rules.seventh;
      v.units[evaluation.king_zone[v.enemy]].attack += rules.seventh_attack;
    }
  }
  return s;
}
