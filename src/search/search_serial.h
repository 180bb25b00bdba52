// The search driver: turns a search request into a best move by iterative deepening over the
// root moves. The first root move's score is found by a series of null-window searches; every
// other root move is only tested against it, and searched in full if it beats it. Input is polled
// from inside the search, and a command that must stop it throws search_aborted_exception.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "chess/basic.h"
#include "chess/user_board.h"
#include "search/search_clock.h"
#include "search/search_request.h"
#include "shell/time_point.h"

class SearchHost;
class SearchBoard;

struct BestLineMove {
  Move move;
  std::string text;
};

struct RootMove {
  Move move;
  std::string text;
  // The root move itself and the line behind it.
  std::vector<Move> principal_variation;
};

class SerialSearch {
 public:
  SerialSearch();
  ~SerialSearch();
  SerialSearch(const SerialSearch&) = delete;
  SerialSearch& operator=(const SerialSearch&) = delete;

  // Searches the game's position as asked and hands the result to host.SearchFinished.
  void Start(const SearchRequest& request, const UserBoard& user_board, SearchHost& host);
  // The same without a program around it, for tools and tests: no input is read, nothing is
  // reported, and the result stays in the status fields.
  void SearchWithoutHost(const SearchRequest& request, const UserBoard& user_board);
  void PonderHit();
  void SetContempt(std::int32_t value);
  void SetPersonality(std::int32_t value);
  // Milliseconds since the start; time spent pondering on the right move counts 70 %.
  std::uint64_t ElapsedTime() const;
  // Called with the node countdown from inside the tree, and without one while waiting.
  void Poll(std::uint64_t* countdown);

  // The status the protocols read.
  bool no_moves = true;
  std::int16_t moves_total = 0;
  std::int16_t moves_left = 0;
  std::int16_t depth = 0;
  std::uint64_t nodes = 0;
  std::int32_t fail_state = 0;
  Move current_move = INVALID;
  std::string current_move_text = "invalid";
  Move best_move = INVALID;
  std::vector<BestLineMove> best_line;
  std::int32_t score = 0;
  TimePoint start_time{};
  TimePoint stop_time{};
  TimePoint ponder_hit_time{};
  bool running = false;
  SearchType type = SearchType::normal;
  std::int32_t max_depth = 0;
  std::int32_t max_time_limit = 0;
  std::int32_t variable_time_limit = 0;
  std::uint64_t ettc_tries = 0;
  std::uint64_t ettc_cutoffs = 0;

  UserBoard game;
  std::int32_t contempt = 0;
  std::int32_t personality = 0;
  std::int32_t iteration = 0;
  bool searching_best_root_move = false;
  std::vector<std::unique_ptr<RootMove>> root_moves;
  std::unique_ptr<SearchBoard> board;
  SearchClock clock;
  SearchHost* host = nullptr;

 private:
  void Search(const SearchRequest& request, const UserBoard& user_board);
  void BuildRootMoves();
  void ResetStatus();
  void Run();
  void IterativeDeepening(int last_iteration, int root_type);
  void SearchIteration(int root_type);
  void TestOtherRootMoves(int root_type);
  void WaitForCommand();
  std::int32_t FindScore(RootMove& root_move, int position_type, std::int32_t lowerbound,
                         std::int32_t upperbound, std::int32_t guess);
  bool IsRefuted(RootMove& root_move, int position_type, std::int32_t best_score);
  std::int32_t SearchRootMove(RootMove& root_move, std::int32_t test, int position_type);
  void StorePrincipalVariation(const RootMove& root_move);
  void ReadPrincipalVariation(RootMove& root_move);
  void RebuildBestLine(const RootMove& root_move);
  void UpdateFailState(std::int32_t low_mark, std::int32_t high_mark, std::int32_t lowerbound,
                       std::int32_t upperbound);

  // Reports to the protocol, when there is a program around the search.
  void ReportIterationStart();
  void ReportNewBestLine();
  void ReportNewBestMoveCandidate();
  void ReportSearchInstability();
  void ReportSearchFinished();
};
