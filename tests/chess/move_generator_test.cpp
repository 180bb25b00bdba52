#include "chess/move_generator.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "support/test_positions.h"

namespace {

using namespace TestPositions;

std::vector<Move> All(const char* fen) { return Generate(BoardFromFen(fen), 255); }

// The words of the moves that leave one square, in generation order.
std::vector<Move> MovesFrom(const std::vector<Move>& moves, int square) {
  std::vector<Move> result;
  for (Move move : moves)
    if (From(move) == square) result.push_back(move);
  return result;
}

TEST(MoveGenerator, InitialPositionInProgramOrder) {
  const std::vector<Move> moves = All(INITIAL);
  EXPECT_EQ(Texts(moves),
            "g1h3 g1f3 b1c3 b1a3 h2h3 g2g3 f2f3 e2e3 d2d3 c2c3 b2b3 a2a3 "
            "h2h4 g2g4 f2f4 e2e4 d2d4 c2c4 b2b4 a2a4");
  ASSERT_EQ(moves.size(), 20u);
  EXPECT_EQ(moves[0], MakeMoveWord(G1, H3, KNIGHT));
  EXPECT_EQ(moves[19], MakeMoveWord(A2, A4, PAWN));
}

TEST(MoveGenerator, OrderOfTheKindsOfMoves) {
  // Castling, knights, bishops, rooks, queens, pushes, double steps, captures towards the a-file,
  // captures towards the h-file, en passant, king.
  // Each piece goes to its highest target square first; the knight on c3 keeps White's king
  // from castling long.
  const char* fen = "4k3/8/8/3pP3/8/2n3N1/1P1P4/R3K2R w KQ d6 0 1";
  EXPECT_EQ(Texts(All(fen)),
            "e1g1 g3h5 g3f5 g3e4 g3e2 g3f1 h1h8 h1h7 h1h6 h1h5 h1h4 h1h3 h1h2 h1g1 h1f1 "
            "a1a8 a1a7 a1a6 a1a5 a1a4 a1a3 a1a2 a1d1 a1c1 a1b1 e5e6 d2d3 b2b3 d2d4 b2b4 d2c3 b2c3 "
            "e5d6 e1f2 e1f1");
}

TEST(MoveGenerator, BlackMovesInProgramOrder) {
  const char* fen = "r3k2r/8/8/8/3Pp3/8/8/4K3 b kq d3 0 1";
  EXPECT_EQ(Texts(All(fen)),
            "e8g8 e8c8 h8g8 h8f8 h8h7 h8h6 h8h5 h8h4 h8h3 h8h2 h8h1 a8d8 a8c8 a8b8 a8a7 a8a6 a8a5 "
            "a8a4 a8a3 a8a2 a8a1 e4e3 e4d3 e8f8 e8d8 e8f7 e8e7 e8d7");
}

TEST(MoveGenerator, MateAndStalemateHaveNoMoves) {
  const Board mate = BoardFromFen("7k/6Q1/6K1/8/8/8/8/8 b - - 0 1");
  EXPECT_TRUE(Generate(mate, 255).empty());
  EXPECT_TRUE(mate.InCheck());
  const Board stalemate = BoardFromFen("7k/5Q2/6K1/8/8/8/8/8 b - - 0 1");
  EXPECT_TRUE(Generate(stalemate, 255).empty());
  EXPECT_FALSE(stalemate.InCheck());
}

TEST(MoveGenerator, PinnedPiecesKeepToTheLineOfThePin) {
  EXPECT_TRUE(MovesFrom(All("4k3/8/4r3/8/4N3/8/8/4K3 w - - 0 1"), E4).empty());  // knight
  EXPECT_TRUE(MovesFrom(All("4k3/8/8/8/r2BK3/8/8/8 w - - 0 1"), D4).empty());    // bishop on a rank
  EXPECT_EQ(Texts(MovesFrom(All("4r1k1/8/8/8/4R3/8/8/4K3 w - - 0 1"), E4)),      // rook on a file
            "e4e8 e4e7 e4e6 e4e5 e4e3 e4e2");
  EXPECT_EQ(Texts(MovesFrom(All("4k3/8/8/8/8/2b5/3P4/4K3 w - - 0 1"), D2)), "d2c3");  // pawn, diagonal
  EXPECT_TRUE(MovesFrom(All("4k3/8/8/8/r2PK3/8/8/8 w - - 0 1"), D4).empty());    // pawn on a rank
  EXPECT_EQ(Texts(MovesFrom(All("4r1k1/8/8/8/8/8/4P3/4K3 w - - 0 1"), E2)), "e2e3 e2e4");  // on a file
  EXPECT_EQ(Texts(MovesFrom(All("4k3/8/8/8/8/2q5/3Q4/4K3 w - - 0 1"), D2)), "d2c3");  // queen
}

TEST(MoveGenerator, DoubleCheckLeavesOnlyKingMoves) {
  const std::vector<Move> moves = All("4k3/8/8/8/1b6/5n2/8/R3K2R w KQ - 0 1");
  ASSERT_FALSE(moves.empty());
  for (Move move : moves) EXPECT_EQ(MovedType(move), KING) << Perft::CoordinateText(move);
  // d2 is attacked by both checkers.
  EXPECT_EQ(Texts(moves), "e1f2 e1e2 e1f1 e1d1");
  // The king hides the square behind it from a checking rook, first or second of the checkers.
  EXPECT_EQ(Texts(All("4r2k/8/8/8/4K3/8/3n4/8 w - - 0 1")), "e4f5 e4d5 e4f4 e4d4 e4d3");
  EXPECT_EQ(Texts(All("7k/8/5n2/8/4K3/8/8/4r3 w - - 0 1")), "e4f5 e4f4 e4d4 e4f3 e4d3");
  // Three checkers, which only a position read from a file can have: taking the queen on h5
  // would stay on the rook's line, so this is mate.
  EXPECT_TRUE(All("2Q3N1/1Q1B2K1/6bB/1R4kQ/p7/1B1P4/4pNB1/n5B1 b - - 0 1").empty());
}

TEST(MoveGenerator, EvasionsBlockCaptureOrStepAside) {
  // The rook checks along the rank: the knight can block, the king must leave the rank; f1
  // behind the king is on the rook's line although the king hides it now.
  EXPECT_EQ(Texts(All("7k/8/8/8/8/8/4N3/r3K3 w - - 0 1")), "e2c1 e1f2 e1d2");
}

TEST(MoveGenerator, Castling) {
  // Not through an attacked square, not out of check.
  EXPECT_FALSE(Contains(All("4k3/8/8/8/8/8/5r2/R3K2R w KQ - 0 1"), WHITE_SHORT_CASTLE));
  EXPECT_TRUE(Contains(All("4k3/8/8/8/8/8/5r2/R3K2R w KQ - 0 1"), WHITE_LONG_CASTLE));
  const std::vector<Move> in_check = All("3k4/4r3/8/8/8/8/8/R3K2R w KQ - 0 1");
  EXPECT_FALSE(Contains(in_check, WHITE_SHORT_CASTLE) || Contains(in_check, WHITE_LONG_CASTLE));
  // The b-square may be attacked: the king does not cross it.
  EXPECT_TRUE(Contains(All("4k3/8/8/8/8/n7/8/R3K2R w Q - 0 1"), WHITE_LONG_CASTLE));
  // Castling short first, then long.
  const std::vector<Move> both = All("r3k2r/8/8/8/8/8/8/R3K2R b KQkq - 0 1");
  ASSERT_GE(both.size(), 2u);
  EXPECT_EQ(both[0], BLACK_SHORT_CASTLE);
  EXPECT_EQ(both[1], BLACK_LONG_CASTLE);
}

TEST(MoveGenerator, CastlingThatChecksHasTheCheckConstant) {
  const std::vector<Move> file_check = All("5k2/8/8/8/8/8/8/4K2R w K - 0 1");
  EXPECT_TRUE(Contains(file_check, WHITE_SHORT_CASTLE_CHECK));
  EXPECT_FALSE(Contains(file_check, WHITE_SHORT_CASTLE));
  EXPECT_TRUE(Contains(All("r3k3/8/8/8/8/8/8/3K4 b q - 0 1"), BLACK_LONG_CASTLE_CHECK));
  // The rook checks along the rank through the square the king has left.
  EXPECT_TRUE(Contains(All("2K1k2r/8/8/8/8/8/8/8 b k - 0 1"), BLACK_SHORT_CASTLE_CHECK));
}

TEST(MoveGenerator, EnPassantTraps) {
  // Both pawns leave the king's rank, opening it to the rook.
  EXPECT_EQ(Texts(MovesFrom(All("8/8/8/KPp4r/8/8/8/4k3 w - c6 0 1"), B5)), "b5b6");
  // The captured pawn is pinned to the own king on a diagonal.
  EXPECT_EQ(Texts(MovesFrom(All("4k3/1b6/8/3pP3/8/5K2/8/8 w - d6 0 1"), E5)), "e5e6");
  // The checking pawn may be taken en passant.
  const std::vector<Move> evasions = All("4k3/4p3/8/5pP1/4K3/8/8/q7 w - f6 0 1");
  EXPECT_TRUE(Contains(evasions, MakeMoveWord(G5, F6, PAWN, PAWN)));
  // Taking the pawn uncovers the bishop's line on the king.
  EXPECT_TRUE(Contains(All("8/8/1k6/2b5/2pP4/8/5K2/8 b - d3 0 1"),
                       MakeMoveWord(C4, D3, PAWN, PAWN) | DISCOVERED_CHECK_BIT));
  // Taking with a pawn that stands in front of its own rook on the enemy king's rank.
  EXPECT_TRUE(Contains(All("8/8/8/k1pP2R1/8/8/8/4K3 w - c6 0 1"),
                       MakeMoveWord(D5, C6, PAWN, PAWN) | DISCOVERED_CHECK_BIT));
}

TEST(MoveGenerator, PromotionChecksThroughTheSquareItLeaves) {
  EXPECT_EQ(MovesFrom(All("8/4P3/8/4k3/8/8/8/K7 w - - 0 1"), E7),
            (std::vector<Move>{MakeMoveWord(E7, E8, PAWN, 0, QUEEN) | DIRECT_CHECK_BIT,
                               MakeMoveWord(E7, E8, PAWN, 0, ROOK) | DIRECT_CHECK_BIT,
                               MakeMoveWord(E7, E8, PAWN, 0, BISHOP),
                               MakeMoveWord(E7, E8, PAWN, 0, KNIGHT)}));
  // A capture that promotes: the bishop and queen check along the diagonal through the old
  // square; the knight checks from the square straight ahead.
  EXPECT_EQ(MovesFrom(All("7n/6P1/5k2/8/8/8/8/K7 w - - 0 1"), G7),
            (std::vector<Move>{MakeMoveWord(G7, G8, PAWN, 0, QUEEN),
                               MakeMoveWord(G7, G8, PAWN, 0, ROOK),
                               MakeMoveWord(G7, G8, PAWN, 0, BISHOP),
                               MakeMoveWord(G7, G8, PAWN, 0, KNIGHT) | DIRECT_CHECK_BIT,
                               MakeMoveWord(G7, H8, PAWN, KNIGHT, QUEEN) | DIRECT_CHECK_BIT,
                               MakeMoveWord(G7, H8, PAWN, KNIGHT, ROOK),
                               MakeMoveWord(G7, H8, PAWN, KNIGHT, BISHOP) | DIRECT_CHECK_BIT,
                               MakeMoveWord(G7, H8, PAWN, KNIGHT, KNIGHT)}));
}

TEST(MoveGenerator, QuiescenceMasksOnPromotions) {
  // With 17 a capture that promotes and a quiet promotion each yield the queen alone.
  EXPECT_EQ(Texts(Generate(BoardFromFen("1n2k3/P7/8/8/8/8/8/4K3 w - - 0 1"), 17)), "a7a8q a7b8q");
  // With 14 only the promotions that give check.
  EXPECT_EQ(Texts(Generate(BoardFromFen("8/4P3/8/4k3/8/8/8/K7 w - - 0 1"), 14)), "e7e8q e7e8r");
  // A capture that promotes yields the queen under any capture or check mask.
  EXPECT_EQ(Texts(Generate(BoardFromFen("1n6/P7/8/8/7k/8/8/K7 w - - 0 1"), 14)), "a7b8q");
}

TEST(MoveGenerator, VectorOverloadAppendsAllMoves) {
  const Board board = BoardFromFen(KIWIPETE);
  std::vector<Move> moves = {INVALID};
  GenerateMoves(moves, board);
  ASSERT_EQ(moves.size(), 49u);
  EXPECT_EQ(moves[0], INVALID);
  EXPECT_EQ(std::vector<Move>(moves.begin() + 1, moves.end()), Generate(board, 255));
}

// Every word that the board's own hash-move test accepts and that keeps the king safe, built by
// brute force over all squares, piece types and check bits: an independent list of legal moves.
std::vector<Move> BruteForceLegalMoves(const Board& board) {
  std::vector<Move> legal;
  const int sign = board.side_on_move == WHITE ? 1 : -1;
  for (int from = 0; from < 64; ++from) {
    const int moved = sign * board.squares[from];
    if (moved <= 0) continue;
    for (int to = 0; to < 64; ++to) {
      const int on_target = -sign * board.squares[to];
      const bool en_passant = moved == PAWN && to == board.EnPassant() && board.EnPassant() != 0;
      const int captured = en_passant ? PAWN : on_target > 0 ? on_target : 0;
      const bool promotes = moved == PAWN && (Rank(to) == 0 || Rank(to) == 7);
      for (int promotion : {0, 2, 3, 4, 5}) {
        if ((promotion != 0) != promotes) continue;
        for (Move checks : {Move{0}, DIRECT_CHECK_BIT, DISCOVERED_CHECK_BIT,
                            DIRECT_CHECK_BIT | DISCOVERED_CHECK_BIT}) {
          const Move move = MakeMoveWord(from, to, moved, captured, promotion) | checks;
          if (board.IsMovePseudoLegal(move) && !board.LeavesKingInCheck(move))
            legal.push_back(move);
        }
      }
    }
  }
  return legal;
}

TEST(MoveGenerator, GeneratesExactlyTheLegalMoves) {
  std::vector<Board> boards;
  for (const auto* list : {&Standard(), &Tactical()})
    for (const char* fen : *list) boards.push_back(BoardFromFen(fen));
  TestRandom random(7);
  for (int i = 0; i < 1000; ++i) boards.push_back(RandomPosition(random));
  for (const Board& board : boards) {
    std::vector<Move> generated = Generate(board, 255);
    std::vector<Move> expected = BruteForceLegalMoves(board);
    std::sort(generated.begin(), generated.end());
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(generated, expected) << FenOf(board) << "\n generated " << Texts(generated)
                                   << "\n expected  " << Texts(expected);
  }
}

// ---------------------------------------------------------------------------------------------
// Selection masks: each gives exactly the moves of the full list that it describes, in the same
// order, over many positions. In check every mask gives every evasion.

bool QueenOrNone(Move move) {
  return PromotionType(move) == 0 || PromotionType(move) == QUEEN;
}

// 17: captures and queen promotions.
bool CaptureOrQueenPromotion(Move move) {
  return (IsCapture(move) || IsPromotion(move)) && QueenOrNone(move);
}

// 14: every check, except that a promotion counts only for the pieces that check directly; a
// capture that promotes always brings its queen.
bool Check(Move move) {
  if (!IsPromotion(move)) return GivesCheck(move);
  return GivesDirectCheck(move) || (IsCapture(move) && PromotionType(move) == QUEEN);
}

bool Castle(Move move) { return IsCastling(move); }

struct MaskCase {
  int mask;
  std::function<bool(Move)> selects;
};

const std::vector<MaskCase>& MaskCases() {
  static const std::vector<MaskCase> cases = {
      {GEN_CAPTURES | GEN_QUEEN_PROMOTIONS, CaptureOrQueenPromotion},
      {GEN_ALL_CHECKS, Check},
      {GEN_CASTLING, Castle},
      {GEN_ALL_CHECKS | GEN_CAPTURES | GEN_QUEEN_PROMOTIONS,
       [](Move m) { return Check(m) || CaptureOrQueenPromotion(m); }},
      {GEN_CAPTURES | GEN_QUEEN_PROMOTIONS | GEN_CASTLING,
       [](Move m) { return CaptureOrQueenPromotion(m) || Castle(m); }},
      {GEN_ALL_CHECKS | GEN_CAPTURES | GEN_QUEEN_PROMOTIONS | GEN_CASTLING,
       [](Move m) { return Check(m) || CaptureOrQueenPromotion(m) || Castle(m); }},
      {GEN_ALL_MOVES, [](Move) { return true; }},
  };
  return cases;
}

void ExpectMasksSelectTheirSubsets(Board& node) {
  const std::vector<Move> all = Generate(node, 255);
  for (const MaskCase& mask_case : MaskCases()) {
    std::vector<Move> expected;
    for (Move move : all)
      if (node.InCheck() || mask_case.selects(move)) expected.push_back(move);
    EXPECT_EQ(Texts(Generate(node, mask_case.mask)), Texts(expected))
        << "mask " << mask_case.mask << " in check " << node.InCheck();
  }
}

TEST(MoveGenerator, SelectionMasksGiveExactlyTheirSubsets) {
  VisitTestNodes(ExpectMasksSelectTheirSubsets);
}

}  // namespace
