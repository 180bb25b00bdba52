// With every selective technique switched off the node walks the plain full-width tree with
// quiescence, and its node count is that tree's fingerprint: a setting that fails to switch its
// technique off, or a technique that runs without its setting, changes the count.
#include <gtest/gtest.h>

#include <cstdint>

#include "chess/random_numbers.h"
#include "chess/user_board.h"
#include "search/hash.h"
#include "search/search_serial.h"
#include "search/search_settings.h"
#include "settings_guard.h"
#include "without_tablebases.h"

namespace {
void SwitchOffSelectiveTechniques() {
  enable_search_extensions = false;
  min_distance_for_null_move = 64000;
  min_depth_for_iid_if_searching_pv_move = 64000;
  min_depth_for_iid_if_not_searching_pv_move = 64000;
  enable_limited_razoring_if_not_searching_pv_move = false;
  enable_extended_futility_pruning_if_not_searching_pv_move = false;
  enable_futility_pruning_if_not_searching_pv_move = false;
  enable_late_move_reduction = false;
  enable_pin_threat_detection = false;
  enable_perpetual_check_detection = false;
  enable_ettc = false;
}

std::uint64_t NodesToDepth(SerialSearch& search, const char* fen, int depth) {
  TRANSPOSITION_TABLE.Clear();
  PAWN_HASH_TABLE.Clear();
  EVALUATION_HASH_TABLE.Clear();
  UserBoard game;
  game.SetFEN(fen);
  SearchRequest request;
  request.max_depth = depth;
  RestartRandomStream();
  search.SearchWithoutHost(request, game);
  return search.nodes;
}

TEST(FullWidthTree, NodeCountsWithAllTechniquesOff) {
  SettingsGuard guard;
  UnloadTablebases();
  SwitchOffSelectiveTechniques();
  TRANSPOSITION_TABLE.Resize(std::uint64_t{4} << 20);
  SerialSearch search;
  struct Case {
    const char* fen;
    int depth;
    std::uint64_t nodes;
  };
  // The figures of the node before it had any selective technique, measured with the same
  // evaluation, each search starting from the same point of the random stream that the move
  // ordering draws from. A change of the evaluation changes them: measure them again with
  // every technique off and compare with the plain node's figures before taking them.
  const Case cases[] = {
      {"r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1", 4, 18703},
      {"8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - - 0 1", 6, 22679},
      {"2rq1rk1/pp1bppbp/3p1np1/4n3/3NP3/1BN1BP2/PPPQ2PP/2KR3R w - - 9 12", 5, 81892},
      {"8/5pk1/6p1/8/3R4/6P1/5PK1/3r4 w - - 0 1", 7, 42102},
  };
  for (const Case& c : cases) EXPECT_EQ(NodesToDepth(search, c.fen, c.depth), c.nodes) << c.fen;
}
}  // namespace
