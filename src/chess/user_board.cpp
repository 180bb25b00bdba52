#include "chess/user_board.h"

#include "chess/edit_board.h"

namespace {
constexpr std::size_t RESERVED_MOVES = 100;
}

UserBoard::UserBoard() {
  moves.reserve(RESERVED_MOVES);
  keys.reserve(RESERVED_MOVES);
  NewGame();
}

void UserBoard::NewGame() {
  GameBoard initial;
  initial.Setup(INITIAL_POSITION, WHITE, 0, ALL_CASTLING);
  StartGameAt(initial, 0);
}

void UserBoard::StartGameAt(const GameBoard& board, std::int32_t plies_before) {
  start_ply = plies_before;
  start = board;
  current = board;
  moves.clear();
  next_moves.clear();
  keys.clear();
}

void UserBoard::SetPosition(const Board& board) {
  if (!board.IsValid()) throw invalid_position();
  GameBoard position(board);
  position.RebaseStacks();
  GameEnd(position, {});
  StartGameAt(position, 0);
}

void UserBoard::SetFromEditBoard(EditBoard& edit_board) {
  if (!edit_board.IsValid()) throw invalid_position();
  SetPosition(edit_board.GetBoard());
}

void UserBoard::SetEmptyEditBoardPosition() {
  EditBoard edit_board;
  edit_board.Reset(static_cast<int>(current.side_on_move));
  edit_board.SetupKingsOnly();
  SetFromEditBoard(edit_board);
}

UserBoard UserBoard::ChangeSide() const {
  Board turned = current;
  if (!turned.ChangeSideOnMove()) throw invalid_board_after_changing_side();
  UserBoard game;
  game.SetPosition(turned);
  return game;
}

bool UserBoard::IsLegal(Move move) const { return !current.IsOver() && current.VerifyMove(move); }

void UserBoard::PlayMove(Move move) {
  MakeGameMove(current, move, keys);
  moves.push_back(move);
}

void UserBoard::MakeMove(Move move) {
  if (!next_moves.empty() && next_moves.back() == move) {
    next_moves.pop_back();
    PlayMove(move);
    return;
  }
  if (!IsLegal(move)) throw invalid_move();
  PlayMove(move);
  next_moves.clear();  // the game has taken another course
}

void UserBoard::MakeMove(std::string_view text) {
  Move move = INVALID;
  if (ParseMove(text, move) != PARSE_OK) throw invalid_move();
  MakeMove(move);
}

void UserBoard::Next() {
  if (next_moves.empty()) throw next_moves_empty();
  MakeMove(next_moves.back());
}

void UserBoard::NextAll() {
  while (!next_moves.empty()) Next();
}

void UserBoard::Replay() {
  current = start;
  keys.clear();
  for (Move move : moves) MakeGameMove(current, move, keys);
}

void UserBoard::Undo() {
  if (moves.empty()) throw no_moves_to_undo();
  next_moves.push_back(moves.back());
  moves.pop_back();
  Replay();
}

void UserBoard::Remove() {
  if (moves.size() < 2) throw no_moves_to_undo();
  Undo();
  Undo();
}

void UserBoard::Rewind() {
  if (moves.empty()) return;
  next_moves.insert(next_moves.end(), moves.rbegin(), moves.rend());
  moves.clear();
  Replay();
}

ParseResult UserBoard::ParseMove(std::string_view text, Move& move) const {
  return ::ParseMove(current, text, move);
}

std::string UserBoard::MoveText(Move move, MoveFormat format) const {
  return MoveToText(current, move, format);
}

void UserBoard::Display(bool with_state) const { current.Display(with_state); }
