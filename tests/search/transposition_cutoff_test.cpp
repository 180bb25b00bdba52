#include "search/transposition_cutoff.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "chess/move_generator.h"
#include "chess/user_board.h"
#include "search/hash.h"
#include "search/node_state.h"
#include "search/search_board.h"
#include "search/search_serial.h"
#include "search/search_settings.h"
#include "search/search_types.h"
#include "settings_guard.h"
#include "support/board_from_fen.h"
#include "without_tablebases.h"

namespace {
constexpr const char* ENDING = "6k1/5ppp/8/8/8/8/5PPP/3R2K1 w - - 0 1";

class TranspositionCutoffTest : public ::testing::Test {
 protected:
  void SetUp() override {
    TRANSPOSITION_TABLE.Resize(std::uint64_t{4} << 20);
    TRANSPOSITION_TABLE.Clear();
    UnloadTablebases();
  }
  SearchBoard& Setup(const char* fen) {
    SearchBoard& board = *search.board;
    board.ResetForSearch(BoardFromFen(fen));
    for (KillerPair& killers : board.killers) killers = KillerPair{INVALID, INVALID};
    return board;
  }
  // The child's entry: its value seen from the child, at a distance that answers any probe.
  void StoreChild(const SearchBoard& board, Move move, Score child_value, bool lower) {
    TRANSPOSITION_TABLE.Store(MakeBoundEntry(board.KeyAfterMove(move), REPLY, 15, 0, 1000,
                                             child_value, lower));
  }
  bool Try(SearchBoard& board, Score beta) {
    return TryTranspositionCutoff(board, board.move_stack, end, hash_move, value, node_flags, beta,
                                  128);
  }
  Move hash_move = INVALID;
  Score value = 0;
  std::uint32_t node_flags = 0;
  Move* end = nullptr;
  static constexpr Move REPLY = MakeMoveWord(G8, F8, KING);
  SettingsGuard guard;
  SerialSearch search;
};

TEST_F(TranspositionCutoffTest, OnlyShallowCutNodesOfFewPiecesQualify) {
  struct Case {
    std::int32_t distance;
    int node_type;
    int position_type;
    Score beta;
    std::uint32_t flags;
    std::uint32_t node_flags;
    bool qualifies;
  };
  const Case cases[] = {
      {65, CUT, 15, 0, 0, 0, true},
      {64, CUT, 15, 0, 0, 0, false},
      {128, CUT, 15, 0, 0, 0, true},
      {129, CUT, 15, 0, 0, 0, false},
      {65, ALL, 15, 0, 0, 0, false},
      {65, CUT, 1, 0, 0, 0, false},  // endings only
      {65, CUT, 15, MATE_THRESHOLD + 1, 0, 0, false},
      {65, CUT, 15, 0, SKIP_ETTC, 0, false},
      {65, CUT, 15, 0, 0, SINGLE_REPLY, false},
      {65, CUT, 15, 0, 0, PERPETUAL_CHECK_THREAT, false},
  };
  SearchBoard& board = Setup(ENDING);
  for (const Case& c : cases) {
    NodeState node{board, 0, c.beta, c.distance, c.node_type, c.position_type, c.position_type,
                   c.flags};
    node.node_flags = c.node_flags;
    enable_ettc = false;
    EXPECT_FALSE(MayTryTranspositionCutoff(node));
    enable_ettc = true;
    EXPECT_EQ(MayTryTranspositionCutoff(node), c.qualifies) << c.distance << " " << c.node_type;
  }
  max_pieces_left_for_ettc = 8;  // the ending has nine
  NodeState node{board, 0, 0, 65, CUT, 15, 15, 0};
  EXPECT_FALSE(MayTryTranspositionCutoff(node));
}

TEST_F(TranspositionCutoffTest, AMoveWhoseChildFailsLowCutsTheNodeOff) {
  SearchBoard& board = Setup(ENDING);
  Move list[MOVE_BUFFER_SIZE];
  const Move* generated = GenerateMoves(list, board, GEN_EVERY_MOVE);
  ASSERT_GT(generated - list, 3);
  const Score beta = 50;
  StoreChild(board, list[2], -500, false);  // below 1 - beta: the move reaches beta
  EXPECT_TRUE(Try(board, beta));
  EXPECT_EQ(hash_move, list[2]);
  EXPECT_EQ(value, beta);
  EXPECT_EQ(board.ettc_tries, 1u);
  EXPECT_EQ(board.ettc_cutoffs, 1u);
  EXPECT_EQ(board.killers[1].first, REPLY);
}

TEST_F(TranspositionCutoffTest, RefutedMovesLeaveTheListButNotTheHashMove) {
  SearchBoard& board = Setup(ENDING);
  Move list[MOVE_BUFFER_SIZE];
  const Move* generated = GenerateMoves(list, board, GEN_EVERY_MOVE);
  const long count = generated - list;
  const Score beta = 50;
  StoreChild(board, list[0], 500, true);  // the child reaches its bound: the move fails
  StoreChild(board, list[1], 500, true);
  hash_move = list[1];
  EXPECT_FALSE(Try(board, beta));
  EXPECT_EQ(end - board.move_stack, count - 1);
  EXPECT_EQ(std::count(board.move_stack, end, list[0]), 0);
  EXPECT_EQ(std::count(board.move_stack, end, list[1]), 1);
  EXPECT_EQ(board.ettc_tries, 1u);
  EXPECT_EQ(board.ettc_cutoffs, 0u);
}

TEST_F(TranspositionCutoffTest, ASingleLegalMoveIsNotLookedUp) {
  SearchBoard& board = Setup("7k/8/8/8/8/8/8/K5R1 b - - 0 1");
  EXPECT_FALSE(Try(board, 0));
  EXPECT_EQ(hash_move, board.move_stack[0]);
  EXPECT_TRUE(node_flags & SINGLE_REPLY);
  EXPECT_EQ(board.ettc_tries, 0u);
  EXPECT_EQ(board.nodes, 0u);
}

TEST_F(TranspositionCutoffTest, OffByDefaultAndSwitchedOnEverywhereTheSearchStillWinsTheQueen) {
  UserBoard game;
  game.SetFEN("4k3/8/8/8/3q4/5N2/8/3RK3 w - - 0 1");  // the black queen hangs to the knight
  SearchRequest request;
  request.max_depth = 6;
  search.SearchWithoutHost(request, game);
  EXPECT_EQ(search.ettc_tries, 0u);
  EXPECT_EQ(search.ettc_cutoffs, 0u);
  enable_ettc = true;
  only_use_ettc_in_endgames = false;
  only_use_ettc_on_cut_nodes = false;
  max_distance_for_ettc = 64000;
  TRANSPOSITION_TABLE.Clear();
  search.SearchWithoutHost(request, game);
  ASSERT_FALSE(search.best_line.empty());
  const std::string capture = search.best_line.front().text;
  EXPECT_TRUE(capture == "Nxd4" || capture == "Rxd4") << capture;
  EXPECT_GT(search.score, 500);
  EXPECT_GT(search.ettc_tries, 0u);
}
}  // namespace
