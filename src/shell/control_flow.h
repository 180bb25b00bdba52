// The exceptions that carry control between the main loop and the search, beside
// search_aborted_exception, which the search owns. They are no errors and stand outside the
// engine's failure classes.
#pragma once

#include <utility>

#include "chess/user_board.h"
#include "search/search_request.h"

struct quit_command_received_exception {};

// The only way a search is started: it unwinds to the main loop, which runs the search there.
struct search_request_received_exception {
  search_request_received_exception(const SearchRequest& request, const UserBoard& board)
      : request(request), board(board) {}
  SearchRequest request;
  UserBoard board;
};
