#include "search/search_serial.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "chess/move_generator.h"
#include "search/hash.h"
#include "search/position_type.h"
#include "search/search_board.h"
#include "search/search_node.h"
#include "search/search_settings.h"
#include "search/search_types.h"
#include "search/search_host.h"
#include "shell/os_dependent.h"
#include "shell/tee_stream.h"

namespace {
constexpr int ITERATION_LIMIT = 80;       // iterations run while their number is below this
constexpr std::uint64_t QUIET_START_MS = 3000;  // the first iteration is left alone this long
constexpr std::uint64_t PUZZLE_LIMIT_MS = 3000;
constexpr std::int64_t WAIT_MS = 125;
constexpr std::uint32_t ROOT_FLAGS =
    SKIP_PERPETUAL_CHECK_TEST | UNUSED_FLAG | CHILD_SKIP_PERPETUAL_CHECK_TEST;  // 1120
}  // namespace

SerialSearch::SerialSearch() : board(std::make_unique<SearchBoard>(*this)) {}

SerialSearch::~SerialSearch() = default;

void SerialSearch::Start(const SearchRequest& request, const UserBoard& user_board,
                         SearchHost& search_host) {
  host = &search_host;
  Search(request, user_board);
}

void SerialSearch::SearchWithoutHost(const SearchRequest& request, const UserBoard& user_board) {
  host = nullptr;
  Search(request, user_board);
}

void SerialSearch::Search(const SearchRequest& request, const UserBoard& user_board) {
  type = request.type;
  max_depth = request.max_depth;
  max_time_limit = request.max_time_limit;
  variable_time_limit = request.variable_time_limit;
  if (user_board.current.IsOver()) {
    root_moves.clear();
    ResetStatus();
  } else {
    game = user_board;
    BuildRootMoves();
    ResetStatus();
    if (!root_moves.empty()) {
      Run();
      return;
    }
  }
  if (host != nullptr) host->SearchFinished(true);
}

void SerialSearch::BuildRootMoves() {
  std::vector<Move> moves;
  GenerateMoves(moves, game.current);
  root_moves.clear();
  for (Move move : moves) {
    root_moves.push_back(std::make_unique<RootMove>(
        RootMove{move, game.MoveText(move, SAN_NOTATION), {}}));
  }
}

void SerialSearch::ResetStatus() {
  no_moves = root_moves.empty();
  moves_total = moves_left = std::int16_t(root_moves.size());
  depth = 0;
  iteration = 0;
  nodes = 0;
  fail_state = 0;
  current_move = INVALID;
  current_move_text = "invalid";
  best_move = INVALID;
  best_line.clear();
  score = 0;
  start_time = stop_time = ponder_hit_time = TimePoint{};
  running = false;
  searching_best_root_move = false;
  ettc_tries = ettc_cutoffs = 0;
}

void SerialSearch::Run() {
  Now(start_time);
  NewSearchOnHashTables();
  clock.Init(std::uint64_t(std::max(max_time_limit, 0)),
             std::uint64_t(std::max(variable_time_limit, 0)));
  board->ResetForSearch(game.current);
  board->contempt = contempt;
  const int root_type = ClassifyPosition(*board, UNCLASSIFIED);

  const bool unlimited = max_depth == 0 || type == SearchType::analyze;
  const int last_iteration = unlimited ? ITERATION_LIMIT : max_depth + 1;
  running = true;
  best_move = root_moves[0]->move;
  bool discard = false;
  try {
    if (last_iteration >= 2) IterativeDeepening(last_iteration, root_type);
    WaitForCommand();
  } catch (const search_aborted_exception& abort) {
    discard = abort.discard_result;
  }
  Now(stop_time);
  running = false;
  ReportSearchFinished();
  if (host != nullptr) host->SearchFinished(discard);
}

void SerialSearch::IterativeDeepening(int last_iteration, int root_type) {
  for (int i = 1; i < last_iteration; ++i) {
    clock.NextIteration();
    moves_left = moves_total;
    iteration = i;
    depth = std::int16_t(i);
    ReportIterationStart();
    SearchIteration(root_type);
    if (type == SearchType::normal &&
        clock.TimeIsUp(ElapsedTime(), SearchClock::ITERATION_DONE, SearchClock::INSIDE)) {
      return;
    }
  }
}

void SerialSearch::SearchIteration(int root_type) {
  RootMove& first = *root_moves[0];
  current_move = first.move;
  current_move_text = first.text;
  searching_best_root_move = true;
  score = FindScore(first, root_type, -MATE_SCORE, MATE_SCORE, score);
  --moves_left;
  best_move = first.move;
  RebuildBestLine(first);
  ReportNewBestLine();
  searching_best_root_move = false;
  TestOtherRootMoves(root_type);
}

// Each other move is only tested against the best score; one that beats it becomes the
// candidate, and its full search decides whether it stays.
void SerialSearch::TestOtherRootMoves(int root_type) {
  const std::int32_t total = moves_total;
  for (std::int32_t i = 1; i < total; ++i) {
    current_move = root_moves[i]->move;
    current_move_text = root_moves[i]->text;
    if (!IsRefuted(*root_moves[i], root_type, score)) {
      std::rotate(root_moves.begin(), root_moves.begin() + i, root_moves.begin() + i + 1);
      clock.best_move_changed = true;
      ReportNewBestMoveCandidate();
      const Move old_best_move = best_move;
      std::vector<BestLineMove> old_best_line = best_line;
      best_move = root_moves[0]->move;
      RebuildBestLine(*root_moves[0]);
      searching_best_root_move = true;
      const std::int32_t value = FindScore(*root_moves[0], root_type, score, MATE_SCORE, score + 10);
      if (value <= score) {
        // The move beat the score once and not again: keep the old move, second to the candidate.
        clock.instability = true;
        ReportSearchInstability();
        std::swap(root_moves[0], root_moves[1]);
        best_move = old_best_move;
        best_line = std::move(old_best_line);
      } else {
        score = value;
        RebuildBestLine(*root_moves[0]);
        ReportNewBestLine();
      }
    }
    --moves_left;
    searching_best_root_move = false;
  }
}

// Analysis and pondering keep their result until a command ends them; a ponder hit turns the
// search into a normal one, whose result then stands.
void SerialSearch::WaitForCommand() {
  if (host == nullptr) return;
  while (type == SearchType::analyze || type == SearchType::pondering) {
    SleepMs(WAIT_MS);
    Poll(nullptr);
  }
}

void SerialSearch::UpdateFailState(std::int32_t low_mark, std::int32_t high_mark,
                                   std::int32_t lowerbound, std::int32_t upperbound) {
  if (high_mark < lowerbound) {
    clock.failed_high = true;
    fail_state = SearchClock::FAILED_HIGH;
  } else if (upperbound < low_mark) {
    clock.failed_low = true;
    fail_state = SearchClock::FAILED_LOW;
  } else {
    fail_state = SearchClock::INSIDE;
  }
}

// Null-window searches converge on the score of the root move from a guess, with a step that
// grows while the fails go one way and is halved when they turn.
std::int32_t SerialSearch::FindScore(RootMove& root_move, int position_type,
                                     std::int32_t lowerbound, std::int32_t upperbound,
                                     std::int32_t guess) {
  const std::int32_t margin = (std::abs(guess) >> 3) + 25;
  const std::int32_t high_mark = guess + margin;
  const std::int32_t low_mark = guess - margin;
  std::int32_t step = 100 / iteration + std::abs(guess) / 10 + 25;
  std::int32_t direction = 0;
  std::int32_t test = guess;
  for (;;) {
    UpdateFailState(low_mark, high_mark, lowerbound, upperbound);
    const std::int32_t gap = std::abs(lowerbound - upperbound);
    // The last points of a score only matter where it touches the draw score or a mate.
    if (gap < 21 && ((upperbound <= MATE_THRESHOLD && contempt + 1 < lowerbound) ||
                     (lowerbound >= -MATE_THRESHOLD && upperbound < contempt - 1))) {
      const std::int32_t result = std::max((lowerbound + upperbound) / 2, lowerbound);
      clock.RecordScore(result);
      return result;
    }
    step = step > 0 ? std::min(gap < 4 ? 1 : gap >> 2, step) : 1;
    clock.lowerbound = lowerbound;
    clock.upperbound = upperbound;
    StorePrincipalVariation(root_move);
    const std::int32_t result = SearchRootMove(root_move, test, position_type);
    ReadPrincipalVariation(root_move);
    if (result == test) {
      lowerbound = test;
      if (direction > 1) {
        step += (direction * step) / 10;
        ++direction;
      } else if (direction < 0) {
        step -= step / 2;
        direction = 1;
      } else {
        ++direction;
      }
    } else {
      upperbound = result;
      if (direction < -1) {
        step += (-direction * step) / 10;
        --direction;
      } else if (direction > 0) {
        step -= step / 2;
        direction = -1;
      } else {
        --direction;
      }
    }
    step = std::max(step, 1);
    if (lowerbound >= upperbound) {
      if (lowerbound > upperbound) {
        const bool terminal = Output.SetTerminal(false);
        Output << "error: lowerbound and upperbound crossed!\n"
               << "lowerbound=" << lowerbound << ", upperbound=" << upperbound << "\n";
        Output.SetTerminal(terminal);
        Output.Flush();
      }
      clock.RecordScore(result);
      return result;
    }
    const std::int32_t next = result > lowerbound ? result + 1 - step : result + step;
    test = std::max(lowerbound, std::min(next, upperbound));
  }
}

bool SerialSearch::IsRefuted(RootMove& root_move, int position_type, std::int32_t best_score) {
  StorePrincipalVariation(root_move);
  fail_state = SearchClock::INSIDE;
  // Mate scores move in steps of two plies: a longer or shorter mate is only better by 2.
  std::int32_t test = best_score + 1;
  if (test >= 31768 && (test & 1) != 0) ++test;
  if (test < -31767) ++test;
  const std::int32_t result = SearchRootMove(root_move, test, position_type);
  ReadPrincipalVariation(root_move);
  return result == test - 1;
}

std::int32_t SerialSearch::SearchRootMove(RootMove& root_move, std::int32_t test,
                                          int position_type) {
  const std::uint32_t flags = ROOT_FLAGS | (skip_null_move_at_the_root ? SKIP_NULL_MOVE : 0);
  const std::int32_t distance = (iteration - 1) * root_distance_multiplier;
  SearchBoard& b = *board;
  b.MakeMove(root_move.move);
  b.position_types[1] = position_type;
  b.played_moves[1] = root_move.move;
  const Score value = SearchNode(b, b.move_stack, 1 - test, distance, PV, position_type, flags);
  b.UndoMove(root_move.move);
  nodes += b.nodes;
  ettc_tries += b.ettc_tries;
  ettc_cutoffs += b.ettc_cutoffs;
  b.nodes = b.ettc_tries = b.ettc_cutoffs = 0;
  b.ExtendLine(0, root_move.move);
  return -value;
}

void SerialSearch::Poll(std::uint64_t* countdown) {
  const std::uint64_t elapsed = ElapsedTime();
  if (countdown != nullptr) {
    // About one poll every eighth of a second.
    const std::uint64_t rate = elapsed < 1000 ? nodes : nodes / elapsed * 1000;
    *countdown = rate / 8 + 100;
    // Near the hard limit the next poll must not fall an eighth of a second behind it: on the
    // last move before a time control the hard limit is all that is left on the clock.
    if (max_time_limit > 0 && type != SearchType::analyze && type != SearchType::pondering) {
      const std::uint64_t limit = std::uint64_t(max_time_limit);
      const std::uint64_t left_ms = elapsed < limit ? limit - elapsed : 0;
      *countdown = std::min(*countdown, rate * left_ms / 1000 + 100);
    }
    if (elapsed <= QUIET_START_MS && iteration == 1) return;
  }
  if (type == SearchType::puzzle) {
    if (elapsed > PUZZLE_LIMIT_MS) throw search_aborted_exception{false};
  } else {
    if (host != nullptr) host->PollInput();
    // A ponder hit changes the type inside PollInput.
    if (type == SearchType::analyze || type == SearchType::pondering) return;
  }
  const int kind = searching_best_root_move ? SearchClock::BEST_MOVE : SearchClock::OTHER_MOVE;
  const int fail = searching_best_root_move ? fail_state : SearchClock::INSIDE;
  if (clock.TimeIsUp(elapsed, kind, fail)) throw search_aborted_exception{false};
}

void SerialSearch::PonderHit() {
  type = SearchType::normal;
  Now(ponder_hit_time);
}

void SerialSearch::SetContempt(std::int32_t value) {
  if (value == contempt) return;
  contempt = value;
  const bool black_at_root = game.current.side_on_move == BLACK;
  board->evaluation.settings->draw_value = std::int16_t(black_at_root ? -value : value);
  TRANSPOSITION_TABLE.Clear();
  EVALUATION_HASH_TABLE.Clear();
}

void SerialSearch::SetPersonality(std::int32_t value) {
  personality = value;
  board->evaluation.settings->personality = std::int16_t(value);
  TRANSPOSITION_TABLE.Clear();
  EVALUATION_HASH_TABLE.Clear();
}

std::uint64_t SerialSearch::ElapsedTime() const {
  std::int64_t elapsed = ElapsedMsSince(start_time);
  if (ponder_hit_time.set) elapsed -= ElapsedMs(start_time, ponder_hit_time) * 3 / 10;
  return std::uint64_t(elapsed < 0 ? 0 : elapsed);
}

void SerialSearch::ReportIterationStart() {
  if (host != nullptr) host->ReportIterationStart(iteration);
}

void SerialSearch::ReportNewBestLine() {
  if (host != nullptr) host->ReportNewBestLine(*this);
}

void SerialSearch::ReportNewBestMoveCandidate() {
  if (host != nullptr) {
    host->ReportNewBestMoveCandidate(root_moves[0]->text);
  }
}

void SerialSearch::ReportSearchInstability() {
  if (host != nullptr) host->ReportSearchInstability();
}

void SerialSearch::ReportSearchFinished() {
  if (host != nullptr) host->ReportSearchFinished(*this);
}
