#include "shell/game_state.h"

#include <algorithm>

#include "shell/basic_protocol.h"
#include "shell/control_flow.h"
#include "shell/tee_stream.h"
#include "shell/thinking_time.h"

GameState::GameState(std::unique_ptr<BasicProtocol> protocol)
    : protocol(std::move(protocol)),
      white(Player::StandardHuman()),
      black(Player::StandardEngine(true)) {}

GameState::~GameState() = default;

void GameState::ReplaceProtocol(std::unique_ptr<BasicProtocol> new_protocol) {
  protocol = std::move(new_protocol);
}

void GameState::AbortSearch(bool discard_result) const {
  if (search_state != SearchState::none) throw search_aborted_exception{discard_result};
}

void GameState::RequestSearch(SearchState kind, const UserBoard& board) const {
  SearchRequest request;
  switch (kind) {
    case SearchState::pondering:
    case SearchState::normal: {
      request.type = kind == SearchState::normal ? SearchType::normal : SearchType::pondering;
      request.max_depth = sd_limit;
      int side = int(board.current.side_on_move);
      if (kind == SearchState::pondering) side ^= 1;
      ThinkingTime(side, request.max_time_limit, request.variable_time_limit);
      if (st_limit_ms != 0) request.max_time_limit = std::min(request.max_time_limit, st_limit_ms);
      break;
    }
    case SearchState::analyze:
      request.type = SearchType::analyze;
      break;
    case SearchState::puzzle:
    case SearchState::none:
      request.type = SearchType::puzzle;
      request.max_time_limit = puzzle_time_ms;
      request.variable_time_limit = puzzle_time_ms * 3 / 4;
      break;
  }
  throw search_request_received_exception(request, board);
}

// On the last move before a time control the hard limit is the whole clock, and a search that
// fails low there may use all of it: what it takes to stop, answer and switch the clock would then
// cost the game. A tenth of the clock, at most a second, stays in reserve.
void GameState::ThinkingTime(int side, std::int32_t& max_time_limit,
                             std::int32_t& variable_time_limit) const {
  const Clock& clock = time_control.clocks[side];
  ::ThinkingTime(clock, max_time_limit, variable_time_limit);
  const std::int64_t reserve = std::min<std::int64_t>(clock.ms_left / 10, 1000);
  const std::int64_t usable = clock.ms_left - reserve;
  if (usable < max_time_limit)
    max_time_limit = std::int32_t(std::max<std::int64_t>(usable, MIN_THINKING_TIME_MS));
}

void GameState::SetPlayers(const Player& on_move, const Player& other, bool analyze) {
  PlayerOf(SideOnMove()) = on_move;
  PlayerOf(SideOnMove() ^ 1) = other;
  if (analyze) {
    engine_mode = EngineMode::analyze;
  } else {
    engine_mode = EngineMode(int(white.plays) + int(black.plays));
  }
}

void GameState::EnterForceMode() {
  time_control.Stop();
  engine_mode = EngineMode::force;
  white.plays = black.plays = false;
}

// Moves are written in the engine's notation, SAN, for the position before them.
std::string GameState::MoveTextBefore(Move move) const {
  return user_board.MoveText(move, SAN_NOTATION);
}

void GameState::MakeUserMove(Move move) {
  const std::string text = MoveTextBefore(move);
  time_control.Switch();
  user_board.MakeMove(move);
  ponder_move = PONDER_MOVE_UNKNOWN;
  Output.ReportLogOnly("User move: " + text);
}

void GameState::MakeEngineMove(Move move) {
  const std::string text = MoveTextBefore(move);
  time_control.Switch();
  user_board.MakeMove(move);
  ponder_move = PONDER_MOVE_UNKNOWN;
  protocol->SendMove(text);
}

void GameState::StartPondering() const {
  if (ponder_move == PONDER_MOVE_UNKNOWN) RequestSearch(SearchState::puzzle, user_board);
  if (ponder_move == PONDER_MOVE_NONE || ponder_move == PONDER_MOVE_HINT_RUNNING) return;
  UserBoard copy = user_board;
  copy.MakeMove(ponder_move);
  RequestSearch(SearchState::pondering, copy);
}
