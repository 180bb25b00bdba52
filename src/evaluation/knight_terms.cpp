// Knights: square tables, the pawns that make them stronger, outposts, and their safe squares.
#include <algorithm>

#include "chess/bitboard.h"
#include "chess/board_tables.h"
#include "evaluation/colour_view.h"
#include "evaluation/piece_square_tables.h"
#include "evaluation/piece_terms.h"
#include "evaluation/wings.h"

namespace {

// The numbers in which the opening and the middlegame judge a knight differently.
struct KnightRules {
  const SquareTable* positional;
  const SquareTable* reckless;
  // Another own knight in reach: they guard each other.
  ScorePair twins;
  int twins_attack;
  int twins_defence;
  ScorePair pawn_support;
  // From the fourth rank on: no enemy pawn can ever chase it away.
  ScorePair unassailable;
  // From the fifth rank on, unassailable, the file ahead free of enemy pawns, and held by a pawn
  // that is not itself passed: an outpost that will stand for good.
  int outpost_attack;
  int outpost_defence;
  ScorePair outpost_one_pawn;
  ScorePair outpost_two_pawns;
  // Unassailable from the fifth rank on, without being such an outpost.
  int advanced_attack;
  int advanced_defence;
  ScorePair advanced_one_pawn;
  ScorePair advanced_two_pawns;
  // The enemy pawns that could chase it are all held back.
  ScorePair chasers_restrained;
  int chasers_restrained_attack;
  ScorePair chasers_free;
};

constexpr KnightRules OPENING_KNIGHT{
    &KnightOpeningPositional, &KnightOpeningReckless,
    {0, 0}, 0, 1,
    {2, 0},
    {9, 14},
    6, 3, {13, 18}, {21, 27},
    4, 2, {3, 7}, {5, 12},
    {2, 10}, 3,
    {-2, -4},
};

constexpr KnightRules MIDDLEGAME_KNIGHT{
    &KnightMiddlegamePositional, &KnightMiddlegameReckless,
    {1, -2}, -2, 4,
    {2, 2},
    {13, 23},
    7, 4, {13, 20}, {25, 32},
    4, 3, {2, 10}, {6, 14},
    {3, 10}, 2,
    {2, 4},
};

// By openness / 2: a knight is at its best where the pawns close the lines for the long-range
// pieces.
constexpr int KnightOpenReckless[8] = {15, 12, 6, 3, 2, 0, -2, -5};
constexpr int KnightOpenAttack[8] = {6, 5, 3, 2, 1, 1, 0, 0};

// By the number of safe squares, 4 and more counting as 4.
constexpr ScorePair KnightMobility[5] = {{-6, -12}, {-2, -4}, {2, 4}, {3, 6}, {4, 8}};
constexpr int KnightMobilityUnits[5] = {-6, -3, 0, 1, 2};

constexpr int FOURTH_RANK = 3;
constexpr int FIFTH_RANK = 4;

int OpennessIndex(const EvaluationState& evaluation) {
  return std::clamp(evaluation.openness >> 1, 0, 7);
}

// Far from the enemy king a knight does little; near it, on the king's own wing, it is an
// attacker.
ScorePair KingDistanceAndOpenness(EvaluationState& evaluation, const ColourView& v, int square,
                                  int wing) {
  ScorePair s;
  const int distance = BoardTables.Distance[square][v.other.king_square];
  if (!(distance < 5 && wing == evaluation.king_zone[v.enemy])) s += {-distance, -8 * distance};
  const int open = OpennessIndex(evaluation);
  s.reckless = std::int16_t(s.reckless + KnightOpenReckless[open]);
  v.units[wing].attack += KnightOpenAttack[open];
  return s;
}

ScorePair ForwardPost(const EvaluationState& evaluation, const KnightRules& rules,
                      const ColourView& v, int square, Bitboard supporters) {
  ScorePair s;
  const int wing = PieceWing[File(square)];
  const int n = PopCount(supporters);
  const Bitboard enemy_pawns_ahead = BoardTables.PassedPawnMask[v.colour][square] & v.other.pawns;
  if (enemy_pawns_ahead == 0 && (supporters & ~evaluation.pawns[v.colour].passed) != 0) {
    v.units[wing].attack += rules.outpost_attack;
    v.units[wing].defence += rules.outpost_defence;
    s += n == 1 ? rules.outpost_one_pawn : rules.outpost_two_pawns;
  } else {
    v.units[wing].attack += rules.advanced_attack;
    v.units[wing].defence += rules.advanced_defence;
    if (n == 1) s += rules.advanced_one_pawn;
    if (n == 2) s += rules.advanced_two_pawns;
  }
  return s;
}

ScorePair PawnsAroundKnight(const EvaluationState& evaluation, const KnightRules& rules,
                            const ColourView& v, int square) {
  ScorePair s;
  const int wing = PieceWing[File(square)];
  if (BoardTables.KnightAttacks[square] & v.own.knights) {
    s += rules.twins;
    v.units[wing].attack += rules.twins_attack;
    v.units[wing].defence += rules.twins_defence;
  }
  // The squares from which own pawns defend the knight are those that an enemy pawn on the
  // knight's square would attack.
  const Bitboard supporters = BoardTables.PawnAttacks[v.enemy][square] & v.own.pawns;
  if (supporters) {
    s += rules.pawn_support;
    v.units[wing].defence += 1;
  }
  if (v.RankOf(square) < FOURTH_RANK) return s;
  const Bitboard chasers = BoardTables.PawnAttackSpan[v.colour][square] & v.other.pawns;
  if (chasers == 0) {
    s += rules.unassailable;
    if (v.RankOf(square) >= FIFTH_RANK) s += ForwardPost(evaluation, rules, v, square, supporters);
  } else if ((chasers & ~evaluation.pawns[v.enemy].restrained) == 0) {
    s += rules.chasers_restrained;
    v.units[wing].attack += rules.chasers_restrained_attack;
  } else {
    s += rules.chasers_free;
  }
  return s;
}

}  // namespace

ScorePair KnightTerm(EvaluationState& evaluation, const Board& board, int colour, bool middlegame) {
  const KnightRules& rules = middlegame ? MIDDLEGAME_KNIGHT : OPENING_KNIGHT;
  const ColourView v(evaluation, board, colour);
  // Knights gain with the pawns on the board: the more, the fewer open lines for the others.
  const int pawns = PopCount(board.white.pawns | board.black.pawns);
  const int pawn_bonus = 6 * std::min(8, pawns / 2) - 30;
  ScorePair s;
  for (Bitboard rest = v.own.knights; rest != 0;) {
    const int square = PopHighest(rest);
    const int table_square = v.Square(square);
    const int wing = PieceWing[File(square)];
    s += {pawn_bonus + (*rules.positional)[table_square],
          pawn_bonus + (*rules.reckless)[table_square]};
    v.units[wing].attack += KnightUnits[table_square];
    evaluation.attacked[colour] |= BoardTables.KnightAttacks[square];
    if (middlegame) s += KingDistanceAndOpenness(evaluation, v, square, wing);
    s += PawnsAroundKnight(evaluation, rules, v, square);
  }
  return s;
}

ScorePair KnightMobilityTerm(EvaluationState& evaluation, const Board& board) {
  ScorePair s;
  for (int colour = WHITE; colour <= BLACK; ++colour) {
    const ColourView v(evaluation, board, colour);
    const Bitboard unsafe = evaluation.pawns[v.enemy].pawn_attacks | board.occupied;
    // A square that the enemy's pieces see is still good when an own pawn holds it.
    const Bitboard watched =
        evaluation.attacked_without_queens[v.enemy] & ~evaluation.pawns[colour].pawn_attacks;
    ScorePair side;
    for (Bitboard rest = v.own.knights; rest != 0;) {
      const int square = PopHighest(rest);
      const Bitboard good = BoardTables.KnightAttacks[square] & ~unsafe & ~watched;
      const int n = std::min(PopCount(good), 4);
      side += KnightMobility[n];
      v.units[CENTRE].attack += KnightMobilityUnits[n];
      v.units[CENTRE].defence += KnightMobilityUnits[n];
    }
    if (colour == WHITE) {
      s += side;
    } else {
      s -= side;
    }
  }
  return s;
}
