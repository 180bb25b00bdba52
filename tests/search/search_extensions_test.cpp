#include "search/search_extensions.h"

#include <gtest/gtest.h>

#include "search/node_state.h"
#include "search/search_board.h"
#include "search/search_serial.h"
#include "search/search_types.h"
#include "search/threat_detection.h"
#include "support/board_from_fen.h"

namespace {
class SearchExtensionsTest : public ::testing::Test {
 protected:
  // A node at ply 1 whose parent played `last`.
  NodeState MakeNode(const char* fen, Move last, bool full, int position_type = 1) {
    SearchBoard& board = *search.board;
    board.ResetForSearch(BoardFromFen(fen));
    board.played_moves[1] = last;
    NodeState node{board, 1, 0, 256, CUT, position_type, position_type, 0};
    node.full_extension = full;
    return node;
  }
  SerialSearch search;
};

constexpr const char* OPEN_BOARD = "6k1/8/8/8/8/8/8/R5K1 w - - 0 1";

TEST_F(SearchExtensionsTest, InstantExtensionsOfAMove) {
  struct Case {
    const char* fen;
    Move last;
    Move move;
    bool full;
    std::int32_t extension;
    std::uint32_t reason;
  };
  const Move knight_taken = MakeMoveWord(C6, D4, BISHOP, KNIGHT);
  const Case cases[] = {
      {OPEN_BOARD, INVALID, MakeMoveWord(A1, A8, ROOK) | DIRECT_CHECK_BIT, true, 40,
       EXTENDED_DIRECT_CHECK},
      {OPEN_BOARD, INVALID, MakeMoveWord(A1, A8, ROOK) | DIRECT_CHECK_BIT, false, 24,
       EXTENDED_DIRECT_CHECK},
      {OPEN_BOARD, INVALID, MakeMoveWord(A1, B1, ROOK) | DISCOVERED_CHECK_BIT, true, 32,
       EXTENDED_DISCOVERED_CHECK},
      {OPEN_BOARD, INVALID, MakeMoveWord(A1, A8, ROOK) | DIRECT_CHECK_BIT | DISCOVERED_CHECK_BIT,
       true, 80, EXTENDED_DOUBLE_CHECK},
      // A bishop is recaptured by a knight after a knight was taken: the same points.
      {"6k1/8/8/8/3b4/5N2/8/6K1 w - - 0 1", knight_taken, MakeMoveWord(F3, D4, KNIGHT, BISHOP),
       true, 28, EXTENDED_RECAPTURE},
      {"6k1/8/8/8/3b4/5N2/8/6K1 w - - 0 1", knight_taken, MakeMoveWord(F3, D4, KNIGHT, BISHOP),
       false, 12, EXTENDED_RECAPTURE},
      {"6k1/8/8/8/3b4/5N2/8/6K1 w - - 0 1", MakeMoveWord(C6, D4, BISHOP, ROOK),
       MakeMoveWord(F3, D4, KNIGHT, BISHOP), true, 0, 0},
      // A pawn taken after a quiet move counts as a recapture: both are worth no points.
      {"6k1/8/8/3p4/8/5N2/8/6K1 w - - 0 1", MakeMoveWord(D7, D5, PAWN),
       MakeMoveWord(F3, D4, KNIGHT, PAWN), true, 28, EXTENDED_RECAPTURE},
      // The seventh rank pays even for a capture.
      {"4n2k/5P2/8/8/8/8/8/6K1 w - - 0 1", MakeMoveWord(F8, E8, KNIGHT),
       MakeMoveWord(E6, F7, PAWN, PAWN), true, 64 + 28, EXTENDED_PAWN_SEVENTH | EXTENDED_RECAPTURE},
      // A passed pawn reaching the sixth rank, in a middle game and in an ending.
      {"6k1/8/4P3/8/8/8/8/6K1 w - - 0 1", INVALID, MakeMoveWord(E5, E6, PAWN), true, 24,
       EXTENDED_PASSER_SIXTH},
      // Not passed.
      {"6k1/3p4/4P3/8/8/8/8/6K1 w - - 0 1", INVALID, MakeMoveWord(E5, E6, PAWN), true, 0, 0},
      // A rook arriving on the seventh, where the black king is held on its back ranks.
      {"6k1/R7/8/8/8/8/8/6K1 w - - 0 1", INVALID, MakeMoveWord(A1, A7, ROOK), true, 12,
       EXTENDED_ROOK_SEVENTH},
      // A rook moving along the seventh gets nothing.
      {"6k1/3R4/8/8/8/8/8/6K1 w - - 0 1", INVALID, MakeMoveWord(A7, D7, ROOK), true, 0, 0},
  };
  for (const Case& c : cases) {
    NodeState node = MakeNode(c.fen, c.last, c.full);
    EXPECT_EQ(ExtendMove(node, c.move) - node.distance, c.extension) << c.fen << " " << c.move;
    EXPECT_EQ(node.extension_flags, c.reason) << c.fen << " " << c.move;
  }
}

TEST_F(SearchExtensionsTest, PassedPawnBonusesDependOnTheKindOfGame) {
  NodeState ending = MakeNode("6k1/8/4P3/8/8/8/8/6K1 w - - 0 1", INVALID, true, 15);
  EXPECT_EQ(ExtendMove(ending, MakeMoveWord(E5, E6, PAWN)) - ending.distance, 32);
  ending.full_extension = false;
  EXPECT_EQ(ExtendMove(ending, MakeMoveWord(E5, E6, PAWN)) - ending.distance, 16);
}

TEST_F(SearchExtensionsTest, CapsOfTheInstantAndTheTotalExtension) {
  NodeState node = MakeNode(OPEN_BOARD, INVALID, true);
  node.node_flags = SINGLE_REPLY;
  const Move check = MakeMoveWord(A1, A8, ROOK) | DIRECT_CHECK_BIT;
  EXPECT_EQ(ExtendMove(node, check) - node.distance, 128);  // 40 + 128, capped
  node.node_extension = 100;
  EXPECT_EQ(ExtendMove(node, check) - node.distance, 192);
  node.full_extension = false;
  node.node_extension = -21;
  EXPECT_EQ(ExtendMove(node, check) - node.distance, 80 - 21);
  // The check bits are cleared before each move; other reasons stay until the node ends.
  EXPECT_EQ(ExtendMove(node, MakeMoveWord(A1, B1, ROOK)) - node.distance, 64 - 21);
  EXPECT_EQ(node.extension_flags, EXTENDED_SINGLE_REPLY);
}

TEST_F(SearchExtensionsTest, DelayedExtensionsOfANode) {
  struct Case {
    const char* fen;
    int ply;
    int iteration;
    int node_type;
    std::int32_t distance;
    int previous_type;
    int type;
    std::uint32_t node_flags;
    int pin_state;
    std::int32_t extension;
  };
  const char* pawns = "6k1/5ppp/8/8/8/8/5PPP/6K1 w - - 0 1";
  const char* queens = "6k1/5ppp/8/8/8/4n3/5PPP/3Q2K1 w - - 0 1";  // the knight attacks the queen
  const Case cases[] = {
      // Into a pawn ending: 256, half again above 384 in a PV node; capped at 128 or, at ply 12
      // of iteration 9 (full sizes up to ply 7), at 80.
      {pawns, 1, 6, PV, 400, 17, 15, 0, 0, 128},
      {pawns, 12, 9, PV, 400, 17, 15, 0, 0, 80},
      {pawns, 1, 6, CUT, 400, 17, 15, 0, 0, 128},
      {pawns, 12, 9, CUT, 400, 17, 15, 0, 0, 32},
      // Staying in an ending without pawns, or with queen against rook, shortens the line.
      {pawns, 1, 6, CUT, 400, 16, 16, 0, 0, -21},
      {pawns, 1, 6, CUT, 400, 10, 10, 0, 0, -10},
      // Threats: mate threat and attacked queen together, under the cap.
      {queens, 1, 6, CUT, 400, 17, 17, MATE_THREAT, 0, 64 + 12},
      {pawns, 1, 6, CUT, 400, 17, 17, PIN_THREAT, PIN_NEW, 32},
      {pawns, 1, 6, CUT, 400, 17, 17, PIN_THREAT, PIN_TIGHTENED, 24},
      {pawns, 1, 6, CUT, 400, 17, 17, PIN_THREAT, PIN_NONE, 24},
      {pawns, 1, 6, CUT, 400, 17, 17, PERPETUAL_CHECK_THREAT, 0, 16},
      // Too shallow: no threat counts, only a shortening.
      {queens, 1, 6, CUT, 0, 17, 17, MATE_THREAT, 0, 0},
      {pawns, 1, 6, CUT, 0, 16, 16, 0, 0, -21},
  };
  for (const Case& c : cases) {
    SearchBoard& board = *search.board;
    board.ResetForSearch(BoardFromFen(c.fen));
    search.iteration = c.iteration;
    board.played_moves[c.ply] = INVALID;
    board.position_types[c.ply] = c.previous_type;
    NodeState node{board, c.ply, 0, c.distance, c.node_type, c.type, c.type, 0};
    node.node_flags = c.node_flags;
    node.pin_state = c.pin_state;
    ExtendNode(node, search.iteration);
    EXPECT_EQ(node.node_extension, c.extension) << c.fen << " ply " << c.ply << " type " << c.type;
    EXPECT_EQ(board.position_types[c.ply + 1], c.type);
  }
}
}  // namespace
