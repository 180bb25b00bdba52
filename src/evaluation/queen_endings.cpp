#include "evaluation/queen_endings.h"

#include "chess/bitboard.h"
#include "chess/board_tables.h"
#include "evaluation/ending_evaluators.h"
#include "evaluation/ending_frame.h"
#include "evaluation/square_table.h"

namespace {

// clang-format off
constexpr SquareTable EndingQueen = {{
     -8,  -3,  -2,  -2,  -2,  -2,  -3,  -8,
     -3,  -2,   0,   1,   1,   0,  -2,  -3,
     -2,   0,   3,   5,   5,   3,   0,  -2,
     -2,   1,   5,   7,   7,   5,   1,  -2,
     -2,   1,   5,   7,   7,   5,   1,  -2,
     -2,   0,   3,   5,   5,   3,   0,  -2,
     -3,  -2,   0,   1,   1,   0,  -2,  -3,
     -8,  -3,  -2,  -2,  -2,  -2,  -3,  -8,
}};

constexpr SquareTable EndingQueen2 = {{
    -14,  -9,  -8,  -8,  -8,  -8,  -9, -14,
     -9,  -6,  -3,  -1,  -1,  -3,  -6,  -9,
     -8,  -3,   6,  10,  10,   6,  -3,  -8,
     -8,  -1,  10,  14,  14,  10,  -1,  -8,
     -8,  -1,  10,  14,  14,  10,  -1,  -8,
     -8,  -3,   6,  10,  10,   6,  -3,  -8,
     -9,  -6,  -3,  -1,  -1,  -3,  -6,  -9,
    -14,  -9,  -8,  -8,  -8,  -8,  -9, -14,
}};
// clang-format on

// A side at least this far behind looks for checks.
constexpr int BEHIND_FOR_CHECKS = 90;
constexpr int CHECKS_ON_MOVE_BASE = 33;
constexpr int CHECKS_ON_MOVE_EACH = 4;
constexpr int CHECKS_BASE = 16;
constexpr int CHECKS_EACH = 2;
constexpr int PINNED_TO_QUEEN = -30;
constexpr int PER_STEP_FROM_KING = -2;
constexpr int SEVENTH_WITH_KING_CUT_OFF = 55;

// By the rank of the most advanced passer from its side; none counts as QUEEN_NO_PASSER.
constexpr int QueenPassed[7] = {0, -50, -52, -30, 10, 75, 160};
constexpr int QUEEN_NO_PASSER = -45;
// The side on move in a queen ending has the first check.
constexpr int QUEEN_ENDING_TEMPO = 24;

// Safe squares from which the queen would check the enemy king.
int CheckingSquares(const Board& board, int colour, int queen) {
  const PieceSet& own = board.Pieces(colour);
  const PieceSet& enemy = board.Pieces(colour ^ 1);
  const int king = int(enemy.king_square);
  Bitboard checks = board.QueenAttacksFrom(queen) & ~own.all & board.QueenAttacksFrom(king) &
                    ~BoardTables.KingAttacks[king] & ~PawnAttacksOf(colour ^ 1, enemy.pawns);
  int count = 0;
  while (checks != 0) {
    const int square = FindHighestBit(checks);
    checks ^= SquareBit(square);
    if (!board.IsAttacked(square, enemy)) ++count;
  }
  return count;
}

int ChecksTerm(const Board& board, int colour, int queen) {
  const int c = CheckingSquares(board, colour, queen);
  if (c == 0) return 0;
  if (int(board.side_on_move) == colour && !board.IsOpponentInCheck())
    return CHECKS_ON_MOVE_EACH * c + CHECKS_ON_MOVE_BASE;
  return CHECKS_EACH * c + CHECKS_BASE;
}

int PassedRankTerm(const EvaluationState& evaluation, int colour) {
  const Bitboard passers = evaluation.pawns[colour].frontmost_passed;
  if (passers == 0) return QUEEN_NO_PASSER;
  const int front = colour == WHITE ? FindHighestBit(passers) : FindLowestBit(passers);
  return QueenPassed[RankFromOwnSide(colour, front)];
}

// Each half truncates on its own. A queen each is what the type promises; a missing one counts
// nothing rather than a queen on a1.
int QueenPlace(const Board& board, int colour) {
  const Bitboard queens = board.Pieces(colour).queens;
  return queens != 0 ? EndingQueen2.For(colour, FindHighestBit(queens)) / 2 : 0;
}

}  // namespace

int EndingQueenTerm(EvaluationState& evaluation, const Board& board, int colour,
                    int white_material) {
  const PieceSet& own = board.Pieces(colour);
  const PieceSet& enemy = board.Pieces(colour ^ 1);
  const int own_king = int(own.king_square);
  const int enemy_king = int(enemy.king_square);
  const int behind = colour == WHITE ? -white_material : white_material;
  int sum = 0;
  for (Bitboard queens = own.queens; queens != 0;) {
    const int square = FindHighestBit(queens);
    queens ^= SquareBit(square);
    const Bitboard attacks = board.QueenAttacksFrom(square);
    evaluation.attacked[colour] |= attacks;
    sum += EndingQueen.For(colour, square);
    if (behind >= BEHIND_FOR_CHECKS) sum += ChecksTerm(board, colour, square);
    const Bitboard pinned =
        board.FindPinned(attacks & own.all & ~SquareBit(own_king), enemy, square, ~Bitboard{0});
    sum += PINNED_TO_QUEEN * PopCount(pinned);
    sum += PER_STEP_FROM_KING * (BoardTables.ManhattanDistance[square][own_king] +
                                 BoardTables.ManhattanDistance[square][enemy_king]);
    if (RankFromOwnSide(colour, square) == 6 && RankFromOwnSide(colour, enemy_king) >= 6)
      sum += SEVENTH_WITH_KING_CUT_OFF;
  }
  return sum;
}

int QueenEndingPlacement(const EvaluationState& evaluation, const Board& board) {
  return QueenPlace(board, WHITE) - QueenPlace(board, BLACK) + PassedRankTerm(evaluation, WHITE) -
         PassedRankTerm(evaluation, BLACK);
}

int ScaleByChecks(const Board& board, int v) {
  const PieceSet& own = board.Own();
  const PieceSet& enemy = board.Enemy();
  if (own.queens == 0 || enemy.queens == 0) return v;
  const int king = int(enemy.king_square);
  const Bitboard own_queen = board.QueenAttacksFrom(FindHighestBit(own.queens));
  const Bitboard enemy_queen = board.QueenAttacksFrom(FindHighestBit(enemy.queens));
  const Bitboard king_zone = BoardTables.KingAttacks[king];
  const int enemy_colour = int(board.side_on_move) ^ 1;
  const Bitboard checks = board.QueenAttacksFrom(king) & own_queen & ~enemy_queen & ~king_zone &
                          ~PawnAttacksOf(enemy_colour, enemy.pawns);
  if (checks == 0) return v;
  const bool guard = ((king_zone | SquareBit(king)) & enemy_queen) != 0;
  const int w = v * (guard ? 5 : 3);
  const Bitboard shelter = enemy.pawns & king_zone & ~FILE_A & ~(FILE_A << 7);
  const int c = PopCount(shelter);
  return c != 0 ? (c + 6) * (w / 8) / 8 : 4 * (w / 8) / 8;
}

int EvaluateQueenEnding(EvaluationState& evaluation, const Board& board, int beta, bool& lazy) {
  const int e = EvaluateEnding(evaluation, board, beta, lazy);
  if (lazy) return e;
  // The material counts half here: with queens on, checks weigh as much as a pawn.
  const int v = e - board.Material() / 2 + QUEEN_ENDING_TEMPO +
                ForSideOnMove(board, QueenEndingPlacement(evaluation, board));
  return v >= 0 ? v : ScaleByChecks(board, v);
}
