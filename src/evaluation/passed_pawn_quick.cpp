#include "evaluation/passed_pawn_quick.h"

#include "chess/bitboard.h"
#include "chess/board_tables.h"
#include "evaluation/ending_frame.h"

namespace {

constexpr int QuickFile[8] = {9, 9, 8, 7, 7, 8, 9, 9};
// By the pawn's rank from its own side.
constexpr int QuickRank[7] = {0, 30, 35, 53, 85, 115, 200};
constexpr int BlockerEndingRank[7] = {0, 4, 5, 12, 27, 40, 85};
// By the type of the enemy piece in front of the pawn; a king blocks best, a knight next.
constexpr int BlockerEndingValue[7] = {0, 0, 8, 7, 4, 4, 9};

// By king distance; a king never stands on the pawn's square.
constexpr int OwnKingToPawn[8] = {0, 4, 3, 0, -2, -3, -5, -6};
constexpr int EnemyKingToPawn[8] = {0, 5, 3, 1, 0, -3, -6, -9};
constexpr int OwnKingToQueen[8] = {6, 6, 3, 0, -3, -4, -5, -6};
constexpr int EnemyKingToQueen[8] = {5, 5, 3, -1, -5, -12, -16, -20};

constexpr int ROOK_BEHIND_OWN = 12;
constexpr int ROOK_AHEAD_OWN = -8;
constexpr int ROOK_BEHIND_ENEMY = -10;
constexpr int ROOK_AHEAD_ENEMY = -4;
constexpr int FREE_PATH = 6;
constexpr int FREE_PATH_RANK = 4;

// The squares of the pawn's file behind it, as seen from its side.
Bitboard BehindOnFile(int colour, int pawn) {
  const Bitboard file = FileMask(File(pawn));
  const Bitboard below = SquareBit(pawn) - 1;
  return colour == WHITE ? file & below : file & ~below & ~SquareBit(pawn);
}

int RookOnFile(Bitboard rooks, Bitboard file, Bitboard behind, int if_behind, int if_ahead) {
  if ((rooks & file) == 0) return 0;
  return (rooks & behind) != 0 ? if_behind : if_ahead;
}

int PasserValue(const Board& board, int colour, int pawn) {
  const PieceSet& own = board.Pieces(colour);
  const PieceSet& enemy = board.Pieces(colour ^ 1);
  const int file = File(pawn);
  const int r = RankFromOwnSide(colour, pawn);
  const Bitboard file_mask = FileMask(file);
  const Bitboard behind = BehindOnFile(colour, pawn);

  int value = QuickFile[file] * QuickRank[r] / 8;
  value += RookOnFile(own.rooks, file_mask, behind, ROOK_BEHIND_OWN, ROOK_AHEAD_OWN);
  value += RookOnFile(enemy.rooks, file_mask, behind, ROOK_BEHIND_ENEMY, ROOK_AHEAD_ENEMY);

  const int front = colour == WHITE ? pawn + 8 : pawn - 8;
  if ((enemy.all & SquareBit(front)) != 0) {
    const int piece = board.squares[front];
    const int type = piece < 0 ? -piece : piece;
    value -= BlockerEndingValue[type] * BlockerEndingRank[r] / 8;
  } else if ((board.occupied & SquareBit(front)) == 0 && r >= FREE_PATH_RANK) {
    value += FREE_PATH;
  }

  const int queening = MakeSquare(file, colour == WHITE ? 7 : 0);
  const auto& distance = BoardTables.Distance;
  value += OwnKingToPawn[distance[own.king_square][pawn]] -
           EnemyKingToPawn[distance[enemy.king_square][pawn]] +
           OwnKingToQueen[distance[own.king_square][queening]] -
           EnemyKingToQueen[distance[enemy.king_square][queening]];
  return value;
}

// Only the most advanced passer of a file counts; positive for either colour.
int PassersOf(PawnBlock& block, const Board& board, int colour) {
  int sum = 0;
  for (Bitboard passers = block.passed; passers != 0;) {
    const int pawn = colour == WHITE ? FindHighestBit(passers) : FindLowestBit(passers);
    passers &= ~FileMask(File(pawn));
    block.frontmost_passed |= SquareBit(pawn);
    block.passed_rank[File(pawn)] = std::uint16_t(Rank(pawn));
    sum += PasserValue(board, colour, pawn);
  }
  return sum;
}

}  // namespace

int PassedPawnQuickTerm(EvaluationState& evaluation, const Board& board) {
  return PassersOf(evaluation.pawns[WHITE], board, WHITE) -
         PassersOf(evaluation.pawns[BLACK], board, BLACK);
}
