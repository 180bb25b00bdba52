// The steps of a node that make the tree selective, each on its own: razoring and futility, late
// move reductions, extensions, the threat detectors and the enhanced transposition cutoff.
#include <gtest/gtest.h>

#include <string>

#include "search/node_state.h"
#include "search/position_type.h"
#include "search/search_board.h"
#include "search/search_extensions.h"
#include "search/search_serial.h"
#include "search/search_settings.h"
#include "search/search_types.h"
#include "search/selective_pruning.h"
#include "search/threat_detection.h"
#include "search/transposition_cutoff.h"
#include "settings_guard.h"
#include "support/board_from_fen.h"

namespace {
constexpr Move QUIET = MakeMoveWord(G1, F3, KNIGHT);
constexpr Move CAPTURE = MakeMoveWord(F3, E5, KNIGHT, PAWN);
constexpr const char* BARE_KINGS = "4k3/8/8/8/8/8/8/4K3 w - - 0 1";
// White is 1640 behind by material; the opponent has five pieces.
constexpr const char* FAR_BEHIND = "r1b1k3/pppp4/8/3qn3/8/8/PPPP4/4K2R w - - 0 1";

class SelectiveTest : public ::testing::Test {
 protected:
  // A node at `ply` of the position; `given_type` is the type the parent handed down.
  NodeState MakeNode(const char* fen, int ply, Score beta, std::int32_t distance, int node_type,
                     std::uint32_t flags = 0, int type = MIDDLEGAME, int given_type = -1) {
    SearchBoard& board = *search.board;
    board.ResetForSearch(BoardFromFen(fen));
    for (KillerPair& killers : board.killers) killers = KillerPair{INVALID, INVALID};
    return NodeState{board, ply, beta, distance, node_type, given_type < 0 ? type : given_type,
                     type, flags};
  }
  SettingsGuard guard;
  SerialSearch search;
};

TEST_F(SelectiveTest, FutilitySkipsMovesThatCannotReachBeta) {
  const struct {
    Move move;
    Score beta;
    bool futile;
  } cases[] = {
      {QUIET, 1, true},
      {QUIET, 0, false},
      // A queen promotion brings 920: the queen less the pawn.
      {MakeMoveWord(B7, B8, PAWN, 0, QUEEN), 920, false},
      {MakeMoveWord(B7, B8, PAWN, 0, QUEEN), 921, true},
      // A check is never futile, whatever it captures.
      {MakeMoveWord(A1, A8, ROOK, PAWN) | DIRECT_CHECK_BIT, 5000, false},
  };
  for (const auto& c : cases) {
    NodeState node = MakeNode(BARE_KINGS, 4, c.beta, 64, CUT);
    node.prune = true;
    node.prune_base = 0;
    EXPECT_EQ(IsFutile(node, c.move), c.futile) << c.move << " " << c.beta;
  }
}

TEST_F(SelectiveTest, LateMovesAreReducedOutsideThePrincipalVariation) {
  const struct {
    std::int32_t distance;
    int node_type, move_count;
    Move move, hash_move;
    std::uint32_t flags, node_flags, extension_flags;
    std::int32_t reduction;
  } cases[] = {
      {192, CUT, 4, QUIET, INVALID, 0, 0, 0, 64},   // from the fourth move on
      {192, CUT, 4, QUIET | DIRECT_CHECK_BIT, INVALID, 0, 0, 0, 0},  // unless it checks
      {192, PV, 4, QUIET, INVALID, 0, 0, 0, 0},
      {192, CUT, 4, QUIET, INVALID, SKIP_LMR, 0, 0, 0},
      {192, CUT, 4, QUIET, INVALID, 0, MATE_THREAT, 0, 0},
      {192, CUT, 4, QUIET, INVALID, 0, 0, EXTENDED_RECAPTURE, 0},   // the node was extended
      // The extended reduction needs a tactical hash move, a late quiet move and distance.
      {320, CUT, 8, QUIET, CAPTURE, 0, 0, 0, 192},
      {320, CUT, 7, QUIET, CAPTURE, 0, 0, 0, 64},
      {319, CUT, 8, QUIET, CAPTURE, 0, 0, 0, 64},
      {320, CUT, 8, CAPTURE, CAPTURE, 0, 0, 0, 64},
  };
  for (const auto& c : cases) {
    NodeState node = MakeNode(BARE_KINGS, 4, 0, c.distance, c.node_type, c.flags);
    node.hash_move = c.hash_move;
    node.node_flags = c.node_flags;
    node.extension_flags = c.extension_flags;
    EXPECT_EQ(LateMoveReduction(node, c.move, c.move_count), c.reduction)
        << c.distance << " " << c.node_type << " " << c.move_count << " " << c.move;
  }
}

TEST_F(SelectiveTest, RazoringAndFutilityFollowDistanceMaterialAndThreats) {
  const struct {
    Score beta;
    std::int32_t distance;
    int node_type;
    std::uint32_t flags, node_flags;
    int given_type;
    std::int32_t distance_after;
    Score prune_base;  // 0: no pruning
  } cases[] = {
      // Razored to 136, which is in reach of extended futility; from 208 to 144, which is not.
      {0, 200, CUT, 0, 0, MIDDLEGAME, 136, -1640 + 600},
      {0, 208, CUT, 0, 0, MIDDLEGAME, 144, 0},
      {0, 209, CUT, 0, 0, MIDDLEGAME, 209, 0},
      {0, 200, PV, 0, 0, MIDDLEGAME, 200, 0},
      {0, 137, CUT, SKIP_RAZORING, 0, MIDDLEGAME, 137, -1640 + 600},
      {0, 137, CUT, SKIP_RAZORING | SKIP_EXTENDED_FUTILITY, 0, MIDDLEGAME, 137, 0},
      {-620, 137, CUT, 0, 0, MIDDLEGAME, 137, -1640 + 600},  // not below the razoring margin
      {0, 64, CUT, 0, 0, MIDDLEGAME, 64, -1640 + 300},       // futility overrides
      {-1340, 64, CUT, 0, 0, MIDDLEGAME, 64, 0},
      {0, -100, CUT, 0, 0, MIDDLEGAME, -100, -1640 + 300},
      // Threats take no short cut, nor do simple endings by the type the parent handed down.
      {0, 200, CUT, 0, PIN_THREAT, MIDDLEGAME, 200, 0},
      {0, 200, CUT, 0, 0, ENDGAME_ROOKS, 200, 0},
  };
  for (const auto& c : cases) {
    NodeState node = MakeNode(FAR_BEHIND, 4, c.beta, c.distance, c.node_type, c.flags,
                              MIDDLEGAME, c.given_type);
    node.node_flags = c.node_flags;
    PrepareSelectivePruning(node);
    SCOPED_TRACE(std::to_string(c.distance) + " " + std::to_string(c.beta));
    EXPECT_EQ(node.distance, c.distance_after);
    EXPECT_EQ(node.razor_reduction, c.distance - c.distance_after);
    EXPECT_EQ(node.prune ? node.prune_base : 0, c.prune_base);
  }
}

TEST_F(SelectiveTest, InstantExtensionsOfAMove) {
  const char* open_board = "6k1/8/8/8/8/8/8/R5K1 w - - 0 1";
  const char* bishop_hangs = "6k1/8/8/8/3b4/5N2/8/6K1 w - - 0 1";
  const char* passer = "6k1/8/4P3/8/8/8/8/6K1 w - - 0 1";
  const Move check = MakeMoveWord(A1, A8, ROOK) | DIRECT_CHECK_BIT;
  const Move knight_takes = MakeMoveWord(F3, D4, KNIGHT, BISHOP);
  const Move to_sixth = MakeMoveWord(E5, E6, PAWN);
  const Move knight_taken = MakeMoveWord(C6, D4, BISHOP, KNIGHT);
  const struct {
    const char* fen;
    Move last, move;
    bool full;
    std::int32_t extension;
    std::uint32_t reason;
    int type = MIDDLEGAME;
  } cases[] = {
      {open_board, INVALID, check, true, 40, EXTENDED_DIRECT_CHECK},
      {open_board, INVALID, check | DISCOVERED_CHECK_BIT, true, 80, EXTENDED_DOUBLE_CHECK},
      // A bishop is recaptured by a knight after a knight was taken: the same points count.
      {bishop_hangs, knight_taken, knight_takes, true, 28, EXTENDED_RECAPTURE},
      // A pawn taken after a quiet move counts as a recapture: both are worth no points.
      {"6k1/8/8/3p4/8/5N2/8/6K1 w - - 0 1", MakeMoveWord(D7, D5, PAWN),
       MakeMoveWord(F3, D4, KNIGHT, PAWN), true, 28, EXTENDED_RECAPTURE},
      // The seventh rank pays even for a capture.
      {"4n2k/5P2/8/8/8/8/8/6K1 w - - 0 1", MakeMoveWord(F8, E8, KNIGHT),
       MakeMoveWord(E6, F7, PAWN, PAWN), true, 64 + 28, EXTENDED_PAWN_SEVENTH | EXTENDED_RECAPTURE},
      // A passed pawn reaching the sixth rank, in a middle game and in a pawn ending.
      {passer, INVALID, to_sixth, true, 24, EXTENDED_PASSER_SIXTH},
      {passer, INVALID, to_sixth, true, 32, EXTENDED_PASSER_SIXTH, ENDGAME_PAWNS},
      // A rook arriving on the seventh, where the black king is held on its back ranks.
      {"6k1/R7/8/8/8/8/8/6K1 w - - 0 1", INVALID, MakeMoveWord(A1, A7, ROOK), true, 12,
       EXTENDED_ROOK_SEVENTH},
  };
  for (const auto& c : cases) {
    NodeState node = MakeNode(c.fen, 1, 0, 256, CUT, 0, c.type);
    search.board->played_moves[1] = c.last;
    node.full_extension = c.full;
    EXPECT_EQ(ExtendMove(node, c.move) - node.distance, c.extension) << c.fen << " " << c.move;
    EXPECT_EQ(node.extension_flags, c.reason) << c.fen << " " << c.move;
  }

  // The check bits are cleared before each move; other reasons stay until the node ends.
  NodeState node = MakeNode(open_board, 1, 0, 256, CUT);
  node.node_flags = SINGLE_REPLY;
  node.node_extension = -21;
  EXPECT_EQ(ExtendMove(node, check) - node.distance, 80 - 21);
  EXPECT_EQ(ExtendMove(node, MakeMoveWord(A1, B1, ROOK)) - node.distance, 64 - 21);
  EXPECT_EQ(node.extension_flags, EXTENDED_SINGLE_REPLY);
}

TEST_F(SelectiveTest, DelayedExtensionsOfANode) {
  const char* pawns = "6k1/5ppp/8/8/8/8/5PPP/6K1 w - - 0 1";
  const char* queens = "6k1/5ppp/8/8/8/4n3/5PPP/3Q2K1 w - - 0 1";  // the knight attacks the queen
  const struct {
    const char* fen;
    int ply, iteration, node_type;
    std::int32_t distance;
    int previous_type, type;
    std::uint32_t node_flags;
    int pin_state;
    std::int32_t extension;
  } cases[] = {
      // Staying in an ending without pawns shortens the line.
      {pawns, 1, 6, CUT, 400, ENDGAME_NO_PAWNS_LEFT, ENDGAME_NO_PAWNS_LEFT, 0, 0, -21},
      // Threats: mate threat and attacked queen together, under the cap.
      {queens, 1, 6, CUT, 400, ENDGAME_OTHER, ENDGAME_OTHER, MATE_THREAT, 0, 64 + 12},
      {pawns, 1, 6, CUT, 400, ENDGAME_OTHER, ENDGAME_OTHER, PIN_THREAT, PIN_NEW, 32},
      {pawns, 1, 6, CUT, 400, ENDGAME_OTHER, ENDGAME_OTHER, PIN_THREAT, PIN_TIGHTENED, 24},
      {pawns, 1, 6, CUT, 400, ENDGAME_OTHER, ENDGAME_OTHER, PERPETUAL_CHECK_THREAT, 0, 16},
      // Too shallow: no threat counts, only a shortening.
      {queens, 1, 6, CUT, 0, ENDGAME_OTHER, ENDGAME_OTHER, MATE_THREAT, 0, 0},
      {pawns, 1, 6, CUT, 0, ENDGAME_NO_PAWNS_LEFT, ENDGAME_NO_PAWNS_LEFT, 0, 0, -21},
  };
  for (const auto& c : cases) {
    NodeState node = MakeNode(c.fen, c.ply, 0, c.distance, c.node_type, 0, c.type);
    search.iteration = c.iteration;
    search.board->played_moves[c.ply] = INVALID;
    search.board->position_types[c.ply] = c.previous_type;
    node.node_flags = c.node_flags;
    node.pin_state = c.pin_state;
    ExtendNode(node, search.iteration);
    EXPECT_EQ(node.node_extension, c.extension) << c.fen << " ply " << c.ply << " type " << c.type;
    EXPECT_EQ(search.board->position_types[c.ply + 1], c.type);
  }
}

TEST(ThreatDetection, APinCountsOnlyWhenThePinnedPieceCannotTakeThePinner) {
  const struct {
    const char* fen;
    int pinner, pinned;
    bool effective;
  } cases[] = {
      // White pins a black piece to the black king.
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
  for (const auto& c : cases) {
    EXPECT_EQ(IsEffectivePin(c.pinner, c.pinned, BoardFromFen(c.fen), WHITE), c.effective)
        << c.fen;
  }
}

// The pin detector at ply 2 of a line: `previous` was the move of ply 0, `last` that of ply 1,
// and the record of ply 1 is `standing`.
TEST(ThreatDetection, UpdatePinFindsNewPinsAndFollowsThoseThatStand) {
  constexpr PinRecord KNIGHT_PINNED = {C3, B4, BLACK};  // by Bb4, to the white king
  constexpr Move KE1 = MakeMoveWord(E2, E1, KING);
  constexpr Move BB4 = MakeMoveWord(F8, B4, BISHOP);
  const struct {
    const char* fen;  // after both moves
    PinRecord standing;
    Move previous, last;
    int result;
    PinRecord record;
  } cases[] = {
      // Black interposes against a rook check: the bishop is pinned by the checking rook.
      {"4k3/8/4b3/8/8/8/8/4R1K1 w - - 0 1", NO_PIN, MakeMoveWord(A1, E1, ROOK) | DIRECT_CHECK_BIT,
       MakeMoveWord(C8, E6, BISHOP), PIN_NEW, {E6, E1, WHITE}},
      // After castling with check the pinner is the rook.
      {"5k2/8/8/5n2/8/8/8/5RK1 w - - 0 1", NO_PIN, WHITE_SHORT_CASTLE_CHECK,
       MakeMoveWord(D6, F5, KNIGHT), PIN_NEW, {F5, F1, WHITE}},
      // No interposition against a knight's check; the reply pins nothing.
      {"5k2/8/3Nb3/8/8/8/8/6K1 w - - 0 1", NO_PIN, MakeMoveWord(B5, D6, KNIGHT) | DIRECT_CHECK_BIT,
       MakeMoveWord(E8, F8, KING), PIN_NONE, NO_PIN},
      {"4k3/8/8/8/1b6/2N5/8/4K3 w - - 0 1", NO_PIN, KE1, BB4, PIN_NEW, KNIGHT_PINNED},
      // A bishop on the same line with two white pieces in between pins neither.
      {"4k3/8/8/8/1b6/2N5/3N4/4K3 w - - 0 1", NO_PIN, KE1, BB4, PIN_NONE, NO_PIN},
      // A null move carries the pin on.
      {"4k3/8/8/8/1b6/2N5/8/4K3 w - - 0 1", KNIGHT_PINNED, KE1, INVALID, PIN_NONE, KNIGHT_PINNED},
      // White moved.
      {"4k3/8/8/8/1b6/2N5/8/3K4 b - - 0 1", KNIGHT_PINNED, INVALID, MakeMoveWord(E1, D1, KING),
       PIN_ENDED, NO_PIN},
      {"4k3/8/8/8/1b6/2N5/P7/4K3 b - - 0 1", KNIGHT_PINNED, INVALID, MakeMoveWord(A3, A2, PAWN),
       PIN_STANDS, KNIGHT_PINNED},
      // Black moved.
      {"4k3/8/8/8/8/2b5/8/4K3 w - - 0 1", KNIGHT_PINNED, INVALID,
       MakeMoveWord(B4, C3, BISHOP, KNIGHT), PIN_PIECE_CAPTURED, NO_PIN},
      // A second attacker on the pinned knight tightens the pin.
      {"4k3/8/8/3n4/1b6/2N5/8/4K3 w - - 0 1", KNIGHT_PINNED, INVALID, MakeMoveWord(F6, D5, KNIGHT),
       PIN_TIGHTENED, KNIGHT_PINNED},
  };
  for (const auto& c : cases) {
    Board board = BoardFromFen(c.fen);
    board.ply = 2;
    PinRecord records[3] = {NO_PIN, c.standing, NO_PIN};
    EXPECT_EQ(UpdatePin(records, c.last, c.previous, board), c.result) << c.fen;
    EXPECT_EQ(records[2].pinned_square, c.record.pinned_square) << c.fen;
    EXPECT_EQ(records[2].pinner_square, c.record.pinner_square) << c.fen;
    EXPECT_EQ(records[2].pinning_side, c.record.pinning_side) << c.fen;
  }
}

TEST(ThreatDetection, OnlyWinningOrTightenedPinsAreThreats) {
  SettingsGuard guard;
  const char* rook_by_queen = "4k3/8/4r3/8/8/8/8/4Q1K1 w - - 0 1";
  const struct {
    const char* fen;
    PinRecord record;
    int pin_state;
    bool only_winning, threat;
  } cases[] = {
      {rook_by_queen, {E6, E1, WHITE}, PIN_NEW, false, false},
      {rook_by_queen, {E6, E1, WHITE}, PIN_TIGHTENED, false, true},
      {rook_by_queen, {E6, E1, WHITE}, PIN_TIGHTENED, true, false},
      {"7k/8/5r2/8/3B4/8/8/6K1 w - - 0 1", {F6, D4, WHITE}, PIN_NEW, true, true},
      {"4k3/8/4n3/8/8/8/8/4B1K1 w - - 0 1", {E6, E1, WHITE}, PIN_NEW, false, false},
  };
  for (const auto& c : cases) {
    consider_only_winning_pins_as_threats = c.only_winning;
    PinRecord records[1] = {c.record};
    EXPECT_EQ(IsPinThreat(records, BoardFromFen(c.fen), c.pin_state), c.threat) << c.fen;
  }
}

TEST(ThreatDetection, APerpetualNeedsMoreChecksTheMoreTheKingGainedOrWalked) {
  const struct {
    int earlier_checks;  // the count at two plies before
    int gained;          // material the checked side won since the series began
    int start_king;      // where the checked king stood then
    bool threat;
  } cases[] = {
      {0, 0, G8, false},   // the second check only counts one
      {1, 0, G8, true},    // the third check in a row: a perpetual threat
      {1, 400, G8, false}, {2, 400, G8, true},  // a gain of 400 takes one more check
      {2, 600, G8, false}, {3, 600, G8, true},  // and of 600 two more
      {1, 0, E6, false},   {2, 0, E6, true},    // the king walked two squares
      {2, 0, C5, false},   {3, 0, C5, true},    // or four
  };
  constexpr int PLY = 10;
  for (const auto& c : cases) {
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

constexpr const char* ENDING = "6k1/5ppp/8/8/8/8/5PPP/3R2K1 w - - 0 1";

TEST_F(SelectiveTest, TheTranspositionCutoffQualifiesOnlyInShallowCutNodesOfFewPieces) {
  const struct {
    std::int32_t distance;
    int node_type, position_type;
    Score beta;
    std::uint32_t flags, node_flags;
    bool qualifies;
  } cases[] = {
      {128, CUT, ENDGAME_PAWNS, 0, 0, 0, true},
      {129, CUT, ENDGAME_PAWNS, 0, 0, 0, false},
      {65, ALL, ENDGAME_PAWNS, 0, 0, 0, false},
      {65, CUT, MIDDLEGAME, 0, 0, 0, false},
      {65, CUT, ENDGAME_PAWNS, MATE_THRESHOLD + 1, 0, 0, false},
      {65, CUT, ENDGAME_PAWNS, 0, SKIP_ETTC, 0, false},
      {65, CUT, ENDGAME_PAWNS, 0, 0, SINGLE_REPLY, false},
      {65, CUT, ENDGAME_PAWNS, 0, 0, PERPETUAL_CHECK_THREAT, false},
  };
  enable_ettc = true;
  for (const auto& c : cases) {
    NodeState node = MakeNode(ENDING, 0, c.beta, c.distance, c.node_type, c.flags, c.position_type);
    node.node_flags = c.node_flags;
    EXPECT_EQ(MayTryTranspositionCutoff(node), c.qualifies) << c.distance << " " << c.node_type;
  }
  max_pieces_left_for_ettc = 8;  // the ending has nine
  EXPECT_FALSE(MayTryTranspositionCutoff(MakeNode(ENDING, 0, 0, 65, CUT, 0, ENDGAME_PAWNS)));
}

}  // namespace
