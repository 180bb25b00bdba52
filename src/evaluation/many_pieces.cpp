#include "evaluation/many_pieces.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "chess/board_tables.h"
#include "evaluation/blend.h"
#include "evaluation/king_safety.h"
#include "evaluation/material.h"
#include "evaluation/pawn_structure.h"
#include "evaluation/piece_terms.h"
#include "evaluation/wings.h"
#include "search/position_type.h"

namespace {

constexpr int OPENING_LAZY_MARGIN = 285;
constexpr int MIDDLEGAME_LAZY_MARGIN = 275;

// From White's view to the side on move's.
int ForSideOnMove(const Board& board, int white_view) {
  return board.side_on_move == WHITE ? white_view : -white_view;
}

ScorePair PieceTermsOfBothColours(EvaluationState& evaluation, const Board& board,
                                  bool middlegame) {
  ScorePair s;
  if (board.white.knights) s += KnightTerm(evaluation, board, WHITE, middlegame);
  if (board.black.knights) s -= KnightTerm(evaluation, board, BLACK, middlegame);
  if (board.white.bishops) s += BishopTerm(evaluation, board, WHITE);
  if (board.black.bishops) s -= BishopTerm(evaluation, board, BLACK);
  if (board.white.rooks) s += RookTerm(evaluation, board, WHITE);
  if (board.black.rooks) s -= RookTerm(evaluation, board, BLACK);
  for (int colour = WHITE; colour <= BLACK; ++colour)
    evaluation.attacked_without_queens[colour] = evaluation.attacked[colour];
  if (board.white.queens) s += QueenTerm(evaluation, board, WHITE, middlegame);
  if (board.black.queens) s -= QueenTerm(evaluation, board, BLACK, middlegame);
  return s;
}

// The terms that every full evaluation needs first: they are all that the lazy exit looks at.
ScorePair MaterialAndPassers(EvaluationState& evaluation, const Board& board) {
  evaluation.has_bishop_pair[WHITE] = HasBishopPair(board.white);
  evaluation.has_bishop_pair[BLACK] = HasBishopPair(board.black);
  ScorePair s = PassedPawnTerm(evaluation) + MaterialImbalance(board);
  if (evaluation.has_bishop_pair[WHITE]) s += BISHOP_PAIR_BONUS;
  if (evaluation.has_bishop_pair[BLACK]) s -= BISHOP_PAIR_BONUS;
  return s;
}

void PrepareKingsAndPhase(EvaluationState& evaluation, const Board& board) {
  for (int colour = WHITE; colour <= BLACK; ++colour) {
    const int king = int(board.Pieces(colour).king_square);
    evaluation.king_zone[colour] = PawnWing[File(king)];
    evaluation.attacked[colour] = BoardTables.KingAttacks[king];
  }
  evaluation.endgame_factor = EndgameFactor(MaterialWeight(board));
}

// The frame shared by the opening and the middlegame.
int EvaluateManyPieces(EvaluationState& evaluation, const Board& board, int beta, bool& lazy,
                       bool middlegame) {
  const int type = middlegame ? MIDDLEGAME : OPENING;
  ScorePair s = MaterialAndPassers(evaluation, board);
  int result = 0;
  const int margin = middlegame ? MIDDLEGAME_LAZY_MARGIN : OPENING_LAZY_MARGIN;
  if (LazyExit(board, s, beta, margin, result)) {
    lazy = true;
    return result;
  }

  PrepareFileData(evaluation, board);
  PrepareKingsAndPhase(evaluation, board);
  PrepareStructure(evaluation, board);
  s += PawnStructureTerm(evaluation, board, type);
  s += PieceTermsOfBothColours(evaluation, board, middlegame);
  s += DevelopmentTerm(evaluation, board);
  if (!middlegame) s += OpeningFormationTerm(evaluation, board);
  s += SpaceTerm(evaluation, board);
  if (middlegame) s += EndgameTrendTerm(evaluation, board);
  s += KingSafetyTerm(evaluation, board);
  s += KnightMobilityTerm(evaluation, board);
  s += ZoneBalanceTerm(evaluation, board);

  return board.Material() + ForSideOnMove(board, Blend(evaluation, board, s, middlegame));
}

}  // namespace

bool LazyExit(const Board& board, ScorePair s, int beta, int margin, int& result) {
  const int material = board.Material();
  const int d = beta - (material + ForSideOnMove(board, s.positional));
  if (std::abs(d) <= margin) return false;
  const int d2 = beta - (material + ForSideOnMove(board, s.reckless));
  if (std::abs(d2) <= margin || (d <= 0) != (d2 <= 0)) return false;
  result = d <= 0 ? beta : beta - 1;
  return true;
}

ScorePair EndgameTrendTerm(EvaluationState& evaluation, const Board& board) {
  // The turn to White's view is the same sign change as the turn from it.
  const int material = std::clamp(ForSideOnMove(board, board.Material()), -150, 150);
  const int v = material / 2 + evaluation.endgame_trend;
  evaluation.endgame_trend = std::int16_t(v);
  // std::lround rounds halves away from zero.
  const int t = int(std::lround(v * evaluation.endgame_factor));
  return {t, t / 8};
}

int EvaluateOpening(EvaluationState& evaluation, const Board& board, int beta, bool& lazy) {
  return EvaluateManyPieces(evaluation, board, beta, lazy, false);
}

int EvaluateMiddlegame(EvaluationState& evaluation, const Board& board, int beta, bool& lazy) {
  return EvaluateManyPieces(evaluation, board, beta, lazy, true);
}
