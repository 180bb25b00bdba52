#include "chess/edit_board.h"

#include <algorithm>

EditBoard::EditBoard(const Board& from)
    : state(from.IsValid() ? BUILT : INVALID_POSITION),
      board(from),
      side(from.side_on_move),
      castling(from.Castling()) {
  std::copy(std::begin(from.squares), std::end(from.squares), pieces);
}

void EditBoard::Clear() {
  std::fill(std::begin(pieces), std::end(pieces), 0);
  castling = CASTLING_UNKNOWN;
  state = INVALID_POSITION;  // no kings
}

void EditBoard::Reset(int side_on_move) {
  color_is_black = 0;
  side = side_on_move;
  castling = CASTLING_UNKNOWN;
  Clear();
}

void EditBoard::SetupKingsOnly() {
  Clear();
  pieces[E1] = KING;
  pieces[E8] = -KING;
  state = CHANGED;
}

void EditBoard::SetPiece(int square, int piece_type) {
  if (square < 0 || square > 63 || piece_type < NO_PIECE || piece_type > KING) return;
  const auto piece = static_cast<std::int8_t>(color_is_black ? -piece_type : piece_type);
  if (pieces[square] == piece) return;
  pieces[square] = piece;
  castling = CASTLING_UNKNOWN;
  state = CHANGED;
}

void EditBoard::SetSide(int side_on_move) {
  if (side == static_cast<std::uint32_t>(side_on_move)) return;
  side = side_on_move;
  state = CHANGED;
}

bool EditBoard::IsValid() {
  if (state == CHANGED)
    state = board.Setup(pieces, static_cast<int>(side), 0, GetCastling()) ? BUILT
                                                                           : INVALID_POSITION;
  return state == BUILT;
}

Board EditBoard::GetBoard() {
  if (!IsValid()) throw invalid_position();
  return board;
}

int EditBoard::GetCastling() {
  if (castling != CASTLING_UNKNOWN) return castling;
  castling = 0;
  if (pieces[E1] == KING) {
    if (pieces[H1] == ROOK) castling |= WHITE_SHORT;
    if (pieces[A1] == ROOK) castling |= WHITE_LONG;
  }
  if (pieces[E8] == -KING) {
    if (pieces[H8] == -ROOK) castling |= BLACK_SHORT;
    if (pieces[A8] == -ROOK) castling |= BLACK_LONG;
  }
  return castling;
}

void EditBoard::Display(bool with_state) {
  if (IsValid()) {
    board.Display(with_state);
    return;
  }
  Board shown;
  shown.Setup(pieces, static_cast<int>(side), 0, GetCastling());  // shown even when refused
  shown.Display(with_state);
}
