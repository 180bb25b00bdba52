// The state that commands act on: the game, the clocks, the protocol, the players, and what the
// engine is doing now.
#pragma once

#include <cstdint>
#include <memory>

#include "chess/user_board.h"
#include "search/search_serial.h"
#include "shell/draw_handler.h"
#include "shell/player.h"
#include "shell/engine_states.h"
#include "shell/time_control.h"

namespace BraskInterfaces {
class BasicProtocol;
}
using BraskInterfaces::BasicProtocol;

// Values of ponder_move besides a move: the words 1 and 2 cannot be moves.
constexpr Move PONDER_MOVE_UNKNOWN = 0;
constexpr Move PONDER_MOVE_NONE = 1;
constexpr Move PONDER_MOVE_HINT_RUNNING = 2;

class GameState {
 public:
  explicit GameState(std::unique_ptr<BasicProtocol> protocol);
  ~GameState();

  // Throws search_aborted_exception if a search runs; else returns.
  void AbortSearch(bool discard_result) const;
  // Never returns: unwinds to the main loop, which starts the search.
  [[noreturn]] void RequestSearch(SearchState kind, const UserBoard& board) const;
  void SetPlayers(const Player& on_move, const Player& other, bool analyze);
  void MakeUserMove(Move move);
  void MakeEngineMove(Move move);
  void StartPondering() const;
  void ThinkingTime(int side, std::int32_t& max_time_limit,
                    std::int32_t& variable_time_limit) const;

  BasicProtocol& Protocol() const { return *protocol; }
  void ReplaceProtocol(std::unique_ptr<BasicProtocol> new_protocol);
  Player& PlayerOf(int colour) { return colour == WHITE ? white : black; }
  const Player& PlayerOf(int colour) const { return colour == WHITE ? white : black; }
  int SideOnMove() const { return int(user_board.current.side_on_move); }
  bool GameIsOver() const { return user_board.current.result != 0; }
  bool SearchRuns() const { return search_state != SearchState::none; }
  // Force mode: the engine plays neither side and no clock runs.
  void EnterForceMode();

  UserBoard user_board;
  TimeControl time_control;
  std::unique_ptr<BasicProtocol> protocol;
  Player white;
  Player black;
  bool pondering_enabled = false;
  SearchState search_state = SearchState::none;
  EngineMode engine_mode = EngineMode::one_side;
  std::int32_t st_limit_ms = 0;
  std::int32_t sd_limit = 0;
  const std::int32_t puzzle_time_ms = 1000;
  SerialSearch search;
  DrawHandler draw_handler;
  Move ponder_move = PONDER_MOVE_UNKNOWN;

 private:
  std::string MoveTextBefore(Move move) const;
};
