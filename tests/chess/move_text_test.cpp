#include <gtest/gtest.h>

#include <random>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "chess/move_generator.h"
#include "chess/move_text.h"
#include "chess/user_board.h"

namespace {

GameBoard Position(const std::string& fen) {
  UserBoard game;
  game.SetFEN(fen);
  return game.current;
}

const std::string INITIAL = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1";
const std::string BOTH_CASTLINGS = "r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1";
const std::string PROMOTION = "3nk3/4P3/8/8/8/8/8/4K3 w - - 0 1";
const std::string PAWN_AND_BISHOP_ON_C3 = "4k3/8/8/8/8/2n5/1P6/4B1K1 w - - 0 1";
// The rook from f1 mates the king on f8 boxed in by its own pieces.
constexpr const char* MATING_CASTLING = "4rkr1/4p1p1/8/8/8/8/8/4K2R w K - 0 1";

constexpr const char* SYNTAX = "(syntax)";
constexpr const char* NO_MATCH = "(no match)";
constexpr const char* AMBIGUOUS = "(ambiguous)";
constexpr const char* CASTLING = "(illegal castling)";

std::string ReasonText(int reason) {
  switch (reason) {
    case READ_SYNTAX_ERROR: return SYNTAX;
    case READ_NO_MATCH: return NO_MATCH;
    case READ_AMBIGUOUS: return AMBIGUOUS;
    case READ_ILLEGAL_CASTLING: return CASTLING;
    default: return "(reason " + std::to_string(reason) + ")";
  }
}

// Texts and what they read as: the move in coordinates, or the reason for no move.
void ExpectReads(const std::string& fen,
                 const std::vector<std::pair<const char*, const char*>>& cases) {
  const GameBoard board = Position(fen);
  for (const auto& [text, expected] : cases) {
    int reason = -1;
    const Move move = ReadMove(board, text, reason);
    const std::string read = move != INVALID ? MoveToText(board, move, COORDINATE_NOTATION)
                                             : ReasonText(reason);
    EXPECT_EQ(read, expected) << '"' << text << "\" in " << fen;
  }
}

TEST(MoveReading, CoordinatesAndSan) {
  ExpectReads(INITIAL, {{"e2e4", "e2e4"}, {"E2E4", "e2e4"}, {"e4", "e2e4"}, {"Nf3", "g1f3"},
                        {"nf3", "g1f3"}, {"Ngf3", "g1f3"}, {"N1f3", "g1f3"}, {"Ng1f3", "g1f3"},
                        {"e2e4 and more text", "e2e4"}, {"c3", "c2c3"}, {"Nc3", "b1c3"},
                        {"e2-e4", SYNTAX}, {"Ng1-f3", SYNTAX}, {"", SYNTAX}, {"+", SYNTAX},
                        {"hello", SYNTAX}, {"N", SYNTAX}, {"Nxf3", NO_MATCH}, {"Nf3+", NO_MATCH},
                        {"e5", NO_MATCH}, {"e2e5", NO_MATCH}, {"O-O", CASTLING}});
  ExpectReads(PAWN_AND_BISHOP_ON_C3, {{"bxc3", "b2c3"}, {"b:c3", "b2c3"}, {"Bxc3", "e1c3"},
                                      {"bc3", "b2c3"}, {"xc3", "b2c3"}, {"Bc3", "e1c3"},
                                      {"b3", "b2b3"}, {"Bd2", "e1d2"}});
  // Knights on b1 and f3 can both go to d2.
  ExpectReads("rnbqkb1r/ppp1pppp/5n2/3p4/3P4/5N2/PPP1PPPP/RNBQKB1R w KQkq - 2 3",
              {{"Nd2", AMBIGUOUS}, {"Nbd2", "b1d2"}, {"Nfd2", "f3d2"}, {"N1d2", "b1d2"},
               {"Ne5", "f3e5"}, {"Ne5+", NO_MATCH}});
  ExpectReads("r1bqkb1r/pppp1ppp/2n2n2/4p2Q/2B1P3/8/PPPP1PPP/RNB1K1NR w KQkq - 4 4",
              {{"Qxf7#", "h5f7"}, {"Qxf7+", "h5f7"}, {"Qxf7", "h5f7"}, {"Bxf7+", "c4f7"}});
  ExpectReads("7k/5Q2/6K1/8/8/8/8/8 b - - 0 1", {{"Kh7", NO_MATCH}, {"h8g8", NO_MATCH}});
}

TEST(MoveReading, EveryFormOfCastling) {
  ExpectReads(BOTH_CASTLINGS, {{"O-O", "e1g1"}, {"o-o", "e1g1"}, {"0-0", "e1g1"},
                               {"O-O+", "e1g1"}, {"O-O-O", "e1c1"}, {"0-0-0#", "e1c1"},
                               {"o-o-o ", "e1c1"}, {"e1g1", "e1g1"}, {"O-O-", SYNTAX},
                               {"O-O-X", SYNTAX}, {"O-OX", SYNTAX}, {"O-0", SYNTAX}});
  ExpectReads("r3k2r/8/8/8/8/8/8/R3K2R b Kk - 0 1", {{"O-O", "e8g8"}, {"O-O-O", CASTLING}});
}

TEST(MoveReading, PromotionsNeedTheirPiece) {
  ExpectReads(PROMOTION, {{"e7e8", NO_MATCH},  // e8 is blocked by the king
                          {"e7d8", "e7d8"}, {"e7d8n", "e7d8N"}, {"e7d8=N", "e7d8N"},
                          {"e7d8R", "e7d8R"}, {"exd8=Q", "e7d8"}, {"exd8=b", "e7d8B"},
                          {"exd8", AMBIGUOUS}, {"d8", AMBIGUOUS}, {"exd8=K", SYNTAX}});
  ExpectReads("8/4P3/8/8/8/8/k7/4K3 w - - 0 1", {{"e8", AMBIGUOUS}, {"e8=Q", "e7e8"},
                                                 {"e8=Q+", NO_MATCH}, {"a7a8", NO_MATCH}});
}

TEST(MoveReading, ParseMoveRefusesAFinishedGame) {
  GameBoard board = Position(INITIAL);
  Move move = 12345;
  for (const auto& [text, result] :
       {std::pair{"e4", PARSE_OK}, {"Nd2", PARSE_NO_MATCH}, {"O-O", PARSE_ILLEGAL_CASTLING},
        {"e2-e4", PARSE_SYNTAX_ERROR}})
    EXPECT_EQ(ParseMove(board, text, move), result) << text;
  EXPECT_EQ(move, INVALID);
  board.result = RESULT_DRAW;
  EXPECT_EQ(ParseMove(board, "e4", move), PARSE_GAME_OVER);
  EXPECT_EQ(ParseMove(Position(PROMOTION), "d8", move), PARSE_AMBIGUOUS);
}

// What standard chess software writes for these moves, in SAN and, where given, long algebraic.
TEST(MoveWriting, SanAndLongAlgebraic) {
  for (const auto& [fen, coordinates, san, long_algebraic] : {
      std::tuple{INITIAL, "g1f3", "Nf3", "Ng1-f3"},
      {INITIAL, "e2e4", "e4", "Pe2-e4"},
      {"rnbqkb1r/ppp1pppp/5n2/3p4/3P4/5N2/PPP1PPPP/RNBQKB1R w KQkq - 2 3", "b1d2", "Nbd2", ""},
      {"rnbqkb1r/ppp1pppp/5n2/3p4/3P4/5N2/PPP1PPPP/RNBQKB1R w KQkq - 2 3", "f3d2", "Nfd2", ""},
      // Two rooks on one file: the rank; on one rank: the file.
      {"7k/8/8/R7/8/8/8/R3K3 w - - 0 1", "a1a3", "R1a3", ""},
      {"7k/8/8/R7/8/8/8/R3K3 w - - 0 1", "a5a3", "R5a3", ""},
      {"7k/8/8/8/8/8/8/R4RK1 w - - 0 1", "a1d1", "Rad1", ""},
      {"7k/8/8/8/8/8/8/R4RK1 w - - 0 1", "f1d1", "Rfd1", ""},
      // Three queens, one sharing the file and one the rank: both.
      {"8/8/8/7k/8/Q7/8/Q1Q4K w - - 0 1", "a1b2", "Qa1b2", ""},
      {"8/8/8/7k/8/Q7/8/Q1Q4K w - - 0 1", "a3b2", "Q3b2", ""},
      {"8/8/8/7k/8/Q7/8/Q1Q4K w - - 0 1", "c1b2", "Qcb2", ""},
      // The knight on c3 is pinned and cannot go to e2.
      {"4k3/8/8/8/1b6/2N5/8/4K1N1 w - - 0 1", "g1e2", "Ne2", ""},
      // A pinned rook that stays on its pin line still counts.
      {"4r2k/8/8/R7/4R3/8/8/4K3 w - - 0 1", "a5e5", "Rae5", ""},
      {"4r2k/8/8/R7/4R3/8/8/4K3 w - - 0 1", "e4e5", "Ree5", ""},
      {PAWN_AND_BISHOP_ON_C3, "b2c3", "bxc3", ""},
      {PAWN_AND_BISHOP_ON_C3, "e1c3", "Bxc3", ""},
      {BOTH_CASTLINGS, "e1g1", "O-O", ""},
      {BOTH_CASTLINGS, "e1c1", "O-O-O", "O-O-O"},
      {BOTH_CASTLINGS, "a1a8", "Rxa8+", ""},
      {"5k2/8/8/8/8/8/8/4K2R w K - 0 1", "e1g1", "O-O+", ""},
      {PROMOTION, "e7d8", "exd8=Q+", ""},
      {PROMOTION, "e7d8N", "exd8=N", ""},
      {PROMOTION, "e7d8R", "exd8=R+", ""},
      {"r1bqkb1r/pppp1ppp/2n2n2/4p2Q/2B1P3/8/PPPP1PPP/RNB1K1NR w KQkq - 4 4", "h5f7", "Qxf7#",
       "Qh5xf7#"},
      {"rnbqkbnr/ppp1p1pp/8/3pPp2/8/8/PPPP1PPP/RNBQKBNR w KQkq f6 0 3", "e5f6", "exf6", ""},
      {"rnbqkbnr/pppp1ppp/8/4p3/6P1/5P2/PPPPP2P/RNBQKBNR b KQkq - 0 2", "d8h4", "Qh4#", ""},
      {"7k/8/6K1/8/8/8/8/R7 w - - 0 1", "a1a8", "Ra8#", ""},
      {"6k1/5ppp/8/8/8/8/8/R5K1 w - - 0 1", "a1a8", "Ra8#", ""},
      {"4k3/8/8/8/8/8/8/4K2R w K - 0 1", "e1f2", "Kf2", ""},
      {"4k3/3p4/8/8/8/8/8/3QK3 w - - 0 1", "d1d7", "Qxd7+", "Qd1xd7+"},
      {"7k/P7/8/8/8/8/8/K7 w - - 0 1", "a7a8", "a8=Q+", "Pa7-a8=Q+"},
      {"7k/P7/8/8/8/8/8/K7 w - - 0 1", "a7a8N", "a8=N", "Pa7-a8=N"},
      {MATING_CASTLING, "e1g1", "O-O+", "O-O+"},  // a mate by castling keeps the plus sign
  }) {
    const GameBoard board = Position(fen);
    int reason = -1;
    const Move move = ReadMove(board, coordinates, reason);
    ASSERT_NE(move, INVALID) << fen << " " << coordinates;
    EXPECT_EQ(MoveToText(board, move, SAN_NOTATION), san) << fen;
    EXPECT_EQ(MoveToText(board, move, COORDINATE_NOTATION), coordinates) << fen;
    if (*long_algebraic) {
      EXPECT_EQ(MoveToText(board, move, LONG_ALGEBRAIC), long_algebraic) << fen;
    }
  }
}

// Every legal move of many positions, written in SAN and in coordinates, reads back to the same
// word.
TEST(MoveWriting, EveryMoveReadsBackFromItsText) {
  const std::string starts[] = {
      INITIAL,
      "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1",
      "r3k2r/Pppp1ppp/1b3nbN/nP6/BBP1P3/q4N2/Pp1P2PP/R2Q1RK1 w kq - 0 1",
      "rnbq1k1r/pp1Pbppp/2p5/8/2B5/8/PPP1NnPP/RNBQK2R w KQ - 1 8",
      "8/8/8/7k/8/Q7/8/Q1Q4K w - - 0 1",
      "1n2k1n1/8/8/3N1N2/8/3N1N2/8/4K3 w - - 0 1",
  };
  std::mt19937 random(20261123);
  int checked = 0;
  for (const std::string& fen : starts) {
    UserBoard game;
    game.SetFEN(fen);
    for (int ply = 0; ply < 60 && !game.current.IsOver(); ++ply) {
      std::vector<Move> legal;
      GenerateMoves(legal, game.current);
      for (Move move : legal) {
        for (MoveFormat format : {SAN_NOTATION, COORDINATE_NOTATION}) {
          const std::string text = MoveToText(game.current, move, format);
          int reason = -1;
          EXPECT_EQ(ReadMove(game.current, text, reason), move) << game.GetFEN() << " " << text;
        }
        ++checked;
      }
      game.MakeMove(legal[random() % legal.size()]);
    }
  }
  EXPECT_GT(checked, 5000);
}

}  // namespace
