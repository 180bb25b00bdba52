// Moves as text: reading what a user or a GUI typed (coordinates, SAN, every castling form) by
// selecting among the legal moves, and writing a move in one of three notations.
#pragma once

#include <string>
#include <string_view>

#include "chess/board.h"
#include "chess/game_board.h"

enum MoveFormat : int {
  COORDINATE_NOTATION = 0,  // e2e4, a7a8N
  SAN_NOTATION = 1,         // e4, Nbd2, exd8=Q#, O-O
  LONG_ALGEBRAIC = 2,       // Pe2-e4, Qd1xd7+
};

enum ParseResult : int {
  PARSE_OK = 0,
  PARSE_AMBIGUOUS = 1,
  PARSE_NO_MATCH = 2,
  PARSE_ILLEGAL_CASTLING = 3,
  PARSE_GAME_OVER = 4,
  PARSE_SYNTAX_ERROR = 5,
};

// Why ReadMove found no move.
enum ReadFailure : int {
  READ_AMBIGUOUS = 0,
  READ_NO_MATCH = 1,
  READ_ILLEGAL_CASTLING = 2,
  READ_SYNTAX_ERROR = 3,
};

// The legal move that the text names, or INVALID with the reason. Never throws.
Move ReadMove(const Board& board, std::string_view text, int& reason);

// ReadMove for a game: refuses to read anything once the game is over.
ParseResult ParseMove(const GameBoard& board, std::string_view text, Move& move);

// The move, legal in board (the position before it), as text.
std::string MoveToText(const Board& board, Move move, MoveFormat format);

// Whether a checking move leaves the opponent without a legal reply.
bool GivesMate(const Board& board, Move move);
