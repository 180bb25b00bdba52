#include "search/position_type.h"

#include <gtest/gtest.h>

#include "support/board_from_fen.h"
#include "support/test_positions.h"

TEST(ClassifyPosition, ByDevelopmentMaterialWeightAndThePiecesOfEachSide) {
  const struct {
    const char* fen;
    int type;
    int previous = UNCLASSIFIED;
  } cases[] = {
      {TestPositions::INITIAL, OPENING},
      // 1. Nf3 Nf6 2. Nc3 Nc6 3. Bc4 Bc5 4. O-O O-O: both half developed, but all pawns are there.
      {"r1bq1rk1/pppp1ppp/2n2n2/2b1p3/2B1P3/2N2N2/PPPP1PPP/R1BQ1RK1 w - - 0 5", OPENING},
      // The same with two pawns traded on each side.
      {"r1bq1rk1/ppp2ppp/2n2n2/2b5/2B5/2N2N2/PPP2PPP/R1BQ1RK1 w - - 0 5", MIDDLEGAME},
      // Everything out and castled on both sides decides at once, pawns or not.
      {"r2q1rk1/pppbbppp/2np1n2/4p3/4P3/2NP1N2/PPPBBPPP/R2Q1RK1 w - - 0 8", MIDDLEGAME},
      {"rnbqkbnr/pppppppp/8/8/8/2NPBN2/PPPQBPPP/R4RK1 b kq - 0 8", MIDDLEGAME},  // one side done
      // Never back from the middlegame.
      {TestPositions::INITIAL, MIDDLEGAME, MIDDLEGAME},
      {TestPositions::INITIAL, OPENING, ENDGAME_OTHER},
      // Queen and rook each: 28 points, weight 15 + 3, an ending with equal pieces; so are queen,
      // rook and a minor (21); one more minor is not.
      {"3qr1k1/5ppp/8/8/8/8/5PPP/3QR1K1 w - - 0 1", ENDGAME_EQUAL_PIECES},
      {"r2q2k1/ppp2ppp/2n5/8/8/2N5/PPP2PPP/R2Q2K1 w - - 0 1", ENDGAME_EQUAL_PIECES},
      {"r2q2k1/ppp2ppp/2n1b3/8/8/2N1B3/PPP2PPP/R2Q2K1 w - - 0 1", MIDDLEGAME},
      {"8/8/4k3/4p3/4P3/4K3/8/8 w - - 0 1", ENDGAME_PAWNS},
      {"8/8/4k3/4p3/8/4K3/4B3/8 w - - 0 1", ENDGAME_BISHOP_PAWNS},
      {"8/8/4k3/4p3/8/4K3/4R3/8 w - - 0 1", ENDGAME_ROOK_PAWNS},
      {"8/4n3/4k3/4p3/4P3/4K3/4N3/8 w - - 0 1", ENDGAME_KNIGHTS},
      {"8/4b3/4k3/4p3/4P3/4K3/3B4/8 w - - 0 1", ENDGAME_SAME_BISHOPS},      // e7 and d2: dark
      {"8/4b3/4k3/4p3/4P3/4K3/4B3/8 w - - 0 1", ENDGAME_OPPOSITE_BISHOPS},  // e7 dark, e2 light
      {"8/4r3/4k3/4p3/4P3/4K3/4R3/8 w - - 0 1", ENDGAME_ROOKS},
      {"8/4r3/4k3/4p3/4P3/4K3/4N3/8 w - - 0 1", ENDGAME_ROOK_MINOR},
      {"8/4r3/4k3/4p3/4P3/4K3/4Q3/8 w - - 0 1", ENDGAME_QUEEN_ROOK},
      {"8/2n1b3/4k3/4p3/4P3/4K3/3RN3/8 w - - 0 1", ENDGAME_OTHER},
      {"8/8/4k3/8/8/4K3/8/8 w - - 0 1", ENDGAME_NO_PAWNS_LEFT},
      // Rook against pawn; a pawn more for the rook makes it another ending; rook and pawn
      // against the bare king has no hope for the side without pawns.
      {"8/8/4k3/4p3/1P6/4K3/4R3/8 w - - 0 1", ENDGAME_OTHER},
      {"8/8/4k3/8/1P6/4K3/4R3/8 w - - 0 1", ENDGAME_NO_PAWNS_LEFT},
      {"8/4r3/4k3/8/8/4K3/4P3/8 w - - 0 1", ENDGAME_ROOK_PAWNS},
      // Without pawns, 5 points behind is hopeless, 3 points is not.
      {"8/4n3/4k3/8/1P6/4K3/4RR2/8 w - - 0 1", ENDGAME_NO_PAWNS_LEFT},
      {"8/4r3/4k3/8/1P6/4K3/4RN2/8 w - - 0 1", ENDGAME_OTHER},
      {"8/4rr2/4k3/4p3/8/4K3/4N3/8 w - - 0 1", ENDGAME_NO_PAWNS_LEFT},
      // The side behind has a pawn: the side ahead without pawns changes nothing.
      {"8/8/4k3/4p3/8/4K3/1N2RR2/8 w - - 0 1", ENDGAME_OTHER},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(ClassifyPosition(BoardFromFen(c.fen), c.previous), c.type) << c.fen;
  }
  EXPECT_EQ(MaterialWeight(BoardFromFen("3qr1k1/5ppp/8/8/8/8/5PPP/3QR1K1 w - - 0 1")), 18);
}
