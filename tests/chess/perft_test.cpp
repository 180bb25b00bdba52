// Leaf counts of the legal move tree against the published ones: they catch any missing or extra
// move, however rare, in the generator or a fault of make/unmake.
#include <gtest/gtest.h>

#include <cstdint>

#include "support/test_positions.h"

namespace {

using namespace TestPositions;

struct PerftCase {
  const char* fen;
  int depth;
  std::uint64_t leaves;
};

void ExpectCount(const PerftCase& perft) {
  Board board = BoardFromFen(perft.fen);
  EXPECT_EQ(Perft::CountLeaves(board, perft.depth), perft.leaves)
      << perft.fen << " depth " << perft.depth;
}

TEST(Perft, InitialPosition) {
  for (const PerftCase& perft : {PerftCase{INITIAL, 1, 20}, PerftCase{INITIAL, 2, 400},
                                 PerftCase{INITIAL, 3, 8902}, PerftCase{INITIAL, 5, 4865609}})
    ExpectCount(perft);
}

TEST(Perft, Kiwipete) {
  for (const PerftCase& perft : {PerftCase{KIWIPETE, 1, 48}, PerftCase{KIWIPETE, 2, 2039},
                                 PerftCase{KIWIPETE, 3, 97862}, PerftCase{KIWIPETE, 4, 4085603}})
    ExpectCount(perft);
}

TEST(Perft, StandardPositions) {
  for (const PerftCase& perft : {
           PerftCase{POSITION_3, 1, 14},
           PerftCase{POSITION_3, 6, 11030083},
           PerftCase{POSITION_4, 1, 6},
           PerftCase{POSITION_4, 5, 15833292},
           PerftCase{POSITION_4_MIRRORED, 4, 422333},
           PerftCase{POSITION_5, 1, 44},
           PerftCase{POSITION_5, 4, 2103487},
           PerftCase{POSITION_6, 1, 46},
           PerftCase{POSITION_6, 4, 3894594},
       })
    ExpectCount(perft);
}

// Published counts of small positions that each aim at one trap.
TEST(Perft, TrapPositions) {
  for (const PerftCase& perft : {
           PerftCase{"3k4/3p4/8/K1P4r/8/8/8/8 b - - 0 1", 6, 1134888},     // en passant pin
           PerftCase{"8/8/4k3/8/2p5/8/B2P2K1/8 w - - 0 1", 6, 1015133},    // en passant pin
           PerftCase{"8/8/1k6/2b5/2pP4/8/5K2/8 b - d3 0 1", 6, 1440467},   // en passant check
           PerftCase{"5k2/8/8/8/8/8/8/4K2R w K - 0 1", 6, 661072},         // short castle check
           PerftCase{"3k4/8/8/8/8/8/8/R3K3 w Q - 0 1", 6, 803711},         // long castle check
           PerftCase{"r3k2r/1b4bq/8/8/8/8/7B/R3K2R w KQkq - 0 1", 4, 1274206},  // castling rights
           PerftCase{"r3k2r/8/3Q4/8/8/5q2/8/R3K2R b KQkq - 0 1", 4, 1720476},   // castling prevented
           PerftCase{"2K2r2/4P3/8/8/8/8/8/3k4 w - - 0 1", 6, 3821001},     // promote out of check
           PerftCase{"8/8/1P2K3/8/2n5/1q6/8/5k2 b - - 0 1", 5, 1004658},   // discovered check
           PerftCase{"4k3/1P6/8/8/8/8/K7/8 w - - 0 1", 6, 217342},         // promotion check
           PerftCase{"8/P1k5/K7/8/8/8/8/8 w - - 0 1", 6, 92683},           // underpromotion check
           PerftCase{"K1k5/8/P7/8/8/8/8/8 w - - 0 1", 6, 2217},            // self stalemate
           PerftCase{"8/k1P5/8/1K6/8/8/8/8 w - - 0 1", 7, 567584},         // stalemate and mate
           PerftCase{"8/8/2k5/5q2/5n2/8/5K2/8 b - - 0 1", 4, 23527},       // stalemate and mate
           // c5 shields the bishop's diagonal to the king; c6-c7 lands on c5's double-step square
           // but discovers nothing. Counts from a reference engine.
           PerftCase{"r6r/Pp1pkppp/1bP2nbN/n1P5/BB2P3/q4N2/Pp1P2PP/R2Q1RK1 w - - 1 3", 3, 74057},
       })
    ExpectCount(perft);
}

TEST(Perft, DepthZeroIsOneLeaf) {
  Board board = BoardFromFen(INITIAL);
  EXPECT_EQ(Perft::CountLeaves(board, 0), 1u);
}

}  // namespace
