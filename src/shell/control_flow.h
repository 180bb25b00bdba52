// The three exceptions that carry control between the main loop and the search. They are no
// errors and stand outside the engine's failure classes.
#pragma once

#include <utility>

#include "chess/user_board.h"
#include "shell/search_request.h"

// Thrown through the search's frames by a command that cannot run beside it. With discard_result
// the search's result is dropped; without, its best move stands.
struct search_aborted_exception {
  bool discard_result;
};

struct quit_command_received_exception {};

// The only way a search is started: it unwinds to the main loop, which runs the search there.
struct search_request_received_exception {
  search_request_received_exception(const SearchRequest& request, const UserBoard& board)
      : request(request), board(board) {}
  SearchRequest request;
  UserBoard board;
};
