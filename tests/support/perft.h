// Counting the leaves of the legal move tree, for the tests and the perft tool. Header-only so
// that the perft tool can share it.
#pragma once

#include <cstdint>
#include <string>

#include "chess/board.h"
#include "chess/move_generator.h"

namespace Perft {

// Leaves at the given depth below the position. The last ply is counted in bulk: the length of
// the legal list is the number of its leaves.
inline std::uint64_t CountLeaves(Board& board, int depth) {
  if (depth == 0) return 1;
  Move buffer[MOVE_BUFFER_SIZE];
  const Move* end = GenerateMoves(buffer, board, 255);
  if (depth == 1) return std::uint64_t(end - buffer);
  std::uint64_t leaves = 0;
  for (const Move* move = buffer; move != end; ++move) {
    board.MakeMove(*move);
    leaves += CountLeaves(board, depth - 1);
    board.UndoMove(*move);
  }
  return leaves;
}

// Coordinate notation: from and to square, and the letter of a promotion piece ("e7e8q").
inline std::string CoordinateText(Move move) {
  std::string text;
  for (int square : {From(move), To(move)}) {
    text += char('a' + File(square));
    text += char('1' + Rank(square));
  }
  if (IsPromotion(move)) text += " pnbrqk"[PromotionType(move)];
  return text;
}

}  // namespace Perft
