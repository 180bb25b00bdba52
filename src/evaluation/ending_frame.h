// The frame that every ending with pieces shares: who can still win, how a score is kept inside
// that, the lazy exit, the king term and the scaling by pawns and by opposite bishops. Terms are
// from White's view.
#pragma once

#include "chess/board.h"
#include "evaluation/evaluation_state.h"

// From White's view to the side on move's; the same sign change also turns it back.
inline int ForSideOnMove(const Board& board, int white_view) {
  return board.side_on_move == WHITE ? white_view : -white_view;
}

inline int WhiteMaterial(const Board& board) { return ForSideOnMove(board, board.Material()); }

// Rank index as the pieces of `colour` count it: 0 is its first rank.
constexpr int RankFromOwnSide(int colour, int square) {
  return colour == WHITE ? Rank(square) : 7 - Rank(square);
}

// Squares attacked by the pawns of `colour`; the edge files don't wrap round.
constexpr Bitboard PawnAttacksOf(int colour, Bitboard pawns) {
  const Bitboard not_a = ~FILE_A, not_h = ~FileMask(7);
  if (colour == WHITE) return ((pawns & not_a) << 7) | ((pawns & not_h) << 9);
  return ((pawns & not_a) >> 9) | ((pawns & not_h) >> 7);
}

// A pawn, a major piece, or minor pieces that can force mate: three of them, or two with a bishop.
bool HasMatingMaterial(const PieceSet& side);

// Who can no longer win, as a limit on White's-view scores.
enum MaterialBound { BOTH_CAN_WIN = 0, BLACK_CANNOT_WIN = 1, WHITE_CANNOT_WIN = 2 };
MaterialBound FindMaterialBound(const Board& board);
int ApplyBound(int white_view, MaterialBound bound, int draw_value);

// The lists, file data, kings and pawn sets that the terms after the lazy exit read.
void PrepareEndingStructure(EvaluationState& evaluation, const Board& board);

// Knowledge that answers before the pawn structure is looked at still leaves a whole pawn entry
// behind: the driver stores it, and later evaluations of other material read it.
void CompletePawnEntry(EvaluationState& evaluation, const Board& board);

// Lazy when the estimate lies more than `margin` from beta: then beta or beta - 1 is the answer.
bool EndingLazyExit(int estimate, int beta, int margin, int& result);

// The king term of the endings, both kings at once.
int EndingKingTerm(const Board& board);

// Fewer pawns for the side ahead, and bishops of opposite colours, make a lead worth less.
int ScaleEnding(int white_view, const Board& board, bool opposite_bishops);
