#include "search/threat_detection.h"

#include <gtest/gtest.h>

#include "search/search_settings.h"
#include "settings_guard.h"
#include "support/board_from_fen.h"

namespace {
TEST(ThreatDetection, APinCountsOnlyWhenThePinnedPieceCannotTakeThePinner) {
  struct Case {
    const char* fen;
    int pinner;
    int pinned;
    bool effective;
  };
  // White pins a black piece to the black king.
  const Case cases[] = {
      {"4k3/8/4b3/8/8/8/8/4R1K1 w - - 0 1", E1, E6, true},   // bishop by rook
      {"7k/8/5b2/8/3B4/8/8/6K1 w - - 0 1", D4, F6, false},   // bishop by bishop
      {"7k/8/5r2/8/3B4/8/8/6K1 w - - 0 1", D4, F6, true},    // rook by bishop
      {"4k3/8/4r3/8/8/8/8/4R1K1 w - - 0 1", E1, E6, false},  // rook by rook
      {"4k3/8/4b3/8/8/8/8/4Q1K1 w - - 0 1", E1, E6, true},   // bishop by queen on its file
      {"7k/8/5b2/8/3Q4/8/8/6K1 w - - 0 1", D4, F6, false},   // bishop by queen on its diagonal
      {"7k/8/5r2/8/3Q4/8/8/6K1 w - - 0 1", D4, F6, true},    // rook by queen on its diagonal
      {"4k3/8/4r3/8/8/8/8/4Q1K1 w - - 0 1", E1, E6, false},  // rook by queen on its file
      {"4k3/8/4n3/8/8/8/8/4R1K1 w - - 0 1", E1, E6, true},   // a knight is always held
      {"4k3/8/4q3/8/8/8/8/4Q1K1 w - - 0 1", E1, E6, false},  // queen by queen
      {"4k3/8/4q3/8/8/8/5K2/4R3 w - - 0 1", E1, E6, true},   // queen by a defended rook
      {"4k3/8/4q3/8/8/8/8/4R2K w - - 0 1", E1, E6, false},   // queen by a hanging rook
      {"7k/6p1/5B2/8/8/8/8/6K1 w - - 0 1", F6, G7, false},   // a pawn that takes its pinner
      {"4k3/4p3/8/8/8/8/8/4R1K1 w - - 0 1", E1, E7, true},   // a pawn on the pinner's file
  };
  for (const Case& c : cases) {
    EXPECT_EQ(IsEffectivePin(c.pinner, c.pinned, BoardFromFen(c.fen), WHITE), c.effective)
        << c.fen;
  }
}

// The pin detector at ply 2 of a line: `previous` was White's move, `last` Black's reply.
struct PinCase {
  const char* fen;  // after both moves, White on move
  Move previous;
  Move last;
  int result;
  PinRecord record;
};

TEST(ThreatDetection, UpdatePinFindsNewPins) {
  const PinCase cases[] = {
      // Black interposes against a rook check: the bishop is pinned by the checking rook.
      {"4k3/8/4b3/8/8/8/8/4R1K1 w - - 0 1", MakeMoveWord(A1, E1, ROOK) | DIRECT_CHECK_BIT,
       MakeMoveWord(C8, E6, BISHOP), PIN_NEW, {E6, E1, WHITE}},
      // After castling with check the pinner is the rook.
      {"5k2/8/8/5n2/8/8/8/5RK1 w - - 0 1", WHITE_SHORT_CASTLE_CHECK, MakeMoveWord(D6, F5, KNIGHT),
       PIN_NEW, {F5, F1, WHITE}},
      // No interposition against a knight's check; the reply pins nothing.
      {"5k2/8/3Nb3/8/8/8/8/6K1 w - - 0 1", MakeMoveWord(B5, D6, KNIGHT) | DIRECT_CHECK_BIT,
       MakeMoveWord(E8, F8, KING), PIN_NONE, NO_PIN},
      // Black's bishop pins White's knight to its king.
      {"4k3/8/8/8/1b6/2N5/8/4K3 w - - 0 1", MakeMoveWord(E2, E1, KING),
       MakeMoveWord(F8, B4, BISHOP), PIN_NEW, {C3, B4, BLACK}},
      // A bishop on the same line with two white pieces in between pins neither.
      {"4k3/8/8/8/1b6/2N5/3N4/4K3 w - - 0 1", MakeMoveWord(E2, E1, KING),
       MakeMoveWord(F8, B4, BISHOP), PIN_NONE, NO_PIN},
  };
  for (const PinCase& c : cases) {
    Board board = BoardFromFen(c.fen);
    board.ply = 2;
    PinRecord records[3] = {NO_PIN, NO_PIN, NO_PIN};
    EXPECT_EQ(UpdatePin(records, c.last, c.previous, board), c.result) << c.fen;
    EXPECT_EQ(records[2].pinned_square, c.record.pinned_square) << c.fen;
    if (c.record.pinned_square >= 0) {
      EXPECT_EQ(records[2].pinner_square, c.record.pinner_square) << c.fen;
      EXPECT_EQ(records[2].pinning_side, c.record.pinning_side) << c.fen;
    }
  }
}

TEST(ThreatDetection, UpdatePinFollowsAPinThatStands) {
  // Black pinned the knight on c3 with Bb4; the record of ply 1 holds it.
  struct Case {
    const char* fen;
    Move last;
    int result;
  };
  const Case cases[] = {
      // White moved.
      {"4k3/8/8/8/1b6/2N5/8/3K4 b - - 0 1", MakeMoveWord(E1, D1, KING), PIN_ENDED},
      {"4k3/8/8/8/1b6/2N5/P7/4K3 b - - 0 1", MakeMoveWord(A3, A2, PAWN), PIN_STANDS},
      {"4k3/8/8/8/1b6/2N5/3B4/4K3 b - - 0 1", MakeMoveWord(C1, D2, BISHOP), PIN_ENDED},
      // Black moved.
      {"4k3/8/8/8/8/2b5/8/4K3 w - - 0 1", MakeMoveWord(B4, C3, BISHOP, KNIGHT), PIN_PIECE_CAPTURED},
      {"4k3/8/8/8/1b6/2N5/8/4K3 w - - 0 1", MakeMoveWord(H7, H6, PAWN), PIN_STANDS},
      // A second attacker on the pinned knight tightens the pin.
      {"4k3/8/8/3n4/1b6/2N5/8/4K3 w - - 0 1", MakeMoveWord(F6, D5, KNIGHT), PIN_TIGHTENED},
  };
  for (const Case& c : cases) {
    Board board = BoardFromFen(c.fen);
    board.ply = 2;
    PinRecord records[3] = {NO_PIN, {C3, B4, BLACK}, NO_PIN};
    EXPECT_EQ(UpdatePin(records, c.last, INVALID, board), c.result) << c.fen;
  }
}

TEST(ThreatDetection, ANullMoveCarriesThePinOn) {
  Board board = BoardFromFen("4k3/8/8/8/1b6/2N5/8/4K3 w - - 0 1");
  board.ply = 2;
  PinRecord records[3] = {NO_PIN, {C3, B4, BLACK}, NO_PIN};
  EXPECT_EQ(UpdatePin(records, INVALID, MakeMoveWord(E2, E1, KING), board), PIN_NONE);
  EXPECT_EQ(records[2].pinned_square, C3);
}

TEST(ThreatDetection, OnlyWinningOrTightenedPinsAreThreats) {
  SettingsGuard guard;
  struct Case {
    const char* fen;
    PinRecord record;
    int pin_state;
    bool only_winning;
    bool threat;
  };
  const Case cases[] = {
      {"4k3/8/4r3/8/8/8/8/4Q1K1 w - - 0 1", {E6, E1, WHITE}, PIN_NEW, false, false},
      {"4k3/8/4r3/8/8/8/8/4Q1K1 w - - 0 1", {E6, E1, WHITE}, PIN_TIGHTENED, false, true},
      {"4k3/8/4r3/8/8/8/8/4Q1K1 w - - 0 1", {E6, E1, WHITE}, PIN_TIGHTENED, true, false},
      {"7k/8/5r2/8/3B4/8/8/6K1 w - - 0 1", {F6, D4, WHITE}, PIN_NEW, true, true},
      {"4k3/8/4n3/8/8/8/8/4B1K1 w - - 0 1", {E6, E1, WHITE}, PIN_NEW, false, false},
  };
  for (const Case& c : cases) {
    consider_only_winning_pins_as_threats = c.only_winning;
    const Board board = BoardFromFen(c.fen);
    PinRecord records[1] = {c.record};
    EXPECT_EQ(IsPinThreat(records, board, c.pin_state), c.threat) << c.fen;
  }
}

TEST(ThreatDetection, APerpetualNeedsMoreChecksTheMoreTheKingGainedOrWalked) {
  struct Case {
    int earlier_checks;  // the count at two plies before
    int gained;          // material the checked side won since the series began
    int start_king;      // where the checked king stood then
    bool threat;
  };
  const Case cases[] = {
      {0, 0, G8, false},   // the second check only counts one
      {1, 0, G8, true},    // the third check in a row: a perpetual threat
      {1, 400, G8, false}, {2, 400, G8, true},  // a gain of 400 takes one more check
      {2, 600, G8, false}, {3, 600, G8, true},  // and of 600 two more
      {1, 0, E6, false},   {2, 0, E6, true},    // the king walked two squares
      {2, 0, C5, false},   {3, 0, C5, true},    // or four
  };
  constexpr int PLY = 10;
  for (const Case& c : cases) {
    Board board = BoardFromFen("6k1/8/8/8/8/8/8/Q5K1 b - - 0 1");
    board.ply = PLY;
    PerpetualRecord records[PLY + 1]{};
    records[PLY - 2].check_count = std::int16_t(c.earlier_checks);
    const int start = PLY - 2 * (c.earlier_checks + 1) + 2;
    records[start].king_square = std::int16_t(c.start_king);
    records[start].material = std::int16_t(-c.gained);
    EXPECT_EQ(TestPerpetualCheck(records, board), c.threat)
        << c.earlier_checks << " " << c.gained << " " << c.start_king;
    EXPECT_EQ(records[PLY].flag, c.threat ? 1 : 0);
    EXPECT_EQ(records[PLY].check_count, c.earlier_checks + 1);
  }
}
}  // namespace
