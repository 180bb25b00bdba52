// Positions and small helpers shared by the move generation tests.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "chess/board.h"
#include "chess/move_generator.h"
#include "support/board_from_fen.h"
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
      // A pawn pushes onto the square two ahead of a discovering pawn: no discovered check.
      "r6r/Pp1pkppp/1bP2nbN/n1P5/BB2P3/q4N2/Pp1P2PP/R2Q1RK1 w - - 1 3",
  };
  return positions;
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

// A deterministic stream of small random numbers for building test positions.
class TestRandom {
 public:
  explicit TestRandom(std::uint32_t seed) : state(seed) {}
  int Below(int n) {
    state = state * 1664525u + 1013904223u;  // a plain linear congruential step
    return int((state >> 8) % std::uint32_t(n));
  }

 private:
  std::uint32_t state;
};

// Calls visit(board) at every position of random games from the position, up to the plies the
// board's stacks allow. The games are the same in every run.
template <typename Visit>
void PlayRandomGame(Board& board, std::uint32_t seed, const Visit& visit) {
  TestRandom random(seed);
  for (int plies = 0; plies < Board::MAX_PLY - 2; ++plies) {
    visit(board);
    const std::vector<Move> moves = Generate(board, 255);
    if (moves.empty()) break;
    board.MakeMove(moves[random.Below(int(moves.size()))]);
  }
  board.ply = 0;  // the game is thrown away; the next one starts again from the root state
}


// A crowded random position: two kings and up to 24 other pieces, pawns off the edge ranks, the
// castling rights whose king and rook are at home, and an en-passant square where one could be.
// Positions that are not legal (the side not on move in check) are rebuilt with the next draw.
inline Board RandomPosition(TestRandom& random) {
  for (;;) {
    std::int8_t squares[64] = {};
    squares[random.Below(64)] = KING;
    int black_king;
    do black_king = random.Below(64);
    while (squares[black_king] != 0);
    squares[black_king] = -KING;
    const int pieces = 4 + random.Below(21);
    for (int i = 0; i < pieces; ++i) {
      const int square = random.Below(64);
      const int type = 1 + random.Below(5);
      if (squares[square] != 0 || (type == PAWN && (Rank(square) == 0 || Rank(square) == 7)))
        continue;
      squares[square] = std::int8_t(random.Below(2) == 0 ? type : -type);
    }
    const int side = random.Below(2);
    int castling = 0;
    if (squares[E1] == KING && squares[H1] == ROOK) castling |= WHITE_SHORT;
    if (squares[E1] == KING && squares[A1] == ROOK) castling |= WHITE_LONG;
    if (squares[E8] == -KING && squares[H8] == -ROOK) castling |= BLACK_SHORT;
    if (squares[E8] == -KING && squares[A8] == -ROOK) castling |= BLACK_LONG;
    // The pawn that has just made a double step stands on the fourth rank of its side.
    int en_passant = 0;
    const int file = random.Below(8);
    const int pawn = side == WHITE ? MakeSquare(file, 4) : MakeSquare(file, 3);
    const int passed = side == WHITE ? pawn + 8 : pawn - 8;
    const int start = side == WHITE ? pawn + 16 : pawn - 16;
    if (squares[pawn] == (side == WHITE ? -PAWN : PAWN) && squares[passed] == 0 &&
        squares[start] == 0)
      en_passant = passed;
    Board board;
    if (board.Setup(squares, side, en_passant, castling)) return board;
  }
}

// The nodes that the move tests look at: the trees of the standard positions to depth 2, of the
// small tactical ones to depth 3, random games from all of them, which reach endings, promotions
// and pawn structures that the shallow trees do not, and crowded random positions with their
// children, full of pins, discovered checks and blocked pawns that games rarely show.
template <typename Visit>
void VisitTestNodes(const Visit& visit) {
  constexpr int RANDOM_POSITIONS = 1500;
  TestRandom random(2026);
  for (int i = 0; i < RANDOM_POSITIONS; ++i) {
    Board board = RandomPosition(random);
    WalkTree(board, 1, visit);
  }
  constexpr int GAMES_PER_POSITION = 6;
  for (const auto* list : {&Standard(), &Tactical()}) {
    for (const char* fen : *list) {
      Board board = BoardFromFen(fen);
      WalkTree(board, list == &Standard() ? 2 : 3, visit);
      for (std::uint32_t game = 0; game < GAMES_PER_POSITION; ++game) {
        Board start = BoardFromFen(fen);
        PlayRandomGame(start, game * 7919u + 17u, visit);
      }
    }
  }
}

}  // namespace TestPositions
