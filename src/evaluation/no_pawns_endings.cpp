#include "evaluation/no_pawns_endings.h"

#include <algorithm>
#include <cstdlib>

#include "chess/bitboard.h"
#include "chess/board_tables.h"
#include "chess/square_colours.h"
#include "evaluation/ending_evaluators.h"
#include "evaluation/ending_frame.h"
#include "evaluation/square_table.h"

namespace {

// clang-format off
constexpr SquareTable Corner = {{
    -80, -68, -56, -44, -44, -56, -68, -80,
    -68, -12,  -4,   4,   4,  -4, -12, -68,
    -56,  -4,  14,  24,  24,  14,  -4, -56,
    -44,   4,  24,  44,  44,  24,   4, -44,
    -44,   4,  24,  44,  44,  24,   4, -44,
    -56,  -4,  14,  24,  24,  14,  -4, -56,
    -68, -12,  -4,   4,   4,  -4, -12, -68,
    -80, -68, -56, -44, -44, -56, -68, -80,
}};

// For the winner, by the square of the bare king, with a bishop on the dark squares: the corners
// a1 and h8 are where the mate is.
constexpr SquareTable BishopKnightCorner = {{
    -60, -40,   2,  18,  40,  70, 110, 120,
    -40, -34, -10,  12,  26,  50,  90, 110,
      2, -10, -30, -20, -10,  36,  50,  70,
     18,  12, -20, -52, -52, -10,  26,  40,
     40,  26, -10, -52, -52, -20,  12,  18,
     70,  50,  36, -10, -20, -30, -10,   2,
    110,  90,  50,  26,  12, -10, -34, -40,
    120, 110,  70,  40,  18,   2, -40, -60,
}};
// clang-format on

// By piece type and distance to its own king, 1..8: a piece far from its king is easy prey.
constexpr int KNIGHT_ROW = 0, LONG_RANGE_ROW = 1;
constexpr int PieceNearKing[2][9] = {
    {0, 10, 8, 4, -10, -20, -40, -70, -90},
    {0, 6, 4, 2, -4, -6, -12, -16, -22},
};

constexpr int WinnerPawn[7] = {0, 0, 4, 20, 52, 76, 100};

// The two-by-two squares of each corner, where the winning king gets in its own way.
constexpr Bitboard CORNER_BLOCKS = SquareBit(A1) | SquareBit(B1) | SquareBit(A2) | SquareBit(B2) |
                                   SquareBit(G1) | SquareBit(H1) | SquareBit(G2) | SquareBit(H2) |
                                   SquareBit(A7) | SquareBit(B7) | SquareBit(A8) | SquareBit(B8) |
                                   SquareBit(G7) | SquareBit(H7) | SquareBit(G8) | SquareBit(H8);
constexpr Bitboard RIM = FILE_A | FileMask(7) | RANK_1 | RankMask(7);

constexpr int EVEN_MATERIAL = 20;
constexpr int SMALL_EDGE = 500;
constexpr int EVEN_TEMPO = 3;
constexpr int SMALL_EDGE_TEMPO = 4;
constexpr int BIG_EDGE_TEMPO = 6;

constexpr int OPPOSITION_EVEN = 20;
constexpr int OPPOSITION_SMALL_EDGE = 100;
constexpr int OPPOSITION_BIG_EDGE = 40;
constexpr int UNPROTECTED_EVEN = 6;
constexpr int UNPROTECTED_SMALL_EDGE = 10;
constexpr int UNPROTECTED_BIG_EDGE = 6;
constexpr int BARE_KING = 2000;
constexpr int DEFENDED_KING = 650;
constexpr int BISHOP_KNIGHT_MATE = 1000;
constexpr int KING_IN_THE_CORNER = 100;
constexpr int BISHOP_AND_KNIGHT = 6;

bool OnRim(int square) { return (RIM & SquareBit(square)) != 0; }

int KingSquare(const Board& board, int colour) { return int(board.Pieces(colour).king_square); }

// Kings face each other with one square between: the weaker must give way.
bool Opposition(const Board& board) {
  return BoardTables.ManhattanDistance[board.white.king_square][board.black.king_square] == 2;
}

// The king of `pusher` has pushed the king of `pushed` to the rim, staying off it itself.
bool PushedToRim(const Board& board, int pusher, int pushed) {
  return Opposition(board) && OnRim(KingSquare(board, pushed)) && !OnRim(KingSquare(board, pusher));
}

int PieceType(const Board& board, int square) { return std::abs(board.squares[square]); }

int NearKing(const Board& board, int square, int king) {
  const int row = PieceType(board, square) == KNIGHT ? KNIGHT_ROW : LONG_RANGE_ROW;
  return PieceNearKing[row][BoardTables.Distance[square][king]];
}

// The pieces of `colour` far from their king, each divided by `divisor`, and those that nothing
// protects, each worth `bonus_unprotected` to the attacker.
int LoosePieces(const Board& board, int colour, int divisor, int bonus_unprotected) {
  const PieceSet& side = board.Pieces(colour);
  const int king = int(side.king_square);
  int v = 0;
  for (Bitboard pieces = side.knights | side.bishops | side.rooks | side.queens; pieces != 0;) {
    const int square = FindHighestBit(pieces);
    pieces ^= SquareBit(square);
    v -= NearKing(board, square, king) / divisor;
    if (!board.IsAttacked(square, side)) v += bonus_unprotected;
  }
  return v;
}

// Material even: each side for its part, from its own view.
int NoPawnsSide(const Board& board, int own) {
  const int enemy = own ^ 1;
  int v = PushedToRim(board, own, enemy) ? OPPOSITION_EVEN : -Corner[KingSquare(board, enemy)] / 8;
  return v + LoosePieces(board, enemy, 4, UNPROTECTED_EVEN);
}

int SmallEdge(const Board& board, int winner, int material) {
  const int loser = winner ^ 1;
  int v = material >> 2;
  if (PushedToRim(board, winner, loser)) v += OPPOSITION_SMALL_EDGE;
  else v -= Corner[KingSquare(board, loser)];
  v += Corner[KingSquare(board, winner)] / 2;
  v += LoosePieces(board, loser, 1, UNPROTECTED_SMALL_EDGE);
  return std::max(v, 0);
}

int BigEdge(const Board& board, int winner, int material) {
  const int loser = winner ^ 1;
  const PieceSet& own = board.Pieces(winner);
  if (board.total_piece_points == BISHOP_AND_KNIGHT && own.knights != 0 && own.bishops != 0 &&
      own.pawns == 0)
    return BishopKnightMate(board, winner);
  const int loser_king = KingSquare(board, loser);
  const int winner_king = KingSquare(board, winner);
  int v = material;
  if (PushedToRim(board, winner, loser)) v += OPPOSITION_BIG_EDGE;
  else v -= Corner[loser_king] * 3 / 2;
  const PieceSet& other = board.Pieces(loser);
  if (other.all == SquareBit(loser_king)) v += BARE_KING;
  else v += DEFENDED_KING + LoosePieces(board, loser, 1, UNPROTECTED_BIG_EDGE);
  for (Bitboard pieces = own.knights | own.bishops | own.rooks | own.queens; pieces != 0;) {
    const int square = FindHighestBit(pieces);
    pieces ^= SquareBit(square);
    v -= 2 * BoardTables.Distance[square][loser_king];
  }
  v += Corner[winner_king] - 4 * BoardTables.ManhattanDistance[winner_king][loser_king];
  for (Bitboard pawns = own.pawns; pawns != 0;) {
    const int pawn = FindHighestBit(pawns);
    pawns ^= SquareBit(pawn);
    v += WinnerPawn[RankFromOwnSide(winner, pawn)];
  }
  return v;
}

}  // namespace

int CornerValue(int square) { return Corner[square]; }

int BishopKnightMate(const Board& board, int winner) {
  const int winner_king = KingSquare(board, winner);
  const int loser_king = KingSquare(board, winner ^ 1);
  int v = Corner[winner_king] + BISHOP_KNIGHT_MATE -
          4 * BoardTables.Distance[winner_king][loser_king];
  if ((CORNER_BLOCKS & SquareBit(winner_king)) != 0) v -= KING_IN_THE_CORNER;
  // The table is for a bishop on the dark squares; a light one mates in the other corners.
  const bool light = (board.Pieces(winner).bishops & LIGHT_SQUARES) != 0;
  return v + BishopKnightCorner[light ? MirrorRanks(loser_king) : loser_king];
}

int EvaluateNoPawns(EvaluationState&, const Board& board) {
  const int w = WhiteMaterial(board);
  const int size = std::abs(w);
  if (size <= EVEN_MATERIAL) {
    const int b = w / 8 + NoPawnsSide(board, WHITE) - NoPawnsSide(board, BLACK);
    return ForSideOnMove(board, b) + EVEN_TEMPO;
  }
  const int winner = w > 0 ? WHITE : BLACK;
  const int x = size < SMALL_EDGE ? SmallEdge(board, winner, size) : BigEdge(board, winner, size);
  const int tempo = size < SMALL_EDGE ? SMALL_EDGE_TEMPO : BIG_EDGE_TEMPO;
  return (int(board.side_on_move) == winner ? x : -x) + tempo;
}
