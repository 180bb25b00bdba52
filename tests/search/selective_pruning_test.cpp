#include "search/selective_pruning.h"

#include <gtest/gtest.h>

#include "search/node_state.h"
#include "search/search_board.h"
#include "search/search_serial.h"
#include "search/search_types.h"
#include "support/board_from_fen.h"

namespace {
constexpr Move QUIET = MakeMoveWord(G1, F3, KNIGHT);
constexpr Move CAPTURE = MakeMoveWord(F3, E5, KNIGHT, PAWN);

class SelectivePruningTest : public ::testing::Test {
 protected:
  NodeState MakeNode(Score beta, std::int32_t distance, int node_type) {
    SearchBoard& board = *search.board;
    board.ResetForSearch(BoardFromFen("4k3/8/8/8/8/8/8/4K3 w - - 0 1"));
    return NodeState{board, 4, beta, distance, node_type, MIDDLEGAME_TYPE, MIDDLEGAME_TYPE, 0};
  }
  static constexpr int MIDDLEGAME_TYPE = 1;
  SerialSearch search;
};

TEST_F(SelectivePruningTest, FutilitySkipsMovesThatCannotReachBeta) {
  struct Case {
    Move move;
    Score beta;
    bool futile;
  };
  const Case cases[] = {
      {QUIET, 1, true},
      {QUIET, 0, false},
      {MakeMoveWord(A1, A8, ROOK, ROOK), 500, false},
      {MakeMoveWord(A1, A8, ROOK, ROOK), 501, true},
      // A queen promotion brings 920: the queen less the pawn.
      {MakeMoveWord(B7, B8, PAWN, 0, QUEEN), 920, false},
      {MakeMoveWord(B7, B8, PAWN, 0, QUEEN), 921, true},
      // A check is never futile, whatever it captures.
      {MakeMoveWord(A1, A8, ROOK, PAWN) | DIRECT_CHECK_BIT, 5000, false},
      {QUIET | DISCOVERED_CHECK_BIT, 5000, false},
  };
  for (const Case& c : cases) {
    NodeState node = MakeNode(c.beta, 64, CUT);
    node.prune = true;
    node.prune_base = 0;
    EXPECT_EQ(IsFutile(node, c.move), c.futile) << c.move << " " << c.beta;
    node.prune = false;
    EXPECT_FALSE(IsFutile(node, c.move));
  }
}

TEST_F(SelectivePruningTest, LateMovesAreReducedOutsideThePrincipalVariation) {
  struct Case {
    std::int32_t distance;
    int node_type;
    int move_count;
    Move move;
    Move hash_move;
    std::uint32_t flags;
    std::uint32_t node_flags;
    std::uint32_t extension_flags;
    std::int32_t reduction;
  };
  const Case cases[] = {
      {192, CUT, 3, QUIET, INVALID, 0, 0, 0, 0},    // the second and third move are not reduced
      {192, CUT, 4, QUIET, INVALID, 0, 0, 0, 64},   // the fourth is
      {192, ALL, 4, QUIET, INVALID, 0, 0, 0, 64},
      {191, CUT, 4, QUIET, INVALID, 0, 0, 0, 0},    // too close to the horizon
      {192, CUT, 4, QUIET | DIRECT_CHECK_BIT, INVALID, 0, 0, 0, 0},  // unless it checks
      {192, PV, 4, QUIET, INVALID, 0, 0, 0, 0},
      {192, CUT, 4, QUIET, INVALID, SKIP_LMR, 0, 0, 0},
      {192, CUT, 4, QUIET, INVALID, 0, MATE_THREAT, 0, 0},
      {192, CUT, 4, QUIET, INVALID, 0, QUEEN_NOT_ATTACKED, 0, 64},  // no threat
      {192, CUT, 4, QUIET, INVALID, 0, 0, EXTENDED_RECAPTURE, 0},   // the node was extended
      // The extended reduction needs a tactical hash move, a late quiet move and distance.
      {320, CUT, 8, QUIET, CAPTURE, 0, 0, 0, 192},
      {320, CUT, 7, QUIET, CAPTURE, 0, 0, 0, 64},
      {320, CUT, 8, QUIET, QUIET, 0, 0, 0, 64},
      {319, CUT, 8, QUIET, CAPTURE, 0, 0, 0, 64},
      {320, CUT, 8, CAPTURE, CAPTURE, 0, 0, 0, 64},
  };
  for (const Case& c : cases) {
    NodeState node = MakeNode(0, c.distance, c.node_type);
    node.hash_move = c.hash_move;
    node.flags = c.flags;
    node.node_flags = c.node_flags;
    node.extension_flags = c.extension_flags;
    EXPECT_EQ(LateMoveReduction(node, c.move, c.move_count), c.reduction)
        << c.distance << " " << c.node_type << " " << c.move_count << " " << c.move;
  }
}

TEST_F(SelectivePruningTest, RazoringAndFutilityFollowDistanceAndMaterial) {
  struct Case {
    const char* fen;
    Score beta;
    std::int32_t distance;
    int node_type;
    std::uint32_t flags;
    std::int32_t distance_after;
    bool prune;
    Score prune_base;
  };
  // White is 1640 behind by material; the opponent has five pieces.
  const char* behind = "r1b1k3/pppp4/8/3qn3/8/8/PPPP4/4K2R w - - 0 1";
  const Case cases[] = {
      // Razored to 136, which is in reach of extended futility.
      {behind, 0, 200, CUT, 0, 136, true, -1640 + 600},
      {behind, 0, 209, CUT, 0, 209, false, 0},
      {behind, 0, 200, PV, 0, 200, false, 0},
      {behind, 0, 200, CUT, SKIP_RAZORING, 200, false, 0},
      {behind, 0, 137, CUT, SKIP_RAZORING, 137, true, -1640 + 600},
      {behind, 0, 137, CUT, SKIP_RAZORING | SKIP_EXTENDED_FUTILITY, 137, false, 0},
      {behind, -620, 137, CUT, 0, 137, true, -1640 + 600},  // not below the razoring margin
      {behind, 0, 64, CUT, 0, 64, true, -1640 + 300},       // futility overrides
      {behind, -1340, 64, CUT, 0, 64, false, 0},
      {behind, 0, -100, PV, 0, -100, false, 0},
      {behind, 0, -100, CUT, 0, -100, true, -1640 + 300},
  };
  for (const Case& c : cases) {
    SearchBoard& board = *search.board;
    board.ResetForSearch(BoardFromFen(c.fen));
    NodeState node{board, 4, c.beta, c.distance, c.node_type, MIDDLEGAME_TYPE, MIDDLEGAME_TYPE,
                   c.flags};
    PrepareSelectivePruning(node);
    EXPECT_EQ(node.distance, c.distance_after) << c.distance << " " << c.beta;
    EXPECT_EQ(node.razor_reduction, c.distance - c.distance_after);
    EXPECT_EQ(node.prune, c.prune) << c.distance << " " << c.beta;
    if (c.prune) {
      EXPECT_EQ(node.prune_base, c.prune_base) << c.distance << " " << c.beta;
    }
  }
}

TEST_F(SelectivePruningTest, ThreatsAndSimpleEndingsTakeNoShortCut) {
  SearchBoard& board = *search.board;
  board.ResetForSearch(BoardFromFen("r1b1k3/pppp4/8/3qn3/8/8/PPPP4/4K2R w - - 0 1"));
  NodeState threatened{board, 4, 0, 200, CUT, MIDDLEGAME_TYPE, MIDDLEGAME_TYPE, 0};
  threatened.node_flags = PIN_THREAT;
  PrepareSelectivePruning(threatened);
  EXPECT_EQ(threatened.distance, 200);
  EXPECT_FALSE(threatened.prune);
  // The type the parent handed down decides, not the one the node refined it to.
  NodeState ending{board, 4, 0, 200, CUT, 3, MIDDLEGAME_TYPE, 0};
  PrepareSelectivePruning(ending);
  EXPECT_EQ(ending.distance, 200);
  EXPECT_FALSE(ending.prune);
}
}  // namespace
