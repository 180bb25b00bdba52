// Black's terms are White's seen in a mirror: every piece and king term of a position must give
// the other colour's value in the position with the colours exchanged, and leave the mirrored
// units, attacked squares and king numbers behind.
#include <gtest/gtest.h>

#include <string>

#include "evaluation/colour_view.h"
#include "evaluation/king_safety.h"
#include "evaluation/piece_terms.h"
#include "piece_term_setup.h"
#include "support/board_from_fen.h"
#include "support/test_positions.h"

namespace {

struct TermValues {
  ScorePair knight[2], bishop[2], rook[2], queen[2];
  ScorePair development, formation, space, king_safety, mobility, zone_balance;
  EvaluationRecord record;
};

// The terms in the order of the evaluation, each colour's piece terms on their own.
TermValues RunTerms(const Board& board, bool middlegame) {
  EvaluationState evaluation;
  PrepareForPieceTerms(evaluation, board, 9);
  evaluation.endgame_factor = 0.25;
  TermValues t;
  for (int colour = WHITE; colour <= BLACK; ++colour)
    if (board.Pieces(colour).knights)
      t.knight[colour] = KnightTerm(evaluation, board, colour, middlegame);
  for (int colour = WHITE; colour <= BLACK; ++colour)
    if (board.Pieces(colour).bishops) t.bishop[colour] = BishopTerm(evaluation, board, colour);
  for (int colour = WHITE; colour <= BLACK; ++colour)
    if (board.Pieces(colour).rooks) t.rook[colour] = RookTerm(evaluation, board, colour);
  for (int colour = WHITE; colour <= BLACK; ++colour)
    evaluation.attacked_without_queens[colour] = evaluation.attacked[colour];
  for (int colour = WHITE; colour <= BLACK; ++colour)
    if (board.Pieces(colour).queens)
      t.queen[colour] = QueenTerm(evaluation, board, colour, middlegame);
  t.development = DevelopmentTerm(evaluation, board);
  if (!middlegame) t.formation = OpeningFormationTerm(evaluation, board);
  t.space = SpaceTerm(evaluation, board);
  t.king_safety = KingSafetyTerm(evaluation, board);
  t.mobility = KnightMobilityTerm(evaluation, board);
  t.zone_balance = ZoneBalanceTerm(evaluation, board);
  t.record = evaluation;
  return t;
}

std::string Describe(const ScorePair& s) {
  return "(" + std::to_string(s.positional) + ", " + std::to_string(s.reckless) + ")";
}

void ExpectMirrored(const Board& board, bool middlegame, const std::string& where) {
  SCOPED_TRACE(where + ": " + FenOf(board) + (middlegame ? " middlegame" : " opening"));
  const TermValues a = RunTerms(board, middlegame);
  const TermValues b = RunTerms(MirroredBoard(board), middlegame);
  for (int colour = WHITE; colour <= BLACK; ++colour) {
    const int other = colour ^ 1;
    EXPECT_EQ(a.knight[colour], b.knight[other]) << "knight " << Describe(a.knight[colour]);
    EXPECT_EQ(a.bishop[colour], b.bishop[other]) << "bishop " << Describe(a.bishop[colour]);
    EXPECT_EQ(a.rook[colour], b.rook[other]) << "rook " << Describe(a.rook[colour]);
    EXPECT_EQ(a.queen[colour], b.queen[other]) << "queen " << Describe(a.queen[colour]);
  }
  EXPECT_EQ(a.development, -b.development);
  EXPECT_EQ(a.formation, -b.formation);
  EXPECT_EQ(a.space, -b.space);
  EXPECT_EQ(a.king_safety, -b.king_safety) << Describe(a.king_safety);
  EXPECT_EQ(a.mobility, -b.mobility);
  EXPECT_EQ(a.zone_balance, -b.zone_balance);
  EXPECT_EQ(a.record.endgame_trend, -b.record.endgame_trend);
  for (int colour = WHITE; colour <= BLACK; ++colour) {
    const int other = colour ^ 1;
    for (int wing = 0; wing < 3; ++wing) {
      EXPECT_EQ(a.record.zone_units[colour][wing].attack, b.record.zone_units[other][wing].attack)
          << "colour " << colour << " wing " << wing;
      EXPECT_EQ(a.record.zone_units[colour][wing].defence, b.record.zone_units[other][wing].defence)
          << "colour " << colour << " wing " << wing;
    }
    EXPECT_EQ(a.record.attacked[colour], MirrorRanksOfSet(b.record.attacked[other]));
    EXPECT_EQ(a.record.king_attack[colour], b.record.king_attack[other]);
    EXPECT_EQ(a.record.king_defence[colour], b.record.king_defence[other]);
    EXPECT_EQ(a.record.missing_front[colour], b.record.missing_front[other]);
    EXPECT_EQ(a.record.missing_second[colour], b.record.missing_second[other]);
  }
}

// Positions chosen for the rules they reach: fianchettos and long diagonals, trapped bishops,
// outposts, rooks on the seventh and behind closed files, corners, storms, castling choices.
const char* const CHOSEN[] = {
    TestPositions::INITIAL,
    TestPositions::KIWIPETE,
    TestPositions::POSITION_4,
    TestPositions::POSITION_5,
    TestPositions::POSITION_6,
    "rnbqk2r/ppp1ppbp/3p1np1/8/2PPP3/2N5/PP3PPP/R1BQKBNR w KQkq - 0 5",
    "r1bq1rk1/pp2bppp/2n1pn2/3p4/2PP4/2N1PN2/PP2BPPP/R2QKB1R w KQ - 0 8",
    "2rq1rk1/pp1bppbp/3p1np1/4n3/3NP3/1BN1BP2/PPPQ2PP/2KR3R w - - 9 12",
    "1k1r3r/pp2qpp1/2p1bn1p/4p3/4P3/2NQ1N1P/PPP2PP1/2KR3R w - - 2 16",
    "r5rk/5p1p/5R2/4B3/8/8/7P/7K w - - 0 1",
    "6k1/1R3ppp/8/8/8/8/5PPP/1R4K1 b - - 0 1",
    "r3k2r/B1ppqpb1/1n2pnp1/3PN3/1p2P3/1pN2Q1p/P1PB1PPP/R3K2R w KQkq - 0 1",
    "rnbqkbnr/pppp1ppp/8/4p3/4P3/5NP1/PPPP1P1P/RNBQKB1R b KQkq - 0 2",
    "r1bqkb1r/pppp1ppp/2n2n2/4p3/4P3/2NP1N2/PPP1BPPP/R1BQK2R w KQkq - 0 5",
    "r2q1rk1/1p3ppp/p1n1b3/3pP3/3N4/2P1B3/P3QPPP/R4RK1 w - - 0 15",
    "6k1/5p2/6pP/8/8/8/5PP1/6K1 w - - 0 1",
    "2kr4/ppp5/8/8/8/8/5PPP/5RK1 w - - 0 1",
    "r1b1k2r/ppppqppp/2n2n2/4N3/1b2P3/2N5/PPPP1PPP/R1BQKB1R w KQkq - 0 6",
    "4r1k1/pp3ppp/8/3N4/3P4/8/PP3PPP/4R1K1 w - - 0 1",
    "rn2k2r/pp3ppp/8/2q5/8/8/PP3PPP/R3K2R w KQkq - 0 1",
};

}  // namespace

TEST(TermSymmetry, ChosenPositionsAndTheirColourFlippedTwins) {
  for (const char* fen : CHOSEN) {
    const Board board = BoardFromFen(fen);
    ExpectMirrored(board, false, fen);
    ExpectMirrored(board, true, fen);
  }
}

TEST(TermSymmetry, CrowdedRandomPositions) {
  TestPositions::TestRandom random(4242);
  for (int i = 0; i < 400; ++i) {
    const Board board = TestPositions::RandomPosition(random);
    ExpectMirrored(board, i % 2 == 1, "random position " + std::to_string(i));
    if (HasFailure()) return;
  }
}

TEST(TermSymmetry, PositionsOfPlayedGames) {
  for (const char* fen : TestPositions::Standard()) {
    Board board = BoardFromFen(fen);
    TestPositions::PlayRandomGame(board, 99u, [&](const Board& position) {
      ExpectMirrored(position, position.ply % 2 == 0, fen);
    });
    if (HasFailure()) return;
  }
}
