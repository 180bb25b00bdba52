// Writing a move in coordinates, SAN or long algebraic notation.
#include <vector>

#include "chess/board_tables.h"
#include "chess/move_generator.h"
#include "chess/move_text.h"
#include "chess/coordinate_characters.h"

namespace {

std::string SquareText(int square) {
  return {FileLetter(File(square)), RankDigit(Rank(square))};
}

char PieceLetter(int type) { return PieceLetters[type]; }

Bitboard PiecesOfType(const PieceSet& pieces, int type) {
  const Bitboard boards[] = {0, pieces.pawns, pieces.knights, pieces.bishops, pieces.rooks,
                             pieces.queens, SquareBit(static_cast<int>(pieces.king_square))};
  return boards[type];
}

std::string CheckSuffix(const Board& board, Move move) {
  if (!GivesCheck(move)) return "";
  return GivesMate(board, move) ? "#" : "+";
}

std::string PromotionSuffix(Move move) {
  if (!IsPromotion(move)) return "";
  return {'=', PieceLetter(PromotionType(move))};
}

// Castling keeps "+" even when it mates: the check bit is all that is looked at.
std::string CastlingText(Move move) {
  std::string text = From(move) > To(move) ? "O-O-O" : "O-O";
  if (GivesCheck(move)) text += '+';
  return text;
}

std::string CoordinateText(Move move) {
  std::string text = SquareText(From(move)) + SquareText(To(move));
  if (IsPromotion(move) && PromotionType(move) != QUEEN) text += PieceLetter(PromotionType(move));
  return text;
}

std::string LongAlgebraicText(const Board& board, Move move) {
  return PieceLetter(MovedType(move)) + SquareText(From(move)) + (IsCapture(move) ? 'x' : '-') +
         SquareText(To(move)) + PromotionSuffix(move) + CheckSuffix(board, move);
}

// Can a piece pinned to its own king still reach the target? Only along its pin line.
bool PinnedPieceReaches(int candidate, int to, int king) {
  const auto& direction = BoardTables.Direction;
  return direction[candidate][to] == direction[candidate][king] ||
         direction[candidate][to] == direction[king][candidate];
}

// The source file and rank that tell the moved piece apart from others of its type that could
// go to the same square.
std::string Disambiguation(const Board& board, Move move) {
  const int type = MovedType(move);
  const int from = From(move);
  const int to = To(move);
  const Bitboard rivals =
      board.AttackersTo(to) & PiecesOfType(board.Own(), type) & ~SquareBit(from);
  if (rivals == 0) return "";
  const int king = static_cast<int>(board.Own().king_square);
  const Bitboard pinned = board.FindPinnedOf(king, rivals, board.Enemy(), board.Enemy().all);
  bool ambiguous = false;
  bool shares_file = false;
  bool shares_rank = false;
  for (Bitboard rest = rivals; rest != 0;) {
    const int rival = FindHighestBit(rest);
    rest &= ~SquareBit(rival);
    if ((pinned & SquareBit(rival)) != 0 && !PinnedPieceReaches(rival, to, king)) continue;
    ambiguous = true;
    shares_file |= File(rival) == File(from);
    shares_rank |= Rank(rival) == Rank(from);
  }
  if (!ambiguous) return "";
  if (!shares_file) return {FileLetter(File(from))};
  if (!shares_rank) return {RankDigit(Rank(from))};
  return SquareText(from);
}

std::string SanText(const Board& board, Move move) {
  const int type = MovedType(move);
  std::string text;
  if (type == PAWN) {
    if (IsCapture(move)) text = {FileLetter(File(From(move))), 'x'};
  } else {
    text = PieceLetter(type);
    if (type != KING) text += Disambiguation(board, move);
    if (IsCapture(move)) text += 'x';
  }
  return text + SquareText(To(move)) + PromotionSuffix(move) + CheckSuffix(board, move);
}

}  // namespace

bool GivesMate(const Board& board, Move move) {
  Board after = board;
  after.MakeMove(move);
  std::vector<Move> replies;
  GenerateMoves(replies, after);
  return replies.empty();
}

std::string MoveToText(const Board& board, Move move, MoveFormat format) {
  if (format == COORDINATE_NOTATION) return CoordinateText(move);
  if (IsCastling(move)) return CastlingText(move);
  return format == SAN_NOTATION ? SanText(board, move) : LongAlgebraicText(board, move);
}
