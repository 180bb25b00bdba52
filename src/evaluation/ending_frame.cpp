#include "evaluation/ending_frame.h"

#include <algorithm>
#include <cstdlib>

#include "chess/board_tables.h"
#include "chess/square_colours.h"
#include "evaluation/ending_evaluators.h"
#include "evaluation/material.h"
#include "evaluation/minor_piece_endings.h"
#include "evaluation/passed_pawn_quick.h"
#include "evaluation/pawn_structure.h"
#include "evaluation/pawn_races.h"
#include "evaluation/queen_endings.h"
#include "evaluation/rook_endings.h"
#include "evaluation/square_table.h"
#include "evaluation/wings.h"
#include "search/position_type.h"

namespace {

// clang-format off
// For a king that must still fear mating attacks: the back ranks and the rim are safer.
constexpr SquareTable KingMiddle = {{
      4,   6,   8,   8,   8,   8,   6,   4,
      6,   8,  10,  10,  10,  10,   8,   6,
      6,   2,   0,   0,   0,   0,   2,   6,
      6,   2,   0,  -2,  -2,   0,   2,   6,
      6,   2,   0,  -2,  -2,   0,   2,   6,
      6,   2,   0,   0,   0,   0,   2,   6,
      6,   8,  10,  10,  10,  10,   8,   6,
      4,   6,   8,   8,   8,   8,   6,   4,
}};

// For a king that can come out: the centre.
constexpr SquareTable KingCentre = {{
      4,   0,   8,  12,  12,   8,   0,   4,
      4,   8,  12,  16,  16,  12,   8,   4,
      8,  12,  16,  20,  20,  16,  12,   8,
     12,  16,  20,  24,  24,  20,  16,  12,
     12,  16,  20,  24,  24,  20,  16,  12,
      8,  12,  16,  20,  20,  16,  12,   8,
      4,   8,  12,  16,  16,  12,   8,   4,
      4,   0,   8,  12,  12,   8,   0,   4,
}};
// clang-format on

// Above this weight of the enemy's pieces the king is still in danger.
constexpr int KING_DANGER_WEIGHT = 8;
// Two major pieces against a king: worth the more the fewer defenders stand by it.
constexpr int MAJORS_WITH_QUEEN = 100;
constexpr int MAJORS_WITHOUT_QUEEN = 20;
constexpr int KingCover[9] = {-10, 15, 30, 40, 45, 50, 55, 60, 65};

// By the stronger side's pawns: without pawns a lead is hard to turn into a win.
constexpr int PawnCountScale[9] = {2, 4, 5, 6, 7, 8, 9, 9, 9};
constexpr int SCALE_KEEPS_AT_LEAST = 50;
// With bishops of opposite colours, by the weaker side's pawns on the stronger bishop's colour.
constexpr int SameColourPawnScale[9] = {2, 4, 5, 6, 6, 6, 6, 6, 6};
constexpr int OPPOSITE_BISHOPS_KEEP_AT_LEAST = 250;
constexpr int BISHOPS_ONLY = 6;

constexpr int BISHOP_PAIR = 55;
// Beyond these, what the pieces and the structure still add can't change the answer.
constexpr int ENDING_LAZY_MARGIN = 700;
// Below this material the scaling applies.
constexpr int SCALING_MATERIAL = 500;

int KingPlace(const Board& board, int colour) {
  const int king = int(board.Pieces(colour).king_square);
  return SideWeight(board.Pieces(colour ^ 1)) > KING_DANGER_WEIGHT ? KingMiddle[king]
                                                                   : 2 * KingCentre[king];
}

int MajorsAgainstKing(const Board& board, int colour) {
  const PieceSet& own = board.Pieces(colour);
  if (own.major_count < 2) return 0;
  const PieceSet& enemy = board.Pieces(colour ^ 1);
  const int defenders = PopCount(enemy.all & BoardTables.KingAttacks[enemy.king_square]);
  return (own.queens != 0 ? MAJORS_WITH_QUEEN : MAJORS_WITHOUT_QUEEN) - KingCover[defenders];
}

// For a positive score of `strong`.
int ScaleForStronger(int s, const Board& board, int strong, bool opposite_bishops) {
  const int p = PopCount(board.Pieces(strong).pawns);
  const int t = p > 8 ? s : std::max(PawnCountScale[p] * s / 8, s - SCALE_KEEPS_AT_LEAST);
  if (!opposite_bishops) return t;
  int u = t * 6 / 8;
  if (board.total_piece_points == BISHOPS_ONLY) {
    const Bitboard bishops = board.Pieces(strong).bishops;
    const Bitboard colour = (bishops & LIGHT_SQUARES) != 0 ? LIGHT_SQUARES : DARK_SQUARES;
    const int q = std::min(8, PopCount(board.Pieces(strong ^ 1).pawns & colour));
    u = SameColourPawnScale[q] * u / 8;
  }
  return std::max(u, t - OPPOSITE_BISHOPS_KEEP_AT_LEAST);
}

// The terms that the lazy exit looks at; sets the bishop pairs and the race mode.
int QuickTerms(EvaluationState& evaluation, const Board& board, PawnRaceMode& mode) {
  evaluation.has_bishop_pair[WHITE] = HasBishopPair(board.white);
  evaluation.has_bishop_pair[BLACK] = HasBishopPair(board.black);
  int s = PassedPawnQuickTerm(evaluation, board);
  s += MaterialImbalance(board).positional;
  s += BarePawnsTerm(evaluation, board, mode);
  if (evaluation.has_bishop_pair[WHITE]) s += BISHOP_PAIR;
  if (evaluation.has_bishop_pair[BLACK]) s -= BISHOP_PAIR;
  return s;
}

int PieceTerms(EvaluationState& evaluation, const Board& board, int white_material,
               bool& opposite_bishops) {
  int s = EndingKnightsTerm(evaluation, board);
  s += EndingBishopsTerm(evaluation, board, opposite_bishops);
  if (board.white.rooks) s += EndingRookTerm(evaluation, board, WHITE);
  if (board.black.rooks) s -= EndingRookTerm(evaluation, board, BLACK);
  for (int colour = WHITE; colour <= BLACK; ++colour)
    evaluation.attacked_without_queens[colour] = evaluation.attacked[colour];
  if (board.white.queens) s += EndingQueenTerm(evaluation, board, WHITE, white_material);
  if (board.black.queens) s -= EndingQueenTerm(evaluation, board, BLACK, white_material);
  return s;
}

int RaceTerm(const EvaluationState& evaluation, const Board& board, PawnRaceMode mode) {
  if (mode == WHITE_RACE) return WhiteWinsRaceTerm(evaluation, board);
  if (mode == BLACK_RACE) return BlackWinsRaceTerm(evaluation, board);
  return 0;
}

}  // namespace

bool HasMatingMaterial(const PieceSet& side) {
  return side.pawns != 0 || side.major_count != 0 || side.minor_points > 6 ||
         (side.minor_points == 6 && side.bishops != 0);
}

MaterialBound FindMaterialBound(const Board& board) {
  if (!HasMatingMaterial(board.white)) return WHITE_CANNOT_WIN;
  return HasMatingMaterial(board.black) ? BOTH_CAN_WIN : BLACK_CANNOT_WIN;
}

int ApplyBound(int white_view, MaterialBound bound, int draw_value) {
  if (bound == BLACK_CANNOT_WIN) return std::max(white_view, draw_value);
  if (bound == WHITE_CANNOT_WIN) return std::min(white_view, draw_value);
  return white_view;
}

void PrepareEndingStructure(EvaluationState& evaluation, const Board& board) {
  PrepareFileData(evaluation, board);
  for (int colour = WHITE; colour <= BLACK; ++colour) {
    const int king = int(board.Pieces(colour).king_square);
    evaluation.king_zone[colour] = PawnWing[File(king)];
    evaluation.attacked[colour] = BoardTables.KingAttacks[king];
  }
  PrepareStructure(evaluation, board);
}

void CompletePawnEntry(EvaluationState& evaluation, const Board& board) {
  if (evaluation.pawn_entry_from_hash) return;
  // The stored score also looks at the frontmost passers.
  PassedPawnQuickTerm(evaluation, board);
  PrepareEndingStructure(evaluation, board);
  PawnEndingTerm(evaluation, board);
}

bool EndingLazyExit(int estimate, int beta, int margin, int& result) {
  const int d = beta - estimate;
  if (std::abs(d) <= margin) return false;
  result = d > 0 ? beta - 1 : beta;
  return true;
}

int EndingKingTerm(const Board& board) {
  return KingPlace(board, WHITE) - KingPlace(board, BLACK) + MajorsAgainstKing(board, WHITE) -
         MajorsAgainstKing(board, BLACK);
}

int ScaleEnding(int white_view, const Board& board, bool opposite_bishops) {
  if (white_view >= 0) return ScaleForStronger(white_view, board, WHITE, opposite_bishops);
  return -ScaleForStronger(-white_view, board, BLACK, opposite_bishops);
}

int EvaluateEnding(EvaluationState& evaluation, const Board& board, int beta, bool& lazy) {
  int known = 0;
  if (BishopAndPawnsEnding(board, known)) {
    CompletePawnEntry(evaluation, board);
    return ForSideOnMove(board, known);
  }
  PawnRaceMode mode = NO_RACE;
  int s = QuickTerms(evaluation, board, mode);
  const int m = WhiteMaterial(board);
  const MaterialBound bound = FindMaterialBound(board);
  const int draw_value = evaluation.settings->draw_value;
  int result = 0;
  if (EndingLazyExit(ForSideOnMove(board, ApplyBound(s + m, bound, draw_value)), beta,
                     ENDING_LAZY_MARGIN, result)) {
    lazy = true;
    return result;
  }

  PrepareEndingStructure(evaluation, board);
  s += PawnEndingTerm(evaluation, board);
  bool opposite_bishops = false;
  s += PieceTerms(evaluation, board, m, opposite_bishops);
  s += EndingKingTerm(board);
  s += RaceTerm(evaluation, board, mode);
  s += m;
  if (std::abs(m) < SCALING_MATERIAL) s = ScaleEnding(s, board, opposite_bishops);
  return ForSideOnMove(board, ApplyBound(s, bound, draw_value));
}
