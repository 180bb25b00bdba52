#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "chess/edit_board.h"
#include "chess/user_board.h"

namespace {

const std::string INITIAL_FEN = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1";

void Play(UserBoard& game, const std::vector<std::string>& moves) {
  for (const std::string& move : moves) game.MakeMove(move);
}

Move Word(const UserBoard& game, const std::string& text) {
  Move move = INVALID;
  EXPECT_EQ(game.ParseMove(text, move), PARSE_OK) << text;
  return move;
}

TEST(UserBoard, UndoPutsTheMoveAsideAndNextPlaysTheSameWord) {
  UserBoard game;
  const Move e4 = Word(game, "e4");
  game.MakeMove(e4);
  game.Undo();
  EXPECT_EQ(game.GetFEN(), INITIAL_FEN);
  EXPECT_EQ(game.current.Key(), game.start.Key());
  ASSERT_EQ(game.next_moves, std::vector<Move>{e4});
  EXPECT_TRUE(game.moves.empty());
  EXPECT_TRUE(game.keys.empty());
  game.Next();
  EXPECT_EQ(game.moves, std::vector<Move>{e4});
  EXPECT_TRUE(game.next_moves.empty());
  EXPECT_THROW(game.Next(), UserBoard::next_moves_empty);
}

TEST(UserBoard, ADifferentMoveDropsTheMovesPutAside) {
  UserBoard game;
  Play(game, {"e4", "e5"});
  game.Undo();
  game.MakeMove("c5");
  EXPECT_TRUE(game.next_moves.empty());
  game.Undo();
  game.MakeMove(game.next_moves.back());  // the same word goes without a legality test
  EXPECT_TRUE(game.next_moves.empty());
}

TEST(UserBoard, RewindThenNextAllComesBackToTheSameEnd) {
  UserBoard game;
  Play(game, {"f3", "e5", "g4", "Qh4"});
  const std::string fen = game.GetFEN();
  const std::uint64_t key = game.current.Key();
  game.Rewind();
  EXPECT_EQ(game.GetFEN(), INITIAL_FEN);
  EXPECT_EQ(game.current.result, RESULT_RUNNING);
  EXPECT_EQ(game.next_moves.size(), 4u);
  EXPECT_EQ(game.next_moves.back(), Word(game, "f3"));
  game.NextAll();
  EXPECT_EQ(game.GetFEN(), fen);
  EXPECT_EQ(game.current.Key(), key);
  EXPECT_EQ(game.current.result, RESULT_BLACK_WINS);
  EXPECT_EQ(game.current.reason, REASON_CHECKMATE);
  EXPECT_EQ(game.keys.size(), 4u);
}

TEST(UserBoard, UndoingAMateReopensTheGame) {
  UserBoard game;
  Play(game, {"f3", "e5", "g4", "Qh4"});
  game.Undo();
  EXPECT_EQ(game.current.result, RESULT_RUNNING);
  EXPECT_EQ(game.current.reason, REASON_NONE);
  EXPECT_TRUE(game.IsLegal(Word(game, "Qg5")));
}

TEST(UserBoard, EmptyRecordsRefuseToGoBack) {
  UserBoard game;
  EXPECT_THROW(game.Undo(), UserBoard::no_moves_to_undo);
  EXPECT_THROW(game.Remove(), UserBoard::no_moves_to_undo);
  EXPECT_THROW(game.Next(), UserBoard::next_moves_empty);
  game.Rewind();
  game.MakeMove("e4");
  EXPECT_THROW(game.Remove(), UserBoard::no_moves_to_undo);
  EXPECT_EQ(game.moves.size(), 1u);
  game.MakeMove("e5");
  game.Remove();
  EXPECT_EQ(game.GetFEN(), INITIAL_FEN);
  EXPECT_EQ(game.next_moves.size(), 2u);
}

TEST(UserBoard, IllegalMovesChangeNothing) {
  UserBoard game;
  game.MakeMove("e4");
  const std::string fen = game.GetFEN();
  for (const char* text : {"e4", "Nf6+", "O-O", "xyz", "", "e7e4", "Ke7"})
    EXPECT_THROW(game.MakeMove(std::string(text)), UserBoard::invalid_move) << text;
  EXPECT_THROW(game.MakeMove(Move{12345}), UserBoard::invalid_move);
  EXPECT_THROW(game.MakeMove(INVALID), UserBoard::invalid_move);
  EXPECT_EQ(game.GetFEN(), fen);
  EXPECT_EQ(game.moves.size(), 1u);
}

TEST(UserBoard, ChangeSideStartsANewGame) {
  UserBoard game;
  game.MakeMove("Nf3");
  UserBoard turned = game.ChangeSide();
  EXPECT_EQ(turned.GetFEN(), "rnbqkbnr/pppppppp/8/8/8/5N2/PPPPPPPP/RNBQKB1R w KQkq - 0 1");
  EXPECT_TRUE(turned.moves.empty());
  EXPECT_EQ(turned.start_ply, 0);
  // A double step leaves an en-passant square that fits only Black on move.
  game.MakeMove("e5");
  EXPECT_THROW(game.ChangeSide(), UserBoard::invalid_board_after_changing_side);
  // The side in check cannot hand over the move.
  UserBoard check;
  check.SetFEN("4k3/8/8/8/8/8/8/4K2r w - - 0 1");
  EXPECT_THROW(check.ChangeSide(), UserBoard::invalid_board_after_changing_side);
  EXPECT_EQ(check.GetFEN(), "4k3/8/8/8/8/8/8/4K2r w - - 0 1");
}

TEST(UserBoard, PositionsFromBoardsAndEditBoards) {
  UserBoard game;
  game.MakeMove("e4");
  game.SetEmptyEditBoardPosition();
  EXPECT_EQ(game.GetFEN(), "4k3/8/8/8/8/8/8/4K3 b - - 0 1");
  EXPECT_EQ(game.current.reason, REASON_NO_MATING_MATERIAL);
  EXPECT_TRUE(game.moves.empty());

  EditBoard edit;
  edit.SetupKingsOnly();
  edit.SetPiece(A4, ROOK);
  game.SetFromEditBoard(edit);
  EXPECT_EQ(game.GetFEN(), "4k3/8/8/8/R7/8/8/4K3 w - - 0 1");
  EXPECT_EQ(game.current.result, RESULT_RUNNING);

  edit.SetPiece(E1, NO_PIECE);
  EXPECT_THROW(game.SetFromEditBoard(edit), UserBoard::invalid_position);
  EXPECT_EQ(game.GetFEN(), "4k3/8/8/8/R7/8/8/4K3 w - - 0 1");

  UserBoard other;
  other.SetPosition(game.current);
  EXPECT_EQ(other.GetFEN(), game.GetFEN());
}

}  // namespace
