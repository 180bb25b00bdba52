// The top of the engine: the queues of input lines and commands, the game, and the one loop that
// runs them, from the main loop and from inside the search alike.
#pragma once

#include <deque>
#include <memory>
#include <string>
#include <vector>

#include "search/search_host.h"
#include "shell/command.h"
#include "shell/game_state.h"

class Application : public SearchHost {
 public:
  // Arguments: the program's arguments without the empty ones; they run as start-up commands.
  explicit Application(const std::vector<std::string>& arguments);
  ~Application() override;

  void Run();
  void WaitForInput();
  void ParseNextLine();
  void ExecuteNextCommand();
  void RunSearch(const SearchRequest& request, const UserBoard& board);

  // What the search sees of the program: polled a few times a second, its reports go to the
  // protocol, and its result to the game (search_finished.cpp).
  void PollInput() override;
  void ReportIterationStart(int iteration) override;
  void ReportNewBestLine(const SerialSearch& search) override;
  void ReportNewBestMoveCandidate(const std::string& move_text) override;
  void ReportSearchInstability() override;
  void ReportSearchFinished(const SerialSearch& search) override;
  void SearchFinished(bool discard_result) override;

  GameState& Game() { return *game; }

 private:
  void ParseStartupCommands(const std::vector<std::string>& arguments);
  void ExecuteStartupLine(const std::string& name, const std::string& line);
  void RunRequestedSearches(SearchRequest request, UserBoard board);
  void WriteSearchHeader(const SearchRequest& request, const UserBoard& board) const;
  void WaitInAnalyzeOnFinishedGame();

  std::deque<std::unique_ptr<BraskInterfaces::Command>> commands;
  std::deque<std::string> input_lines;
  std::unique_ptr<GameState> game;
  // A command that started a search and comes back, unfinished, when the search has ended (hint).
  std::unique_ptr<BraskInterfaces::Command> waiting_for_search;
};
