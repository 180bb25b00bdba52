// Positions and small helpers shared by the move generation tests.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "chess/board.h"
#include "chess/move_generator.h"
#include "support/fen_board.h"
#include "support/perft.h"

namespace TestPositions {

constexpr const char* INITIAL = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1";
constexpr const char* KIWIPETE =
    "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1";
// Rook and pawns with en-passant pins on the rank.
constexpr const char* POSITION_3 = "8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - - 0 1";
// Promotions, castling rights and checks, and the same with the colours swapped.
constexpr const char* POSITION_4 =
    "r3k2r/Pppp1ppp/1b3nbN/nP6/BBP1P3/q4N2/Pp1P2PP/R2Q1RK1 w kq - 0 1";
constexpr const char* POSITION_4_MIRRORED =
    "r2q1rk1/pP1p2pp/Q4n2/bbp1p3/Np6/1B3NBn/pPPP1PPP/R3K2R b KQ - 0 1";
constexpr const char* POSITION_5 = "rnbq1k1r/pp1Pbppp/2p5/8/2B5/8/PPP1NnPP/RNBQK2R w KQ - 1 8";
constexpr const char* POSITION_6 =
    "r4rk1/1pp1qppp/p1np1n2/2b1p1B1/2B1P1b1/P1NP1N2/1PP1QPPP/R4RK1 w - - 0 10";

// The standard positions, for tests that walk their trees.
inline const std::vector<const char*>& Standard() {
  static const std::vector<const char*> positions = {
      INITIAL, KIWIPETE, POSITION_3, POSITION_4, POSITION_4_MIRRORED, POSITION_5, POSITION_6};
  return positions;
}

// Small positions full of checks, discovered checks, promotions and en-passant traps.
inline const std::vector<const char*>& Tactical() {
  static const std::vector<const char*> positions = {
      "8/8/1k6/2b5/2pP4/8/5K2/8 b - d3 0 1",           // en passant that checks
      "3k4/3p4/8/K1P4r/8/8/8/8 b - - 0 1",             // en passant along a pinned rank
      "8/8/4k3/8/2p5/8/B2P2K1/8 w - - 0 1",            // en passant out of a diagonal pin
      "2K2r2/4P3/8/8/8/8/8/3k4 w - - 0 1",             // promotion out of check
      "8/8/1P2K3/8/2n5/1q6/8/5k2 b - - 0 1",           // discovered checks
      "4k3/1P6/8/8/8/8/K7/8 w - - 0 1",                // promotion that checks
      "8/P1k5/K7/8/8/8/8/8 w - - 0 1",                 // underpromotion that checks
      "r3k2r/1b4bq/8/8/8/8/7B/R3K2R w KQkq - 0 1",     // castling rights under attack
      "4k3/4P3/4K3/8/8/8/8/8 w - - 0 1",               // blocked pawn
      "1k6/1P6/8/8/8/8/8/1R2K2B w - - 0 1",            // rook and bishop behind pawns
      "2r3k1/3P4/8/2B5/8/8/R7/4K2R w K - 0 1",         // capture promotions with checks
      "4k3/8/4r3/8/4N3/8/2B5/R3K2R w KQ - 0 1",        // pinned knight
      "4k3/4p3/8/5pP1/4K3/8/8/q7 w - f6 0 1",          // en passant while in check
      "8/8/8/8/k2K3R/8/8/8 w - - 0 1",                 // the king uncovers a check
      "7k/8/5n2/8/4K3/8/8/4r3 w - - 0 1",              // double check
  };
  return positions;
}

inline Board FromFen(std::string_view fen) {
  Board board;
  const std::string error = FenBoard::SetupFromFen(board, fen);
  EXPECT_EQ(error, "") << fen;
  return board;
}

inline std::vector<Move> Generate(const Board& board, int mask) {
  Move buffer[MOVE_BUFFER_SIZE];
  buffer[MAX_MOVES] = INVALID;
  Move* end = GenerateMoves(buffer, board, mask);
  EXPECT_EQ(buffer[MAX_MOVES], INVALID);
  return std::vector<Move>(buffer, end);
}

inline bool Contains(const std::vector<Move>& moves, Move move) {
  return std::find(moves.begin(), moves.end(), move) != moves.end();
}

inline std::string Texts(const std::vector<Move>& moves) {
  std::string text;
  for (Move move : moves) text += (text.empty() ? "" : " ") + Perft::CoordinateText(move);
  return text;
}

// Calls visit(board) at every node of the legal tree down to the depth, the root included.
template <typename Visit>
void WalkTree(Board& board, int depth, const Visit& visit) {
  visit(board);
  if (depth == 0) return;
  for (Move move : Generate(board, 255)) {
    board.MakeMove(move);
    WalkTree(board, depth - 1, visit);
    board.UndoMove(move);
  }
}

}  // namespace TestPositions
