#include "shell/application.h"

#include <sstream>

#include "search/search_board.h"
#include "shell/basic_protocol.h"
#include "shell/console_protocol.h"
#include "shell/control_flow.h"
#include "shell/error_command.h"
#include "shell/os_dependent.h"
#include "shell/tee_stream.h"

using BraskInterfaces::Command;

Application::Application(const std::vector<std::string>& arguments)
    : game(std::make_unique<GameState>(std::make_unique<BraskInterfaces::ConsoleProtocol>())) {
  ParseStartupCommands(arguments);
}

Application::~Application() = default;

void Application::Run() {
  for (;;) {
    try {
      WaitForInput();
      ParseNextLine();
      ExecuteNextCommand();
    } catch (const ErrorCommand& error) {
      game->Protocol().SendError(error.what());
    } catch (const quit_command_received_exception&) {
      return;
    } catch (const search_request_received_exception& request) {
      if (!commands.empty() && !commands.front()->finished) {
        waiting_for_search = std::move(commands.front());
        commands.pop_front();
      }
      try {
        RunRequestedSearches(request.request, request.board);
      } catch (const quit_command_received_exception&) {
        return;
      }
      if (waiting_for_search) commands.push_front(std::move(waiting_for_search));
    } catch (const search_aborted_exception&) {
      // Only a running search may be aborted; should one escape, the engine stays usable.
      game->search_state = SearchState::none;
    }
  }
}

// A search may end by requesting the next one (pondering after the engine's move).
void Application::RunRequestedSearches(SearchRequest request, UserBoard board) {
  for (;;) {
    try {
      RunSearch(request, board);
      return;
    } catch (const search_request_received_exception& next) {
      request = next.request;
      board = next.board;
    } catch (const ErrorCommand& error) {
      game->Protocol().SendError(error.what());
      return;
    } catch (const search_aborted_exception&) {
      game->search_state = SearchState::none;
      return;
    }
  }
}

void Application::WaitForInput() {
  if (!input_lines.empty() || !commands.empty()) return;
  game->Protocol().ShowPrompt(*game);
  input_lines.push_back(ReadLine());
}

void Application::ParseNextLine() {
  if (!commands.empty() || input_lines.empty()) return;
  const std::string line = std::move(input_lines.front());
  input_lines.pop_front();
  try {
    commands.push_back(game->Protocol().ParseLine(line));
  } catch (const ErrorCommand& error) {
    game->Protocol().SendError(error.what());
  }
}

// A command through which a control-flow exception passes stays at the head, unfinished, and is
// executed again from the start.
void Application::ExecuteNextCommand() {
  if (commands.empty()) return;
  Command& command = *commands.front();
  if (command.finished) {
    commands.pop_front();
    return;
  }
  try {
    command.Execute(*game);
  } catch (const ErrorCommand& error) {
    game->Protocol().SendError(error.what());
    commands.pop_front();
  }
}

void Application::PollInput() {
  game->Protocol().WatchSearch(*game);
  for (;;) {
    if (input_lines.empty() && commands.empty()) {
      if (!InputAvailable()) return;
      input_lines.push_back(ReadLine());
      continue;
    }
    ParseNextLine();
    ExecuteNextCommand();
  }
}

void Application::RunSearch(const SearchRequest& request, const UserBoard& board) {
  if (!board.current.result || request.type != SearchType::analyze) {
    WriteSearchHeader(request, board);
    game->search_state = StateOf(request.type);
    game->search.Start(request, board, *this);
    return;
  }
  WaitInAnalyzeOnFinishedGame();
}

// Analyze on a finished game has no legal search: the engine waits for a command that ends it.
void Application::WaitInAnalyzeOnFinishedGame() {
  game->search_state = SearchState::analyze;
  Output.ReportLogOnly("Entering analyze compatibility mode");
  try {
    for (;;) {
      SleepMs(125);
      PollInput();
    }
  } catch (const search_aborted_exception&) {
    SearchFinished(true);
  }
}

void Application::WriteSearchHeader(const SearchRequest& request, const UserBoard& board) const {
  const bool terminal = Output.SetTerminal(false);
  Output << "starting search (" << NOT_SENT_TO_XBOARD << ")\n";
  board.Display(true);
  Output << "FEN: " << board.GetFEN() << "\n"
         << "search settings:\n"
         << "type=" << SearchTypeWord(request.type) << "\n"
         << "max_depth=" << request.max_depth << "\n"
         << "max_time_limit=" << request.max_time_limit << "\n"
         << "variable_time_limit=" << request.variable_time_limit << "\n(" << NOT_SENT_TO_XBOARD
         << ")\n";
  Output.SetTerminal(terminal);
  Output.Flush();
}

void Application::ReportIterationStart(int iteration) {
  game->Protocol().ReportIterationStart(iteration);
}

void Application::ReportNewBestLine(const SerialSearch& search) {
  game->Protocol().ReportNewBestLine(search);
}

void Application::ReportNewBestMoveCandidate(const std::string& move_text) {
  game->Protocol().ReportNewBestMoveCandidate(move_text);
}

void Application::ReportSearchInstability() { game->Protocol().ReportSearchInstability(); }

void Application::ReportSearchFinished(const SerialSearch& search) {
  game->Protocol().ReportSearchFinished(search);
  const SearchBoard& board = *search.board;
  if (board.bitbase_probes.asked == 0 && board.tablebase_probes.asked == 0) return;
  std::ostringstream counts;
  counts << "endgame probes: bitbases=" << board.bitbase_probes.asked
         << " (found " << board.bitbase_probes.found << "), tablebases="
         << board.tablebase_probes.asked << " (found " << board.tablebase_probes.found << ")";
  Output.ReportLogOnly(counts.str());
}
