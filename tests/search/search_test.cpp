#include <gtest/gtest.h>

#include <string>

#include "chess/user_board.h"
#include "search/hash.h"
#include "search/position_type.h"
#include "search/search_board.h"
#include "search/search_node.h"
#include "search/search_serial.h"
#include "search/search_types.h"
#include "without_tablebases.h"

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
    UnloadTablebases();
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

TEST_F(SearchTest, FixedDepthSearchesFindTheRightMove) {
  const struct {
    const char* fen;
    int depth;
    const char* moves[2];  // either is right
    Score score;           // exactly for a mate, else at least
    int moves_total;
  } cases[] = {
      // Kb6 and Kc7 both leave the king a single square, and the rook mates next move.
      {"k7/8/2K5/8/8/8/8/7R w - - 0 1", 4, {"Kb6", "Kc7"}, MATE - 3, -1},
      {"r5rk/5p1p/5R2/4B3/8/8/7P/7K w - - 0 1", 6, {"Ra6+", "Ra6+"}, MATE - 5, -1},
      {"7k/8/8/8/8/8/8/K5R1 b - - 0 1", 3, {"Kh7", "Kh7"}, -MATE, 1},
      // The black queen on d4 is attacked twice and defended by nothing.
      {"4k3/8/8/8/3q4/5N2/8/3RK3 w - - 0 1", 3, {"Nxd4", "Rxd4"}, 500, -1},
  };
  for (const auto& c : cases) {
    SearchToDepth(c.fen, c.depth);
    EXPECT_TRUE(BestMoveText() == c.moves[0] || BestMoveText() == c.moves[1]) << BestMoveText();
    if (c.moves_total >= 0) EXPECT_EQ(search.moves_total, c.moves_total) << c.fen;
    if (c.score < MATE_THRESHOLD) {
      EXPECT_GE(search.score, c.score) << c.fen;
      EXPECT_EQ(search.depth, c.depth) << c.fen;
      continue;
    }
    EXPECT_EQ(search.score, c.score) << c.fen;
    const std::size_t mating_move = std::size_t(MATE - c.score - 1);
    ASSERT_GT(search.best_line.size(), mating_move) << c.fen;
    EXPECT_EQ(search.best_line[mating_move].text.back(), '#') << c.fen;
  }
  SearchToDepth("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1", 1);
  EXPECT_EQ(search.depth, 1);
  EXPECT_EQ(search.moves_total, 20);
  EXPECT_GT(search.nodes, 0u);
  SearchToDepth("R5k1/5ppp/8/8/8/8/8/6K1 b - - 0 1", 3);  // Black is mated: nothing to search
  EXPECT_TRUE(search.no_moves);
  EXPECT_EQ(search.best_move, INVALID);
  EXPECT_EQ(search.moves_total, 0);
}

TEST_F(SearchTest, StalemateIsWorthTheContempt) {
  const char* stalemate = "7k/5Q2/6K1/8/8/8/8/8 b - - 0 1";
  for (Score contempt : {0, 50, -30}) {
    EXPECT_EQ(Node(stalemate, contempt, 64, contempt), contempt);  // at least the contempt
    EXPECT_EQ(Node(stalemate, contempt + 1, 64, contempt), contempt);
  }
}

TEST_F(SearchTest, MateInTheNodeAndTheMateBounds) {
  const char* mated = "R5k1/5ppp/8/8/8/8/8/6K1 b - - 0 1";
  // Mated at ply 0: -32767, so every beta above it fails low.
  EXPECT_EQ(Node(mated, -32766, 64, 0), -32767);
  // No line is better than mating at once: a beta at the mate bound of the ply fails low...
  EXPECT_EQ(Node("k7/8/2K5/8/8/8/8/7R w - - 0 1", MATE, 640, 0), MATE - 1);
  // ... and none is worse than being mated now.
  EXPECT_EQ(Node("k7/8/2K5/8/8/8/8/7R w - - 0 1", -MATE, 640, 0), -MATE);
}
