#include "search/search_board.h"

#include <algorithm>

#include "search/search_serial.h"

SearchBoard::SearchBoard(SerialSearch& owner) : search(&owner) {
  for (auto& row : principal_variation) row[0] = INVALID;
  std::fill(std::begin(pin_records), std::end(pin_records), NO_PIN);
}

void SearchBoard::ResetForSearch(const Board& position) {
  static_cast<Board&>(*this) = position;
  RebaseStacks();
  root_side = side_on_move;
  poll_countdown = 100;
  nodes = ettc_tries = ettc_cutoffs = 0;
  bitbase_probes = tablebase_probes = DatabaseProbeCounts{};
  history.NewSearch();
  std::fill(std::begin(perpetual_records), std::end(perpetual_records), PerpetualRecord{});
  std::fill(std::begin(pin_records), std::end(pin_records), NO_PIN);
  std::fill(std::begin(played_moves), std::end(played_moves), INVALID);
}

void SearchBoard::ExtendLine(int ply, Move move) {
  Move* row = principal_variation[ply];
  const Move* below = principal_variation[ply + 1];
  row[0] = move;
  int i = 0;
  for (; i + 2 < PLIES && below[i] != INVALID; ++i) row[i + 1] = below[i];
  row[i + 1] = INVALID;
}

void SearchBoard::Poll() {
  search->nodes += nodes;
  search->ettc_tries += ettc_tries;
  search->ettc_cutoffs += ettc_cutoffs;
  nodes = ettc_tries = ettc_cutoffs = 0;
  search->Poll(&poll_countdown);
}
