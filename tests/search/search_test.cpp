#include <gtest/gtest.h>

#include <string>

#include "chess/user_board.h"
#include "search/hash.h"
#include "search/position_type.h"
#include "search/search_board.h"
#include "search/search_node.h"
#include "search/search_serial.h"
#include "search/search_types.h"

namespace {
UserBoard Game(const char* fen) {
  UserBoard game;
  game.SetFEN(fen);
  return game;
}

// A search to a fixed depth on fresh tables, as a tool would run it.
class SearchTest : public ::testing::Test {
 protected:
  void SetUp() override {
    TRANSPOSITION_TABLE.Resize(std::uint64_t{4} << 20);
    TRANSPOSITION_TABLE.Clear();
    EVALUATION_HASH_TABLE.Clear();
  }

  void SearchToDepth(const char* fen, int depth) {
    SearchRequest request;
    request.max_depth = depth;
    search.SearchWithoutHost(request, Game(fen));
  }

  std::string BestMoveText() const {
    return search.best_line.empty() ? "" : search.best_line.front().text;
  }

  // One node of the tree, at the root position, with the given contempt.
  Score Node(const char* fen, Score beta, std::int32_t distance, Score contempt) {
    SearchBoard& board = *search.board;
    board.ResetForSearch(Game(fen).current);
    board.contempt = contempt;
    const int type = ClassifyPosition(board, UNCLASSIFIED);
    return SearchNode(board, board.move_stack, beta, distance, PV, type, 0);
  }

  SerialSearch search;
};
}  // namespace

TEST_F(SearchTest, FindsMateInTwo) {
  SearchToDepth("k7/8/2K5/8/8/8/8/7R w - - 0 1", 4);
  // Kb6 and Kc7 both leave the king a single square, and the rook mates on the next move.
  EXPECT_TRUE(BestMoveText() == "Kb6" || BestMoveText() == "Kc7") << BestMoveText();
  EXPECT_EQ(search.score, MATE_SCORE - 3);
  ASSERT_GE(search.best_line.size(), 3u);
  EXPECT_EQ(search.best_line[2].text.back(), '#');
}

TEST_F(SearchTest, FindsMateInThree) {
  SearchToDepth("r5rk/5p1p/5R2/4B3/8/8/7P/7K w - - 0 1", 6);
  EXPECT_EQ(BestMoveText(), "Ra6+");
  EXPECT_EQ(search.score, MATE_SCORE - 5);
  ASSERT_GE(search.best_line.size(), 5u);
  EXPECT_EQ(search.best_line[4].text.back(), '#');
}

TEST_F(SearchTest, AnswersTheOnlyLegalMove) {
  SearchToDepth("7k/8/8/8/8/8/8/K5R1 b - - 0 1", 3);
  EXPECT_EQ(search.moves_total, 1);
  EXPECT_EQ(BestMoveText(), "Kh7");
  EXPECT_EQ(search.depth, 3);
}

TEST_F(SearchTest, DepthOneIsASingleIteration) {
  SearchToDepth("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1", 1);
  EXPECT_EQ(search.depth, 1);
  EXPECT_EQ(search.moves_total, 20);
  EXPECT_NE(search.best_move, INVALID);
  EXPECT_GT(search.nodes, 0u);
}

TEST_F(SearchTest, WinsHangingMaterial) {
  // The black queen on d4 is attacked by the knight and the rook and defended by nothing.
  SearchToDepth("4k3/8/8/8/3q4/5N2/8/3RK3 w - - 0 1", 3);
  EXPECT_TRUE(BestMoveText() == "Nxd4" || BestMoveText() == "Rxd4") << BestMoveText();
  EXPECT_GT(search.score, 500);
}

TEST_F(SearchTest, AFinishedGameIsNotSearched) {
  SearchToDepth("R5k1/5ppp/8/8/8/8/8/6K1 b - - 0 1", 3);  // Black is mated
  EXPECT_TRUE(search.no_moves);
  EXPECT_EQ(search.best_move, INVALID);
  EXPECT_EQ(search.moves_total, 0);
}

TEST_F(SearchTest, StalemateIsWorthTheContempt) {
  const char* stalemate = "7k/5Q2/6K1/8/8/8/8/8 b - - 0 1";
  EXPECT_EQ(Node(stalemate, 0, 64, 0), 0);   // at least 0
  EXPECT_EQ(Node(stalemate, 1, 64, 0), 0);   // below 1
  EXPECT_EQ(Node(stalemate, 50, 64, 50), 50);
  EXPECT_EQ(Node(stalemate, 51, 64, 50), 50);
  EXPECT_EQ(Node(stalemate, -30, 64, -30), -30);
  EXPECT_EQ(Node(stalemate, -29, 64, -30), -30);
}

TEST_F(SearchTest, MateInTheNodeAndTheMateBounds) {
  const char* mated = "R5k1/5ppp/8/8/8/8/8/6K1 b - - 0 1";
  // Mated at ply 0: -32767, so every beta above it fails low.
  EXPECT_EQ(Node(mated, -32766, 64, 0), -32767);
  // No line is better than mating at once: a beta at the mate bound of the ply fails low...
  EXPECT_EQ(Node("k7/8/2K5/8/8/8/8/7R w - - 0 1", MATE_SCORE, 640, 0), MATE_SCORE - 1);
  // ... and none is worse than being mated now.
  EXPECT_EQ(Node("k7/8/2K5/8/8/8/8/7R w - - 0 1", -MATE_SCORE, 640, 0), -MATE_SCORE);
}
