#include "evaluation/minor_piece_endings.h"

#include <algorithm>

#include "chess/bitboard.h"
#include "chess/board_tables.h"
#include "chess/square_colours.h"
#include "evaluation/ending_frame.h"
#include "evaluation/square_table.h"

namespace {

// clang-format off
constexpr SquareTable EndingKnight = {{
    -55, -32, -25, -20, -20, -25, -32, -55,
    -35,   5,  16,  20,  20,  16,   5, -35,
    -20,  12,  23,  28,  28,  23,  12, -20,
    -15,  18,  24,  30,  30,  24,  18, -15,
    -15,  16,  22,  28,  28,  22,  16, -15,
    -20,  11,  18,  22,  22,  18,  11, -20,
    -22,   5,  11,  16,  16,  11,   5, -22,
    -55, -24, -22, -20, -20, -22, -24, -55,
}};

constexpr SquareTable EndingBishop = {{
    -12,   0,   1,   2,   2,   1,   0, -12,
      0,   2,   4,   5,   5,   4,   2,   0,
      1,   4,   7,   9,   9,   7,   4,   1,
      2,   5,   9,  12,  12,   9,   5,   2,
      2,   5,   9,  12,  12,   9,   6,   2,
      1,   4,   7,   9,   9,   7,   4,   1,
     -2,   2,   3,   4,   4,   3,   1,  -2,
    -12,  -3,  -3,  -2,  -2,  -3,  -3, -12,
}};
// clang-format on

// The bishop with pawns against the bare king: a sure win, unless all pawns run on one rook file
// to a corner of the other colour than the bishop.
constexpr int BISHOP_AND_PAWNS_WIN = 835;
constexpr int WRONG_BISHOP_BASE = 315;
// By the distance of the bare king to the corner, 2..8; nearer than 2 it holds the draw.
constexpr int WrongBishopLoser[9] = {0, 0, -20, 10, 20, 30, 50, 90, 120};
// By the distance of the winning king to the corner, 0..8.
constexpr int WrongBishopWinner[9] = {80, 80, 10, 0, -10, -20, -25, -30, -35};
// By the pawn's rank from its own side.
constexpr int BishopPawnRank[7] = {0, 50, 52, 55, 62, 76, 90};

constexpr Bitboard FILES_A_TO_C = FILE_A | FILE_A << 1 | FILE_A << 2;
constexpr Bitboard FILES_F_TO_H = FILE_A << 5 | FILE_A << 6 | FILE_A << 7;
constexpr Bitboard ROOK_AND_KNIGHT_FILES = FILE_A | FILE_A << 1 | FILE_A << 6 | FILE_A << 7;
constexpr Bitboard FILES_G_H = FILE_A << 6 | FILE_A << 7;
constexpr Bitboard FILES_A_B = FILE_A | FILE_A << 1;
// A knight is slow to cross the board to pawns on both wings, or on the far one.
constexpr int KNIGHT_BOTH_WINGS = 12;
constexpr int KNIGHT_FAR_WING = 8;

constexpr Bitboard OUTER_RING = FILE_A | FILE_A << 7 | RANK_1 | RANK_1 << 56;
constexpr Bitboard CENTRE = SquareBit(D4) | SquareBit(E4) | SquareBit(D5) | SquareBit(E5);
constexpr Bitboard CENTRE_RING =
    SquareBit(C3) | SquareBit(D3) | SquareBit(E3) | SquareBit(F3) | SquareBit(C4) | SquareBit(F4) |
    SquareBit(C5) | SquareBit(F5) | SquareBit(C6) | SquareBit(D6) | SquareBit(E6) | SquareBit(F6);
// By the number of squares the bishop reaches off the rim, 0..3; more count 2 each.
constexpr int BishopMobilityBase[4] = {-45, -32, -18, -10};

constexpr int TRAPPED_BISHOP = -100;
constexpr int TRAPPED_BISHOP_SHUT_IN = -180;
// A passer defended by a single pawn is worth attacking; the pair has better things to do.
constexpr int TARGET_WITH_PAIR = 4;
constexpr int TARGET_WITHOUT_PAIR = 16;

int PawnBonus(const Board& board) {
  return 6 * std::min(8, PopCount(board.white.pawns | board.black.pawns) / 2) - 30;
}

int KnightsOf(EvaluationState& evaluation, const Board& board, int colour) {
  int sum = 0;
  for (Bitboard knights = board.Pieces(colour).knights; knights != 0;) {
    const int square = FindHighestBit(knights);
    knights ^= SquareBit(square);
    sum += EndingKnight.For(colour, square) + PawnBonus(board);
    evaluation.attacked[colour] |= BoardTables.KnightAttacks[square];
  }
  return sum;
}

// Knights far from the pawns, for White's knights; the caller subtracts Black's.
int KnightPlacement(Bitboard knights, Bitboard all_pawns) {
  if ((all_pawns & FILES_A_TO_C) && (all_pawns & FILES_F_TO_H) &&
      (all_pawns & ROOK_AND_KNIGHT_FILES))
    return -KNIGHT_BOTH_WINGS * PopCount(knights);
  if (all_pawns & FILES_G_H) return -KNIGHT_FAR_WING * PopCount(knights & FILES_A_TO_C);
  if (all_pawns & FILES_A_B) return -KNIGHT_FAR_WING * PopCount(knights & FILES_F_TO_H);
  return 0;
}

int BishopMobility(const Board& board, int square, Bitboard attacks) {
  const Bitboard reach =
      (attacks | SquareBit(square)) & ~(board.white.pawns | board.black.pawns) & ~OUTER_RING;
  const int n = PopCount(reach);
  const int base = n < 4 ? BishopMobilityBase[n] : 2 * n - 15;
  return base + 2 * PopCount(reach & CENTRE) + ((3 * PopCount(reach & CENTRE_RING)) >> 1);
}

// A bishop that took the pawn in the enemy's corner and is shut in by the next one.
int TrappedBishop(const Board& board, int colour, int square) {
  const Bitboard enemy_pawns = board.Pieces(colour ^ 1).pawns;
  const int flip = colour == WHITE ? 0 : 56;
  const int as_white = square ^ flip;
  if (as_white != A7 && as_white != H7) return 0;
  const int jailer = (as_white == A7 ? B6 : G6) ^ flip;
  const int second = (as_white == A7 ? C7 : F7) ^ flip;
  if ((enemy_pawns & SquareBit(jailer)) == 0) return 0;
  return (enemy_pawns & SquareBit(second)) != 0 ? TRAPPED_BISHOP_SHUT_IN : TRAPPED_BISHOP;
}

int BishopsOf(EvaluationState& evaluation, const Board& board, int colour) {
  const PawnBlock& enemy_pawns = evaluation.pawns[colour ^ 1];
  const Bitboard weak_passers =
      enemy_pawns.passed & enemy_pawns.attacked_once & ~enemy_pawns.duo;
  Bitboard targets = 0;
  int sum = 0;
  for (Bitboard bishops = board.Pieces(colour).bishops; bishops != 0;) {
    const int square = FindHighestBit(bishops);
    bishops ^= SquareBit(square);
    const Bitboard attacks = board.BishopAttacksFrom(square);
    evaluation.attacked[colour] |= attacks;
    targets |= attacks & weak_passers;
    sum += EndingBishop.For(colour, square) + BishopMobility(board, square, attacks) +
           TrappedBishop(board, colour, square);
  }
  const int per_target =
      evaluation.has_bishop_pair[colour] ? TARGET_WITH_PAIR : TARGET_WITHOUT_PAIR;
  return sum + per_target * PopCount(targets);
}

bool OnOneColour(Bitboard bishops, Bitboard colour_squares) {
  return bishops != 0 && (bishops & ~colour_squares) == 0;
}

bool AreOppositeBishops(const EvaluationState& evaluation, const Board& board) {
  const Bitboard white = board.white.bishops;
  const Bitboard black = board.black.bishops;
  if (white == 0 || black == 0) return false;
  if (evaluation.has_bishop_pair[WHITE] || evaluation.has_bishop_pair[BLACK]) return false;
  return (OnOneColour(white, LIGHT_SQUARES) && OnOneColour(black, DARK_SQUARES)) ||
         (OnOneColour(white, DARK_SQUARES) && OnOneColour(black, LIGHT_SQUARES));
}

bool SameSquareColour(int a, int b) {
  return ((LIGHT_SQUARES >> a) & 1) == ((LIGHT_SQUARES >> b) & 1);
}

// Positive for the strong side.
int BishopAndPawnsValue(const Board& board, int strong) {
  const PieceSet& own = board.Pieces(strong);
  const Bitboard pawns = own.pawns;
  int value = BISHOP_AND_PAWNS_WIN;
  const bool rook_file_only = (pawns & ~FILE_A) == 0 || (pawns & ~(FILE_A << 7)) == 0;
  if (rook_file_only) {
    const int corner = MakeSquare(File(FindHighestBit(pawns)), strong == WHITE ? 7 : 0);
    const int bishop = FindHighestBit(own.bishops);
    if (!SameSquareColour(bishop, corner)) {
      const int winner = BoardTables.Distance[own.king_square][corner];
      const int loser = BoardTables.Distance[board.Pieces(strong ^ 1).king_square][corner];
      if (loser < 2) return 0;
      value = WRONG_BISHOP_BASE + WrongBishopLoser[loser] + WrongBishopWinner[winner];
    }
  }
  for (Bitboard rest = pawns; rest != 0;) {
    const int pawn = FindHighestBit(rest);
    rest ^= SquareBit(pawn);
    value += BishopPawnRank[RankFromOwnSide(strong, pawn)];
  }
  return value;
}

}  // namespace

bool BishopAndPawnsEnding(const Board& board, int& white_view) {
  if (board.total_piece_points != 3) return false;
  const bool white_pawns = board.white.pawns != 0;
  if (white_pawns == (board.black.pawns != 0)) return false;
  const int strong = white_pawns ? WHITE : BLACK;
  if (board.Pieces(strong).bishops == 0) return false;
  const int value = BishopAndPawnsValue(board, strong);
  white_view = strong == WHITE ? value : -value;
  return true;
}

int EndingKnightsTerm(EvaluationState& evaluation, const Board& board) {
  if ((board.white.knights | board.black.knights) == 0) return 0;
  const Bitboard all_pawns = board.white.pawns | board.black.pawns;
  return KnightsOf(evaluation, board, WHITE) - KnightsOf(evaluation, board, BLACK) +
         KnightPlacement(board.white.knights, all_pawns) -
         KnightPlacement(board.black.knights, all_pawns);
}

int EndingBishopsTerm(EvaluationState& evaluation, const Board& board, bool& opposite_bishops) {
  opposite_bishops = AreOppositeBishops(evaluation, board);
  if ((board.white.bishops | board.black.bishops) == 0) return 0;
  return BishopsOf(evaluation, board, WHITE) - BishopsOf(evaluation, board, BLACK);
}
