// A scratch position put together piece by piece, with no demand for consistency until it is
// turned into a Board. Castling rights are worked out from where the kings and rooks stand.
#pragma once

#include <cstdint>

#include "chess/board.h"
#include "shell/brask_exception.h"

class EditBoard {
 public:
  struct invalid_position : BraskException {
    invalid_position() : BraskException("Illegal position") {}
  };

  static constexpr std::uint32_t BUILT = 0;    // board is valid and up to date
  static constexpr std::uint32_t INVALID_POSITION = 1;
  static constexpr std::uint32_t CHANGED = 2;  // not tested since the last change
  static constexpr std::int32_t CASTLING_UNKNOWN = -1;

  EditBoard() { Reset(WHITE); }
  explicit EditBoard(const Board& from);

  void Clear();
  void Reset(int side_on_move);
  void SetupKingsOnly();
  // Places a piece of the colour now being placed; NO_PIECE empties the square.
  void SetPiece(int square, int piece_type);
  void SetSide(int side_on_move);

  bool IsValid();
  Board GetBoard();
  int GetCastling();
  void Display(bool with_state);

  std::uint32_t state = INVALID_POSITION;
  Board board;
  std::int8_t pieces[64]{};
  std::uint32_t side = WHITE;
  std::uint32_t color_is_black = 0;
  std::int32_t castling = CASTLING_UNKNOWN;
};
