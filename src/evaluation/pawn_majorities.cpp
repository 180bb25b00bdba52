#include "evaluation/pawn_majorities.h"

#include "evaluation/pawn_geometry.h"
#include "evaluation/wings.h"

namespace {

constexpr Bitboard QUEENSIDE_HALF = FileMask(0) | FileMask(1) | FileMask(2) | FileMask(3);
constexpr Bitboard KINGSIDE_HALF = ~QUEENSIDE_HALF;

// The walk goes inwards from the edge of the wing; `step` is the number of files seen minus one,
// and `FileOf(step)` the file that it reached.
PawnMajority FindOnWing(const EvaluationState& evaluation, bool kingside) {
  const auto file_of = [kingside](int step) { return kingside ? 7 - step : step; };
  const std::uint16_t* white_count = evaluation.pawns[WHITE].file_count;
  const std::uint16_t* black_count = evaluation.pawns[BLACK].file_count;
  int w = 0, b = 0, wf = 0, bf = 0;
  Bitboard mask = 0;
  for (int step = 0; step <= 4; ++step) {
    const int file = file_of(step);
    w += white_count[file];
    b += black_count[file];
    wf += white_count[file] != 0;
    bf += black_count[file] != 0;
    mask |= FileMask(file);
    if (step == 0) continue;
    // Few pawns over three or four files make no majority worth the name.
    if (step == 3 && w <= 1 && b < 2) break;
    if (step == 4 && w <= 3 && b < 4) break;
    const int next = file_of(step + 1);
    if (wf > b + black_count[next]) return {WHITE_MAJORITY, wf, b + black_count[next], mask};
    if (bf > w + white_count[next]) return {BLACK_MAJORITY, bf, w + white_count[next], mask};
  }
  return {};
}

}  // namespace

void FindMajorities(EvaluationState& evaluation) {
  evaluation.majority[QUEENSIDE] = FindOnWing(evaluation, false);
  evaluation.majority[KINGSIDE] = FindOnWing(evaluation, true);
}

Bitboard HalfOfBoard(int wing) { return wing == QUEENSIDE ? QUEENSIDE_HALF : KINGSIDE_HALF; }

bool DefendingKingIsFar(const Board& board, int wing, int majority_colour) {
  const int king = int(board.Pieces(majority_colour ^ 1).king_square);
  return (HalfOfBoard(wing) & SquareBit(king)) == 0;
}

ScorePair MajorityKingTerm(EvaluationState& evaluation, const Board& board) {
  ScorePair s;
  for (int wing = QUEENSIDE; wing <= KINGSIDE; ++wing) {
    const PawnMajority& majority = evaluation.majority[wing];
    if (majority.kind == NO_MAJORITY) continue;
    const int colour = MajorityColour(majority);
    ScorePair pair;
    int trend = 0, attack = 0;
    if (DefendingKingIsFar(board, wing, colour)) {
      pair = {20, 7};
      trend = 12;
      attack = 2;
    } else if (majority.files == 4 && majority.opposing_pawns == 3) {
      pair = {5, 14};
      trend = 20;
      attack = 5;
    }
    if (colour == WHITE) {
      s += pair;
    } else {
      s -= pair;
    }
    evaluation.endgame_trend = std::int16_t(evaluation.endgame_trend + Sign(colour) * trend);
    evaluation.zone_units[colour][wing].attack =
        std::int16_t(evaluation.zone_units[colour][wing].attack + attack);
  }
  return s;
}

int MajorityKingEndingTerm(const EvaluationState& evaluation, const Board& board) {
  int s = 0;
  for (int wing = QUEENSIDE; wing <= KINGSIDE; ++wing) {
    const PawnMajority& majority = evaluation.majority[wing];
    if (majority.kind == NO_MAJORITY) continue;
    const int colour = MajorityColour(majority);
    if (DefendingKingIsFar(board, wing, colour)) {
      s += Sign(colour) * 18;
    } else if (majority.files == 4 && majority.opposing_pawns == 3) {
      s += Sign(colour) * 14;
    }
  }
  return s;
}
