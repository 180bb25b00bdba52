// Single nodes of the tree on set positions: the answer against beta, what the node leaves in the
// transposition table, and how many nodes it takes with a technique on and off.
#include "search/search_node.h"

#include <gtest/gtest.h>

#include <cstdint>

#include "chess/random_numbers.h"
#include "evaluation/evaluate.h"
#include "search/hash.h"
#include "search/position_type.h"
#include "search/search_board.h"
#include "search/search_serial.h"
#include "search/search_settings.h"
#include "search/search_types.h"
#include "settings_guard.h"
#include "support/board_from_fen.h"
#include "without_tablebases.h"

namespace {
class SearchNodeTest : public ::testing::Test {
 protected:
  void SetUp() override {
    TRANSPOSITION_TABLE.Resize(std::uint64_t{4} << 20);
    UnloadTablebases();
  }

  // The position at the root of a search in the given iteration.
  SearchBoard& Setup(const char* fen, int iteration = 6) {
    position = fen;
    SearchBoard& board = *search.board;
    board.ResetForSearch(BoardFromFen(fen));
    board.contempt = 0;
    search.iteration = iteration;
    type = ClassifyPosition(board, UNCLASSIFIED);
    board.position_types[0] = board.position_types[1] = type;
    return board;
  }

  // One node at the root of a new search on fresh tables; `nodes` counts the tree it took.
  Score Node(Score beta, std::int32_t distance, int node_type, std::uint32_t flags = 0) {
    TRANSPOSITION_TABLE.Clear();
    PAWN_HASH_TABLE.Clear();
    EVALUATION_HASH_TABLE.Clear();
    SearchBoard& board = Setup(position, search.iteration);
    RestartRandomStream();
    // Killers carry over from one search to the next; each node here starts without any.
    for (KillerPair& killers : board.killers) killers = KillerPair{INVALID, INVALID};
    const Score value = SearchNode(board, board.move_stack, beta, distance, node_type, type, flags);
    nodes = board.nodes;
    return value;
  }

  // The node flags and distance of the table's entry for the root position.
  bool StoredEntry(int& flags, int& distance) {
    Move move = INVALID;
    int position_type = 0;
    const std::uint64_t key = search.board->Key();
    if (!TRANSPOSITION_TABLE.ProbeMove(key, move, distance)) return false;
    TRANSPOSITION_TABLE.Probe(key, 0, 0, 0, move, position_type, flags);
    return true;
  }

  SettingsGuard guard;
  SerialSearch search;
  const char* position = nullptr;
  int type = 0;
  std::uint64_t nodes = 0;
};

// White is a rook up in a quiet middle game.
constexpr const char* ROOK_UP =
    "2bq1rk1/pppp1ppp/2n2n2/2b1p3/2B1P3/2NP1N2/PPP2PPP/R1BQK2R w KQ - 0 1";
constexpr const char* FAR_BEHIND = "r1b1k3/pppp4/8/3qn3/8/8/PPPP4/4K2R w - - 0 1";
constexpr const char* ROOK_ENDING = "8/5pk1/6p1/8/3R4/6P1/5PK1/3r4 w - - 0 1";

TEST_F(SearchNodeTest, BeyondTheLastPlyANodeAnswersBelowBetaUnseen) {
  SearchBoard& board = Setup("4k3/8/8/3q4/4P3/8/8/4K3 w - - 0 1");  // exd5 wins the queen
  board.ply = SearchBoard::LAST_PLY + 1;
  EXPECT_EQ(SearchNode(board, board.move_stack, -500, 256, PV, type, 0), -501);
  EXPECT_EQ(board.nodes, 0u);
}

TEST_F(SearchNodeTest, TheNullMoveIsTriedOnlyWhereItMay) {
  struct Case {
    const char* fen;
    Score beta;
    int node_type;
    bool tried;
  };
  const Case cases[] = {
      {ROOK_UP, 0, CUT, true},
      {ROOK_UP, 0, PV, false},       // never in a PV node
      {ROOK_UP, 800, CUT, false},    // more than two pawns short of beta by material
      {ROOK_ENDING, 0, CUT, false},  // no null move in a rook ending
  };
  min_ply_for_null_move = 0;
  for (const Case& c : cases) {
    Setup(c.fen);
    const Score with = Node(c.beta, 256, c.node_type);
    const std::uint64_t nodes_with = nodes;
    const Score without = Node(c.beta, 256, c.node_type, SKIP_NULL_MOVE);
    EXPECT_EQ(with, without) << c.fen << " " << c.beta;
    EXPECT_EQ(nodes_with != nodes, c.tried) << c.fen << " " << c.beta;
  }
}

TEST_F(SearchNodeTest, AFailedNullMoveFindsTheMateThreat) {
  // Black threatens Rb1 mate on the back rank, and the white queen can't come back in time.
  Setup("2b3k1/Q4ppp/8/8/7N/8/1r3PPP/6K1 w - - 0 1");
  ASSERT_EQ(type, ENDGAME_OTHER);
  min_ply_for_null_move = 0;
  Node(0, 256, CUT);
  int flags = 0;
  int distance = 0;
  ASSERT_TRUE(StoredEntry(flags, distance));
  EXPECT_TRUE(flags & MATE_THREAT);

  min_distance_for_mate_threat_test = 64000;
  Node(0, 256, CUT);
  ASSERT_TRUE(StoredEntry(flags, distance));
  EXPECT_FALSE(flags & MATE_THREAT);
}

TEST_F(SearchNodeTest, ARazoredNodeIsStoredAtItsReducedDistance) {
  // White is far below beta by material; only Rh8+ is exempt from futility.
  Setup(FAR_BEHIND);
  struct Case {
    bool razoring;
    int node_type;
    int stored_distance;
  };
  const Case cases[] = {{true, CUT, 136}, {false, CUT, 200}, {true, PV, 200}};
  for (const Case& c : cases) {
    enable_limited_razoring_if_not_searching_pv_move = c.razoring;
    EXPECT_EQ(Node(0, 200, c.node_type), -1);
    int flags = 0;
    int distance = 0;
    ASSERT_TRUE(StoredEntry(flags, distance));
    EXPECT_EQ(distance, c.stored_distance) << c.razoring << " " << c.node_type;
  }
}

TEST_F(SearchNodeTest, AQuiescenceNodeThatRefusesEveryMoveFailsLowAndStoresNothing) {
  // The only capture, Qxd5, loses the queen for a pawn.
  Setup("6k1/5ppp/4p3/3p4/8/8/5PPP/3Q2K1 w - - 0 1");
  // Just above the static score, so that standing pat fails too.
  const Score beta = EvaluatePosition(*search.board) + 1;
  EXPECT_EQ(Node(beta, 0, CUT), beta - 1);
  EXPECT_EQ(nodes, 1u);
  Move move = INVALID;
  int distance = 0;
  EXPECT_FALSE(TRANSPOSITION_TABLE.ProbeMove(search.board->Key(), move, distance));
}

TEST_F(SearchNodeTest, InternalDeepeningRunsInPvNodesFromTwoPlies) {
  struct Case {
    int node_type;
    std::int32_t distance;
    bool deepens;
  };
  const Case cases[] = {{PV, 128, true}, {PV, 127, false}, {CUT, 128, false}, {CUT, 256, true}};
  for (const Case& c : cases) {
    Setup(ROOK_UP);
    min_depth_for_iid_if_searching_pv_move = 128;
    min_depth_for_iid_if_not_searching_pv_move = 256;
    Node(0, c.distance, c.node_type, SKIP_NULL_MOVE);
    const std::uint64_t nodes_with = nodes;
    min_depth_for_iid_if_searching_pv_move = min_depth_for_iid_if_not_searching_pv_move = 64000;
    Node(0, c.distance, c.node_type, SKIP_NULL_MOVE);
    EXPECT_EQ(nodes_with != nodes, c.deepens) << c.node_type << " " << c.distance;
  }
}

TEST_F(SearchNodeTest, TheSearchFlagsSwitchTechniquesOffForTheNodeAndItsChildren) {
  // Three plies: razoring and futility in the node, extended futility in its children; the
  // grandchildren are beyond the reach of the flags and of these techniques alike.
  Setup(FAR_BEHIND);
  enable_search_extensions = false;
  enable_futility_pruning_if_not_searching_pv_move = false;
  const std::uint32_t flags = SKIP_RAZORING | SKIP_EXTENDED_FUTILITY | SKIP_LMR |
                              CHILD_SKIP_RAZORING | CHILD_SKIP_EXTENDED_FUTILITY | CHILD_SKIP_LMR;
  const Score plain = Node(0, 192, CUT);
  const std::uint64_t plain_nodes = nodes;
  const Score flagged = Node(0, 192, CUT, flags);
  const std::uint64_t flagged_nodes = nodes;
  EXPECT_NE(flagged_nodes, plain_nodes);
  enable_limited_razoring_if_not_searching_pv_move = false;
  enable_extended_futility_pruning_if_not_searching_pv_move = false;
  enable_late_move_reduction = false;
  EXPECT_EQ(Node(0, 192, CUT), flagged);
  EXPECT_EQ(nodes, flagged_nodes);
  EXPECT_EQ(plain, flagged);
}

TEST_F(SearchNodeTest, ExtensionsMakeTheTreeDeeperAndCanBeSwitchedOff) {
  Setup("r5rk/5p1p/5R2/4B3/8/8/7P/7K w - - 0 1");
  // Ra6+ mates in three: found at three plies with the check extensions, and not without them.
  EXPECT_EQ(Node(MATE_THRESHOLD + 1, 192, PV), MATE_THRESHOLD + 1);
  enable_search_extensions = false;
  EXPECT_EQ(Node(MATE_THRESHOLD + 1, 192, PV), MATE_THRESHOLD);
}
// The nodes a search of the position takes when the table already knows `move` from a shallow
// search, with or without the single reply flag.
TEST_F(SearchNodeTest, AnOnlyMoveFromTheTableIsSearchedAgainWithItsExtension) {
  const char* only_move = "7k/8/8/8/8/8/8/K5R1 b - - 0 1";  // Kh7 is the only legal move
  const Move kh7 = MakeMoveWord(H8, H7, KING);
  const auto nodes_with_entry = [&](int stored_flags) {
    SearchBoard& board = Setup(only_move);
    RestartRandomStream();
    TRANSPOSITION_TABLE.Clear();
    TRANSPOSITION_TABLE.Store(MakeBoundEntry(board.Key(), kh7, type, stored_flags, 0, 0, true));
    board.nodes = 0;
    SearchNode(board, board.move_stack, 0, 192, CUT, type, 0);
    return board.nodes;
  };
  const std::uint64_t unknown = nodes_with_entry(0);
  const std::uint64_t known_single = nodes_with_entry(SINGLE_REPLY);
  EXPECT_GT(unknown, known_single);
  enable_search_extensions = false;
  EXPECT_EQ(nodes_with_entry(0), nodes_with_entry(SINGLE_REPLY));
}

TEST_F(SearchNodeTest, AShallowEntryGivesItsMoveWhichStaysBestWhenAllFail) {
  // Every move fails against a beta a queen above the material; the move of the shallow entry
  // is searched first and stored with the upper bound (unless futility skips it).
  enable_extended_futility_pruning_if_not_searching_pv_move = false;
  SearchBoard& board = Setup(ROOK_UP);
  const Move move = MakeMoveWord(A2, A3, PAWN);
  TRANSPOSITION_TABLE.Clear();
  TRANSPOSITION_TABLE.Store(MakeBoundEntry(board.Key(), move, type, 0, 0, 0, true));
  const Score beta = board.Material() + 1500;
  EXPECT_EQ(SearchNode(board, board.move_stack, beta, 128, ALL, type, 0), beta - 1);
  Move stored = INVALID;
  int distance = 0;
  ASSERT_TRUE(TRANSPOSITION_TABLE.ProbeMove(board.Key(), stored, distance));
  EXPECT_EQ(stored, move);
  EXPECT_EQ(distance, 128);
}
}  // namespace
