// Over the move trees and random games of the test positions: every generated move, made and
// unmade, keeps the board consistent with a board built from nothing, and every move word is
// exactly what the attack tables say about it.
#include <gtest/gtest.h>

#include <cstdint>

#include "support/test_positions.h"

namespace {

using namespace TestPositions;

template <typename CheckMove>
void ForEveryMoveOfTheTestNodes(const CheckMove& check) {
  VisitTestNodes([&](Board& node) {
    for (Move move : Generate(node, 255)) check(node, move);
  });
}

std::string Describe(const Board& board, Move move) {
  return "move " + Perft::CoordinateText(move) + " word " + std::to_string(move) + " at ply " +
         std::to_string(board.ply) + " in " + FenOf(board);
}

// The name of the first field in which two boards differ, "" if none. Comparing without gtest's
// macros keeps the walk over many thousand moves fast; the message is only built on failure.
class Difference {
 public:
  template <typename T>
  Difference& Field(const char* name, const T& a, const T& b) {
    if (first.empty() && !(a == b)) first = name;
    return *this;
  }
  Difference& Pieces(const char* colour, const PieceSet& a, const PieceSet& b) {
    if (!first.empty()) return *this;
    Field("pawns", a.pawns, b.pawns).Field("knights", a.knights, b.knights);
    Field("bishops", a.bishops, b.bishops).Field("rooks", a.rooks, b.rooks);
    Field("queens", a.queens, b.queens).Field("all", a.all, b.all);
    Field("king_square", a.king_square, b.king_square);
    Field("minor_points", a.minor_points, b.minor_points);
    Field("major_count", a.major_count, b.major_count);
    if (!first.empty()) first = std::string(colour) + " " + first;
    return *this;
  }
  // The position itself: what a fresh Setup must reproduce.
  Difference& Position(const Board& a, const Board& b) {
    Field("side_on_move", a.side_on_move, b.side_on_move);
    Field("total_piece_points", a.total_piece_points, b.total_piece_points);
    Field("occupied", a.occupied, b.occupied).Field("occupied_a1h8", a.occupied_a1h8, b.occupied_a1h8);
    Field("occupied_files", a.occupied_files, b.occupied_files);
    Field("occupied_h1a8", a.occupied_h1a8, b.occupied_h1a8);
    Pieces("white", a.white, b.white).Pieces("black", a.black, b.black);
    for (int square = 0; square < 64; ++square) Field("squares", a.squares[square], b.squares[square]);
    return *this;
  }
  // Everything up to the current ply; entries above it are free to differ.
  Difference& Stacks(const Board& a, const Board& b) {
    Field("ply", a.ply, b.ply);
    Field("key_stack", a.key_stack - a.key_storage, b.key_stack - b.key_storage);
    if (!first.empty()) return *this;
    for (std::uint32_t ply = 0; ply <= a.ply; ++ply) {
      const BoardState& x = a.states[ply];
      const BoardState& y = b.states[ply];
      Field("material", x.material, y.material).Field("clock", x.halfmove_clock, y.halfmove_clock);
      Field("en_passant", x.en_passant, y.en_passant).Field("castling", x.castling, y.castling);
      Field("in_check", x.in_check, y.in_check).Field("pawn_key", x.pawn_key, y.pawn_key);
    }
    for (const std::uint64_t* key = a.key_storage; key <= a.key_stack + a.ply; ++key)
      Field("key_storage", *key, b.key_storage[key - a.key_storage]);
    return *this;
  }
  std::string first;
};

TEST(BoardConsistency, MakeAndUndoRestoreEveryField) {
  ForEveryMoveOfTheTestNodes([](Board& board, Move move) {
    const Board before = board;
    board.MakeMove(move);
    board.UndoMove(move);
    EXPECT_EQ(Difference().Position(board, before).Stacks(board, before).first, "")
        << Describe(board, move);
  });
}

TEST(BoardConsistency, IncrementalKeysAndMaterialEqualAFreshSetup) {
  ForEveryMoveOfTheTestNodes([](Board& board, Move move) {
    const std::uint64_t predicted_key = board.KeyAfterMove(move);
    board.MakeMove(move);
    Board fresh;
    const bool valid = fresh.Setup(board.squares, int(board.side_on_move), board.EnPassant(),
                                   board.Castling());
    const std::string difference =
        Difference()
            .Field("valid", valid, true)
            .Position(board, fresh)
            .Field("key", board.Key(), fresh.Key())
            .Field("computed key", board.Key(), board.ComputeKey())
            .Field("KeyAfterMove", board.Key(), predicted_key)
            .Field("pawn key", board.PawnKey(), fresh.PawnKey())
            .Field("computed pawn key", board.PawnKey(), board.ComputePawnKey())
            .Field("material", board.Material(), fresh.Material())
            .Field("in check", board.InCheck(), fresh.InCheck())
            .first;
    EXPECT_EQ(difference, "") << "after " << Describe(board, move);
    board.UndoMove(move);
  });
}

// After the move, the pieces of the mover that attack the enemy king tell the check bits: the
// piece that arrived (the rook, for castling) gives direct check, any other discovered check.
TEST(MoveWords, CheckBitsAgreeWithTheAttacksAfterTheMove) {
  ForEveryMoveOfTheTestNodes([](Board& board, Move move) {
    board.MakeMove(move);
    EXPECT_FALSE(board.IsOpponentInCheck()) << "illegal, after " << Describe(board, move);
    const int king = int(board.Own().king_square);
    const Bitboard checkers = board.AttackersTo(king) & board.Enemy().all;
    int arrived = To(move);
    if (IsCastling(move)) arrived = (From(move) + To(move)) / 2;  // the rook's new square
    EXPECT_EQ(GivesDirectCheck(move), (checkers & SquareBit(arrived)) != 0)
        << "after " << Describe(board, move);
    EXPECT_EQ(GivesDiscoveredCheck(move), (checkers & ~SquareBit(arrived)) != 0)
        << "after " << Describe(board, move);
    board.UndoMove(move);
  });
}

// A word from a hash table that differs from a generated one in any single bit is accepted only
// if it is itself a legal move here, or a move that would merely leave the own king in check,
// which the search tests by itself.
TEST(MoveWords, PseudoLegalTestAcceptsGeneratedWordsAndRefusesCorruptedOnes) {
  VisitTestNodes([](Board& node) {
    const std::vector<Move> legal = Generate(node, 255);
    if (!legal.empty()) {
      EXPECT_TRUE(node.VerifyMove(legal.back())) << Describe(node, legal.back());
    }
    for (Move move : legal) {
      EXPECT_TRUE(node.IsMovePseudoLegal(move)) << Describe(node, move);
      for (int bit = 0; bit < 32; ++bit) {
        const Move corrupted = move ^ (Move{1} << bit);
        if (corrupted == INVALID || Contains(legal, corrupted)) continue;
        if (node.IsMovePseudoLegal(corrupted)) {
          EXPECT_TRUE(node.LeavesKingInCheck(corrupted))
              << Describe(node, corrupted) << " corrupted from " << Describe(node, move);
        }
      }
    }
  });
}

}  // namespace
