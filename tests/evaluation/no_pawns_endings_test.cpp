#include "evaluation/no_pawns_endings.h"

#include <gtest/gtest.h>

#include "evaluation/ending_evaluators.h"
#include "evaluation/ending_test_support.h"
#include "support/board_from_fen.h"

namespace {

using EndingTests::ColourFlipped;

int NoPawns(const Board& board) {
  EvaluationState evaluation;
  return EvaluateNoPawns(evaluation, board);
}

TEST(EvaluateNoPawns, HandWorkedValuesAndTheTempoOfTheSideOnMove) {
  const struct {
    const char* fen;
    int value;
  } cases[] = {
      // King and rook against the bare king on d5: 500, - 44 * 3 / 2 for the king in the centre,
      // + 2000, - 2 * 4 from the rook, Corner h1 -80, - 4 * 8 between the kings; + 6 on move.
      {"8/8/8/3k4/8/8/8/R6K w - - 0 1", 2314 + 6},
      {"8/8/8/3k4/8/8/8/R6K b - - 0 1", -2314 + 6},
      // Queen against rook: 520 - 66 + 650, - 6 for the rook beside its king, - 8 for the queen,
      // - 80 - 32.
      {"8/8/8/3k4/3r4/8/8/Q6K w - - 0 1", 978 + 6},
      // Rook against knight, a small edge: 195 >> 2, - 44 for d5, + 24 / 2 for f4, - 8 and
      // + 10 for the loose knight two squares from its king; + 4 on move.
      {"8/8/8/3k4/5K2/4n3/8/R7 w - - 0 1", 18 + 4},
      {"8/8/8/3k4/5K2/4n3/8/R7 b - - 0 1", -18 + 4},
      // Even material, the same for both sides: + 3 for whoever is on move.
      {"3k4/3r4/8/8/8/8/3R4/3K4 w - - 0 1", 3},
      {"3k4/3r4/8/8/8/8/3R4/3K4 b - - 0 1", 3},
      // Bishop and knight: Corner e1 -44 + 1000 - 4 * 3; the light bishop mates on h1 (+ 120),
      // the dark one can't (-60).
      {"8/8/8/8/8/8/2B5/1N2K2k w - - 0 1", 944 + 120 + 6},
      {"8/8/8/8/8/8/3B4/1N2K2k w - - 0 1", 944 - 60 + 6},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(NoPawns(BoardFromFen(c.fen)), c.value) << c.fen;
    EXPECT_EQ(NoPawns(ColourFlipped(BoardFromFen(c.fen))), c.value) << c.fen;
  }
}

TEST(EvaluateNoPawns, TheBareKingIsWorseOffTheNearerItIsToTheEdge) {
  int previous = 0;
  for (const char* fen : {"8/8/8/3k4/8/8/8/R6K w - - 0 1", "8/8/8/2k5/8/8/8/R6K w - - 0 1",
                          "8/8/8/1k6/8/8/8/R6K w - - 0 1", "8/8/k7/8/8/8/8/1R5K w - - 0 1",
                          "k7/8/8/8/8/8/1R5K/8 w - - 0 1"}) {
    const int value = NoPawns(BoardFromFen(fen));
    EXPECT_GT(value, previous) << fen;
    previous = value;
  }
}

TEST(EvaluateNoPawns, OppositionPushesTheKingToTheRim) {
  // Kings facing each other with the defender on the rim: + 40 instead of - Corner * 3 / 2.
  const int facing = NoPawns(BoardFromFen("3k4/8/3K4/8/8/8/8/R7 w - - 0 1"));
  const int beside = NoPawns(BoardFromFen("3k4/8/2K5/8/8/8/8/R7 w - - 0 1"));
  // d8: 44 * 3 / 2 = 66 against 40; Corner d6 24 against c6 14; Manhattan 2 against 3.
  EXPECT_EQ(facing - beside, (40 - 66) + (24 - 14) + 4 * (3 - 2));
}

}  // namespace
