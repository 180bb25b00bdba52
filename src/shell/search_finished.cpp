// Where a search's result becomes a move: draws, resignation, the end of the game, and the turn to
// pondering.
#include "shell/application.h"
#include "shell/basic_protocol.h"
#include "shell/tee_stream.h"

namespace {
// Plays a move on a copy of the game; false if that ends the game.
bool GameGoesOnAfter(const UserBoard& board, Move move, UserBoard& after) {
  after = board;
  after.MakeMove(move);
  return after.current.result == 0;
}
}  // namespace

void Application::SearchFinished(bool discard_result) {
  GameState& g = *game;
  SerialSearch& search = g.search;
  BraskInterfaces::BasicProtocol& protocol = g.Protocol();
  const SearchState state = g.search_state;
  g.search_state = SearchState::none;
  if (protocol.TakeSearchResult(g, discard_result)) return;
  if (discard_result) {
    // A hint waiting for this search gets no move rather than a search that never comes back.
    if (state == SearchState::puzzle && g.ponder_move == PONDER_MOVE_HINT_RUNNING)
      g.ponder_move = PONDER_MOVE_NONE;
    return;
  }

  if (state == SearchState::puzzle) {
    const Move old = g.ponder_move;
    g.ponder_move = search.best_move != INVALID ? search.best_move : PONDER_MOVE_NONE;
    if (old == PONDER_MOVE_HINT_RUNNING || !g.pondering_enabled ||
        g.ponder_move == PONDER_MOVE_NONE)
      return;
    UserBoard after;
    if (!GameGoesOnAfter(g.user_board, g.ponder_move, after)) return;
    g.RequestSearch(SearchState::pondering, after);
  }
  if (state != SearchState::normal || search.best_move == INVALID) return;

  DrawHandler& draws = g.draw_handler;
  draws.Update(g.user_board.current, search.score);
  GameBoard& board = g.user_board.current;
  if (draws.draw_offer_pending) {
    if (draws.AcceptDraw()) {
      protocol.AcceptDraw();
      if (protocol.DecidesGameEndItself()) {
        board.result = 3;
        board.reason = 6;
        protocol.SendGameResult(3, 6, EngineMode::one_side);
        g.time_control.Stop();
        return;
      }
    } else {
      Output.ReportLogOnly("Engine rejects draw offer");
      protocol.RejectDraw(draws.opponent_is_computer);
    }
    draws.draw_offer_pending = false;
  }

  g.MakeEngineMove(search.best_move);
  protocol.DisplayPositionAfterChange(g);
  if (board.result != 0) {
    protocol.SendGameResult(board.result, board.reason, EngineMode::one_side);
    g.time_control.Stop();
    return;
  }

  if (draws.ShouldResign()) {
    protocol.Resign();
    if (protocol.DecidesGameEndItself()) {
      board.reason = 1;
      board.result = g.white.plays ? 2 : 1;
      protocol.SendGameResult(board.result, 1, EngineMode::one_side);
      g.time_control.Stop();
    }
  } else if (draws.ShouldOfferDraw()) {
    protocol.OfferDraw();
    draws.moves_since_own_offer = 0;
  }

  if (board.result != 0 || !g.pondering_enabled) return;
  if (search.best_line.size() < 2) g.RequestSearch(SearchState::puzzle, g.user_board);
  g.ponder_move = search.best_line[1].move;
  UserBoard after;
  if (!GameGoesOnAfter(g.user_board, g.ponder_move, after)) return;
  g.RequestSearch(SearchState::pondering, after);
}
