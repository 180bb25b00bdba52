// Move generation and make/unmake: leaf counts against published ones, the selection masks, and
// over many trees every move word and every board field against what a board built from nothing
// says.
#include "chess/move_generator.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <functional>
#include <tuple>

#include "support/test_positions.h"

namespace {

using namespace TestPositions;

// Leaf counts catch any missing or extra move, however rare, and faults of make/unmake.
TEST(Perft, PublishedLeafCounts) {
  for (const auto& [fen, depth, leaves] : {
      std::tuple{KIWIPETE, 4, std::uint64_t{4085603}},
      {POSITION_3, 6, 11030083},
      {POSITION_4, 5, 15833292},
      {POSITION_4_MIRRORED, 4, 422333},
      {POSITION_5, 4, 2103487},
      {POSITION_6, 4, 3894594},
      {"3k4/3p4/8/K1P4r/8/8/8/8 b - - 0 1", 6, 1134888},     // en passant pin
      {"8/8/4k3/8/2p5/8/B2P2K1/8 w - - 0 1", 6, 1015133},    // en passant pin
      {"8/8/1k6/2b5/2pP4/8/5K2/8 b - d3 0 1", 6, 1440467},   // en passant check
      {"5k2/8/8/8/8/8/8/4K2R w K - 0 1", 6, 661072},         // short castle check
      {"3k4/8/8/8/8/8/8/R3K3 w Q - 0 1", 6, 803711},         // long castle check
      {"r3k2r/1b4bq/8/8/8/8/7B/R3K2R w KQkq - 0 1", 4, 1274206},  // castling rights
      {"r3k2r/8/3Q4/8/8/5q2/8/R3K2R b KQkq - 0 1", 4, 1720476},   // castling prevented
      {"2K2r2/4P3/8/8/8/8/8/3k4 w - - 0 1", 6, 3821001},     // promote out of check
      {"8/8/1P2K3/8/2n5/1q6/8/5k2 b - - 0 1", 5, 1004658},   // discovered check
      {"4k3/1P6/8/8/8/8/K7/8 w - - 0 1", 6, 217342},         // promotion check
      {"8/P1k5/K7/8/8/8/8/8 w - - 0 1", 6, 92683},           // underpromotion check
      {"K1k5/8/P7/8/8/8/8/8 w - - 0 1", 6, 2217},            // self stalemate
      {"8/k1P5/8/1K6/8/8/8/8 w - - 0 1", 7, 567584},         // stalemate and mate
      {"8/8/2k5/5q2/5n2/8/5K2/8 b - - 0 1", 4, 23527},       // stalemate and mate
      // c5 shields the bishop's diagonal to the king; c6-c7 lands on c5's double-step square
      // but discovers nothing. Counts from a reference engine.
      {"r6r/Pp1pkppp/1bP2nbN/n1P5/BB2P3/q4N2/Pp1P2PP/R2Q1RK1 w - - 1 3", 3, 74057},
  }) {
    Board board = BoardFromFen(fen);
    EXPECT_EQ(Perft::CountLeaves(board, depth), leaves) << fen << " depth " << depth;
  }
}

// Castling, knights, bishops, rooks, queens, pushes, double steps, captures towards the a-file,
// captures towards the h-file, en passant, king; each piece to its highest target square first.
TEST(MoveGenerator, MovesInProgramOrder) {
  for (const auto& [fen, texts] : {
           std::pair{INITIAL, "g1h3 g1f3 b1c3 b1a3 h2h3 g2g3 f2f3 e2e3 d2d3 c2c3 b2b3 a2a3 "
                              "h2h4 g2g4 f2f4 e2e4 d2d4 c2c4 b2b4 a2a4"},
           // The knight on c3 keeps White's king from castling long.
           {"4k3/8/8/3pP3/8/2n3N1/1P1P4/R3K2R w KQ d6 0 1",
            "e1g1 g3h5 g3f5 g3e4 g3e2 g3f1 h1h8 h1h7 h1h6 h1h5 h1h4 h1h3 h1h2 h1g1 h1f1 a1a8 a1a7 "
            "a1a6 a1a5 a1a4 a1a3 a1a2 a1d1 a1c1 a1b1 e5e6 d2d3 b2b3 d2d4 b2b4 d2c3 b2c3 e5d6 e1f2 "
            "e1f1"}})
    EXPECT_EQ(Texts(Generate(BoardFromFen(fen), 255)), texts) << fen;
}

// Each selection mask gives exactly the moves of the full list that it describes, in the same
// order; in check every mask gives every evasion.
bool CaptureOrQueenPromotion(Move move) {
  return (IsCapture(move) || IsPromotion(move)) &&
         (PromotionType(move) == 0 || PromotionType(move) == QUEEN);
}

// Every check, except that a promotion counts only for the pieces that check directly; a capture
// that promotes always brings its queen.
bool Check(Move move) {
  if (!IsPromotion(move)) return GivesCheck(move);
  return GivesDirectCheck(move) || (IsCapture(move) && PromotionType(move) == QUEEN);
}

TEST(MoveGenerator, SelectionMasksGiveExactlyTheirSubsets) {
  const std::pair<int, std::function<bool(Move)>> masks[] = {
      {GEN_CAPTURES | GEN_QUEEN_PROMOTIONS, CaptureOrQueenPromotion},
      {GEN_ALL_CHECKS, Check},
      {GEN_CASTLING, IsCastling},
      {GEN_ALL_CHECKS | GEN_CAPTURES | GEN_QUEEN_PROMOTIONS | GEN_CASTLING,
       [](Move m) { return Check(m) || CaptureOrQueenPromotion(m) || IsCastling(m); }},
      {GEN_ALL_MOVES, [](Move) { return true; }},
  };
  VisitTestNodes([&](Board& node) {
    const std::vector<Move> all = Generate(node, 255);
    for (const auto& [mask, selects] : masks) {
      std::vector<Move> expected;
      for (Move move : all)
        if (node.InCheck() || selects(move)) expected.push_back(move);
      EXPECT_EQ(Texts(Generate(node, mask)), Texts(expected))
          << "mask " << mask << " in " << FenOf(node);
    }
  });
}

std::string Describe(const Board& board, Move move) {
  return "move " + Perft::CoordinateText(move) + " word " + std::to_string(move) + " at ply " +
         std::to_string(board.ply) + " in " + FenOf(board);
}

// The position itself, with everything kept incrementally: what a fresh Setup must reproduce.
auto PositionFields(const Board& b) {
  const auto pieces = [](const PieceSet& p) {
    return std::tuple(p.pawns, p.knights, p.bishops, p.rooks, p.queens, p.all, p.king_square,
                      p.minor_points, p.major_count);
  };
  return std::tuple(std::to_array(b.squares), b.side_on_move, b.total_piece_points, b.occupied,
                    b.occupied_a1h8, b.occupied_files, b.occupied_h1a8, pieces(b.white),
                    pieces(b.black), b.Key(), b.PawnKey(), b.Material(), b.InCheck());
}

// The stacks up to the current ply; entries above it are free to differ.
bool SameStacks(const Board& a, const Board& b) {
  const auto state = [](const BoardState& s) {
    return std::tuple(s.material, s.halfmove_clock, s.en_passant, s.castling, s.in_check,
                      s.pawn_key);
  };
  if (a.ply != b.ply || a.key_stack - a.key_storage != b.key_stack - b.key_storage) return false;
  for (std::uint32_t ply = 0; ply <= a.ply; ++ply)
    if (state(a.states[ply]) != state(b.states[ply])) return false;
  const std::uint64_t* end = a.key_stack + a.ply + 1;
  return std::equal(&a.key_storage[0], end, &b.key_storage[0]);
}

// After the move the board equals a fresh set-up of its position, and the mover's pieces that
// attack the enemy king tell the check bits: the piece that arrived (the rook, for castling)
// gives direct check, any other discovered check. Undo restores every field. Plain comparisons
// keep the walk over many thousand moves fast; gtest's macros only run on a failure.
TEST(BoardConsistency, EveryMoveAgreesWithAFreshSetupAndUndoRestoresEveryField) {
  VisitTestNodes([](Board& board) {
    for (Move move : Generate(board, 255)) {
      const Board before = board;
      const std::uint64_t predicted_key = board.KeyAfterMove(move);
      board.MakeMove(move);
      Board fresh;
      const bool valid = fresh.Setup(board.squares, int(board.side_on_move), board.EnPassant(),
                                     board.Castling());
      const Bitboard checkers =
          board.AttackersTo(int(board.Own().king_square)) & board.Enemy().all;
      const Bitboard arrived =
          SquareBit(IsCastling(move) ? (From(move) + To(move)) / 2 : To(move));
      if (!valid || board.IsOpponentInCheck() || PositionFields(board) != PositionFields(fresh) ||
          board.Key() != board.ComputeKey() || board.Key() != predicted_key ||
          board.PawnKey() != board.ComputePawnKey() ||
          GivesDirectCheck(move) != ((checkers & arrived) != 0) ||
          GivesDiscoveredCheck(move) != ((checkers & ~arrived) != 0)) {
        EXPECT_EQ(PositionFields(board), PositionFields(fresh)) << Describe(board, move);
        ADD_FAILURE() << "valid " << valid << ", key " << board.Key() << " computed "
               << board.ComputeKey() << " predicted " << predicted_key << ", checkers "
               << checkers << " after " << Describe(board, move);
      }
      board.UndoMove(move);
      if (PositionFields(board) != PositionFields(before) || !SameStacks(board, before)) {
        EXPECT_EQ(PositionFields(board), PositionFields(before));
        ADD_FAILURE() << "undo of " << Describe(board, move);
      }
    }
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
