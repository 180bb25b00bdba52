// The top of the engine: the queues of input lines and commands, the game, and the one loop that
// runs them, from the main loop and from inside the search alike.
#pragma once

#include <deque>
#include <memory>
#include <string>
#include <vector>

#include "shell/command.h"
#include "shell/game_state.h"

class Application {
 public:
  // Arguments: the program's arguments without the empty ones; they run as start-up commands.
  explicit Application(const std::vector<std::string>& arguments);
  ~Application();

  void Run();
  void WaitForInput();
  void ParseNextLine();
  void ExecuteNextCommand();
  // Called by the search a few times a second: runs whatever input has arrived, without blocking.
  void PollInput();
  void RunSearch(const SearchRequest& request, const UserBoard& board);
  void SearchFinished(bool discard_result);

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
