#include "evaluation/pawn_endings.h"

#include "chess/bitboard.h"
#include "chess/board_tables.h"
#include "evaluation/ending_evaluators.h"
#include "evaluation/ending_frame.h"
#include "evaluation/passed_pawn_quick.h"
#include "evaluation/pawn_structure.h"
#include "evaluation/pawn_races.h"

namespace {

// In a pawn ending a pawn is all there is: everything weighs three times.
constexpr int PAWN_ENDING_WEIGHT = 3;
constexpr int PAWN_ENDING_LAZY_MARGIN = 3000;
// A pawn at home that can still take two steps in safety keeps a tempo in reserve.
constexpr int SPARE_TEMPO = 16;
// Passers on both wings stretch a lone king too far.
constexpr int PASSERS_ON_BOTH_WINGS = 60;

constexpr Bitboard FILES_A_B = FILE_A | FILE_A << 1;
constexpr Bitboard FILES_G_H = FILE_A << 6 | FILE_A << 7;

// One king step from every square of `squares`, edges respected.
Bitboard KingSteps(Bitboard squares) {
  const Bitboard not_a = ~FILE_A, not_h = ~FileMask(7);
  const Bitboard sideways = ((squares & not_a) >> 1) | ((squares & not_h) << 1);
  const Bitboard row = squares | sideways;
  return sideways | (row << 8) | (row >> 8);
}

int SpareTemposOf(const EvaluationState& evaluation, const Board& board, int colour) {
  const int home = colour == WHITE ? 1 : 6;
  const Bitboard safe = evaluation.pawns[colour].safe_advance;
  int count = 0;
  for (Bitboard pawns = board.Pieces(colour).pawns & RankMask(home); pawns != 0;) {
    const int pawn = FindHighestBit(pawns);
    pawns ^= SquareBit(pawn);
    const Bitboard steps = colour == WHITE ? SquareBit(pawn + 8) | SquareBit(pawn + 16)
                                           : SquareBit(pawn - 8) | SquareBit(pawn - 16);
    if ((safe & steps) == steps) ++count;
  }
  return count;
}

bool PassersOnBothWings(const EvaluationState& evaluation, int colour) {
  const Bitboard passed = evaluation.pawns[colour].passed;
  return (passed & FILES_A_B) != 0 && (passed & FILES_G_H) != 0;
}

int WingsTerm(const EvaluationState& evaluation) {
  return (PassersOnBothWings(evaluation, WHITE) ? PASSERS_ON_BOTH_WINGS : 0) -
         (PassersOnBothWings(evaluation, BLACK) ? PASSERS_ON_BOTH_WINGS : 0);
}

// Squares where a king can't go: its own pawns, what the enemy pawns and king attack, and what
// lies outside the square of an enemy passer that it must stay in.
Bitboard StartBlocked(const EvaluationState& evaluation, const Board& board, int colour) {
  const PieceSet& own = board.Pieces(colour);
  const PieceSet& enemy = board.Pieces(colour ^ 1);
  Bitboard blocked = own.pawns | BoardTables.KingAttacks[enemy.king_square] |
                     PawnAttacksOf(colour ^ 1, enemy.pawns);
  for (Bitboard passers = evaluation.pawns[colour ^ 1].frontmost_passed; passers != 0;) {
    const int pawn = FindHighestBit(passers);
    passers ^= SquareBit(pawn);
    blocked |= ~BoardTables.PawnSquare[colour ^ 1][pawn];
  }
  return blocked;
}

}  // namespace

KingRegions KingRaceRegions(const EvaluationState& evaluation, const Board& board) {
  Bitboard blocked[2] = {StartBlocked(evaluation, board, WHITE),
                         StartBlocked(evaluation, board, BLACK)};
  Bitboard frontier[2];
  KingRegions regions;
  for (int colour = WHITE; colour <= BLACK; ++colour) {
    const int king = int(board.Pieces(colour).king_square);
    regions.region[colour] = SquareBit(king);
    frontier[colour] = BoardTables.KingAttacks[king];
  }
  const int a = int(board.side_on_move), b = a ^ 1;
  const Bitboard pawns_of_a = board.Pieces(a).pawns, pawns_of_b = board.Pieces(b).pawns;
  Bitboard* region = regions.region;
  for (;;) {
    const Bitboard before_a = region[a], before_b = region[b];
    frontier[a] |= KingSteps(region[a]);
    frontier[b] |= KingSteps(region[b]);
    // The side on move steps first; what it reaches is closed to the other king.
    region[a] |= frontier[a] & ~blocked[a] & ~(pawns_of_b & frontier[b]);
    blocked[b] |= frontier[a];
    region[b] |= frontier[b] & ~blocked[b] & ~(pawns_of_a & frontier[a]);
    blocked[a] |= frontier[b];
    if (region[a] == before_a && region[b] == before_b) break;
  }
  return regions;
}

int EvaluatePawnEnding(EvaluationState& evaluation, const Board& board, int beta, bool& lazy) {
  int s = PAWN_ENDING_WEIGHT * PassedPawnQuickTerm(evaluation, board) +
          PawnRaceTerm(evaluation, board);
  const int m = WhiteMaterial(board);
  const int estimate = ForSideOnMove(
      board, ApplyBound(s + m, FindMaterialBound(board), evaluation.settings->draw_value));
  int result = 0;
  if (EndingLazyExit(estimate, beta, PAWN_ENDING_LAZY_MARGIN, result)) {
    lazy = true;
    return result;
  }

  PrepareEndingStructure(evaluation, board);
  s += PAWN_ENDING_WEIGHT * PawnEndingTerm(evaluation, board);
  s += SPARE_TEMPO *
       (SpareTemposOf(evaluation, board, WHITE) - SpareTemposOf(evaluation, board, BLACK));
  s += WingsTerm(evaluation);
  const KingRegions regions = KingRaceRegions(evaluation, board);
  s += PAWN_ENDING_WEIGHT * (PopCount(regions.region[WHITE]) - PopCount(regions.region[BLACK]));
  // Unlike the estimate, the result is not bounded.
  return PAWN_ENDING_WEIGHT * board.Material() + ForSideOnMove(board, s);
}
