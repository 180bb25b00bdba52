// Over the move trees of the standard and tactical positions: every generated move, made and
// unmade, keeps the board consistent with a board built from nothing, and every move word is
// exactly what the attack tables say about it.
#include <gtest/gtest.h>

#include <cstdint>

#include "support/test_positions.h"

namespace {

using namespace TestPositions;

// Depths that keep each test to a fraction of a second: the tactical positions are small.
constexpr int STANDARD_DEPTH = 2;
constexpr int TACTICAL_DEPTH = 3;

template <typename CheckMove>
void ForEveryMoveInTrees(const CheckMove& check) {
  auto walk = [&](const char* fen, int depth) {
    Board board = FromFen(fen);
    WalkTree(board, depth, [&](Board& node) {
      for (Move move : Generate(node, 255)) check(node, move);
    });
  };
  for (const char* fen : Standard()) walk(fen, STANDARD_DEPTH);
  for (const char* fen : Tactical()) walk(fen, TACTICAL_DEPTH);
}

std::string Describe(const Board& board, Move move) {
  return "move " + Perft::CoordinateText(move) + " word " + std::to_string(move) + " at ply " +
         std::to_string(board.ply);
}

void ExpectSamePieceSet(const PieceSet& a, const PieceSet& b, const std::string& where) {
  EXPECT_EQ(a.pawns, b.pawns) << where;
  EXPECT_EQ(a.knights, b.knights) << where;
  EXPECT_EQ(a.bishops, b.bishops) << where;
  EXPECT_EQ(a.rooks, b.rooks) << where;
  EXPECT_EQ(a.queens, b.queens) << where;
  EXPECT_EQ(a.all, b.all) << where;
  EXPECT_EQ(a.king_square, b.king_square) << where;
  EXPECT_EQ(a.minor_points, b.minor_points) << where;
  EXPECT_EQ(a.major_count, b.major_count) << where;
}

void ExpectSamePosition(const Board& a, const Board& b, const std::string& where) {
  EXPECT_EQ(a.side_on_move, b.side_on_move) << where;
  EXPECT_EQ(a.total_piece_points, b.total_piece_points) << where;
  EXPECT_EQ(a.occupied, b.occupied) << where;
  EXPECT_EQ(a.occupied_a1h8, b.occupied_a1h8) << where;
  EXPECT_EQ(a.occupied_files, b.occupied_files) << where;
  EXPECT_EQ(a.occupied_h1a8, b.occupied_h1a8) << where;
  ExpectSamePieceSet(a.white, b.white, where + " (white)");
  ExpectSamePieceSet(a.black, b.black, where + " (black)");
  for (int square = 0; square < 64; ++square)
    EXPECT_EQ(a.squares[square], b.squares[square]) << where << " square " << square;
}

// Every field up to the current ply; entries above it are free to differ.
void ExpectSameBoard(const Board& a, const Board& b, const std::string& where) {
  ASSERT_EQ(a.ply, b.ply) << where;
  ExpectSamePosition(a, b, where);
  ASSERT_EQ(a.key_stack - a.key_storage, b.key_stack - b.key_storage) << where;
  for (std::uint32_t ply = 0; ply <= a.ply; ++ply) {
    const BoardState& x = a.states[ply];
    const BoardState& y = b.states[ply];
    EXPECT_EQ(x.material, y.material) << where;
    EXPECT_EQ(x.halfmove_clock, y.halfmove_clock) << where;
    EXPECT_EQ(x.en_passant, y.en_passant) << where;
    EXPECT_EQ(x.castling, y.castling) << where;
    EXPECT_EQ(x.in_check, y.in_check) << where;
    EXPECT_EQ(x.pawn_key, y.pawn_key) << where;
  }
  for (const std::uint64_t* key = a.key_storage; key <= a.key_stack + a.ply; ++key)
    EXPECT_EQ(*key, b.key_storage[key - a.key_storage]) << where;
}

TEST(BoardConsistency, MakeAndUndoRestoreEveryField) {
  ForEveryMoveInTrees([](Board& board, Move move) {
    const Board before = board;
    board.MakeMove(move);
    board.UndoMove(move);
    ExpectSameBoard(board, before, Describe(board, move));
  });
}

TEST(BoardConsistency, IncrementalKeysAndMaterialEqualAFreshSetup) {
  ForEveryMoveInTrees([](Board& board, Move move) {
    const std::uint64_t predicted_key = board.KeyAfterMove(move);
    board.MakeMove(move);
    const std::string where = Describe(board, move);
    Board fresh;
    EXPECT_TRUE(fresh.Setup(board.squares, int(board.side_on_move), board.EnPassant(),
                            board.Castling()))
        << where;
    ExpectSamePosition(board, fresh, where);
    EXPECT_EQ(board.Key(), fresh.Key()) << where;
    EXPECT_EQ(board.Key(), board.ComputeKey()) << where;
    EXPECT_EQ(board.Key(), predicted_key) << where;
    EXPECT_EQ(board.PawnKey(), fresh.PawnKey()) << where;
    EXPECT_EQ(board.PawnKey(), board.ComputePawnKey()) << where;
    EXPECT_EQ(board.Material(), fresh.Material()) << where;
    EXPECT_EQ(board.InCheck(), fresh.InCheck()) << where;
    board.UndoMove(move);
  });
}

// After the move, the pieces of the mover that attack the enemy king tell the check bits: the
// piece that arrived (the rook, for castling) gives direct check, any other discovered check.
TEST(MoveWords, CheckBitsAgreeWithTheAttacksAfterTheMove) {
  ForEveryMoveInTrees([](Board& board, Move move) {
    board.MakeMove(move);
    const std::string where = Describe(board, move);
    EXPECT_FALSE(board.IsOpponentInCheck()) << "illegal " << where;
    const int king = int(board.Own().king_square);
    const Bitboard checkers = board.AttackersTo(king) & board.Enemy().all;
    int arrived = To(move);
    if (IsCastling(move)) arrived = (From(move) + To(move)) / 2;  // the rook's new square
    EXPECT_EQ(GivesDirectCheck(move), (checkers & SquareBit(arrived)) != 0) << where;
    EXPECT_EQ(GivesDiscoveredCheck(move), (checkers & ~SquareBit(arrived)) != 0) << where;
    board.UndoMove(move);
  });
}

// A word from a hash table that differs from a generated one in any single bit is accepted only
// if it is itself a legal move here, or a move that would merely leave the own king in check,
// which the search tests by itself.
TEST(MoveWords, PseudoLegalTestAcceptsGeneratedWordsAndRefusesCorruptedOnes) {
  Board board = FromFen(INITIAL);
  auto check_node = [](Board& node) {
    const std::vector<Move> legal = Generate(node, 255);
    for (Move move : legal) {
      EXPECT_TRUE(node.IsMovePseudoLegal(move)) << Describe(node, move);
      EXPECT_TRUE(node.VerifyMove(move)) << Describe(node, move);
      for (int bit = 0; bit < 32; ++bit) {
        const Move corrupted = move ^ (Move{1} << bit);
        if (corrupted == INVALID || Contains(legal, corrupted)) continue;
        if (node.IsMovePseudoLegal(corrupted)) {
          EXPECT_TRUE(node.LeavesKingInCheck(corrupted))
              << Describe(node, corrupted) << " corrupted from " << Describe(node, move);
        }
      }
    }
  };
  for (const char* fen : Standard()) {
    board = FromFen(fen);
    WalkTree(board, STANDARD_DEPTH, check_node);
  }
  for (const char* fen : Tactical()) {
    board = FromFen(fen);
    WalkTree(board, TACTICAL_DEPTH, check_node);
  }
}

}  // namespace
