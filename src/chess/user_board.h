// The game as the user sees it: the position it started from, the position now, the moves
// between them, the moves taken back and ready to be played again, and how the game ended.
// Nothing here is on a hot path, so it buys simplicity with time: a move is taken back by
// replaying the game from its start. Every failure is thrown before anything has changed.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "chess/game_board.h"
#include "chess/move_text.h"
#include "chess/pgn_info.h"
#include "shell/brask_exception.h"

class EditBoard;

class UserBoard {
 public:
  struct user_exception : BraskException {
    using BraskException::BraskException;
  };
  struct invalid_position : user_exception {
    invalid_position() : user_exception("Illegal position") {}
  };
  // Bad FEN or PGN text, or a failing stream; the text says what was wrong.
  struct io_error : user_exception {
    explicit io_error(std::string detail) : user_exception(std::move(detail)) {}
  };
  struct invalid_board_after_changing_side : user_exception {
    invalid_board_after_changing_side() : user_exception("cannot change sides") {}
  };
  struct no_moves_to_undo : user_exception {
    no_moves_to_undo() : user_exception("no move to undo") {}
  };
  struct invalid_move : user_exception {
    invalid_move() : user_exception("Illegal move") {}
  };
  struct next_moves_empty : user_exception {
    next_moves_empty() : user_exception("next move buffer is empty") {}
  };

  UserBoard();

  void NewGame();
  void SetFEN(std::string_view text);
  void SetPosition(const Board& board);
  void SetFromEditBoard(EditBoard& edit_board);
  void SetEmptyEditBoardPosition();
  // A new game from the current position with the other side on move.
  UserBoard ChangeSide() const;

  bool IsLegal(Move move) const;
  void MakeMove(Move move);
  void MakeMove(std::string_view text);
  void Next();
  void NextAll();
  void Undo();
  void Remove();
  void Rewind();

  ParseResult ParseMove(std::string_view text, Move& move) const;
  std::string MoveText(Move move, MoveFormat format) const;

  std::string GetFEN() const;
  void WriteFEN(std::ostream& stream) const;
  void ReadFEN(std::istream& stream);
  void WritePGN(std::ostream& stream, const PGNInfo& info) const;
  void ReadPGN(std::istream& stream, PGNInfo& info);

  static std::string_view ResultText(std::uint32_t result) { return ::ResultText(result); }
  static std::string_view ReasonText(std::uint32_t result, std::uint32_t reason) {
    return ::ReasonText(result, reason);
  }

  void Display(bool with_state) const;

  // Plies played before start: nonzero for a game set up from FEN.
  std::int32_t start_ply = 0;
  GameBoard start;
  GameBoard current;
  std::vector<Move> moves;
  // Moves put aside by Undo, Rewind and ReadPGN, used as a stack: the back is played next.
  std::vector<Move> next_moves;
  // The key after each move of moves.
  std::vector<std::uint64_t> keys;

 private:
  // A position read from FEN, with the plies played before it.
  struct FenPosition {
    GameBoard board;
    std::int32_t start_ply = 0;
  };
  static FenPosition ParseFEN(std::string_view text);

  void StartGameAt(const GameBoard& board, std::int32_t plies_before);
  void PlayMove(Move move);
  void Replay();
};
