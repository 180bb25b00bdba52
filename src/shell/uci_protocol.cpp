#include "shell/uci_protocol.h"

#include <algorithm>
#include <csignal>

#include "search/hash.h"
#include "search/search_serial.h"
#include "shell/game_state.h"
#include "shell/tee_stream.h"
#include "shell/uci_info.h"
#include "shell/uci_options.h"
#include "shell/version.h"

namespace BraskInterfaces {

namespace {

// Progress lines (the move being searched) come at most this often.
constexpr std::int64_t PROGRESS_INTERVAL_MS = 1000;
constexpr std::uint64_t PERMILLE = 1000;
constexpr const char* NO_MOVE = "0000";

void Say(const std::string& text) {
  Output << text;
  Output.Flush();
}

void SayToLog(const std::string& text) { Output.ReportLogOnly(text); }

std::uint32_t HashfullPermille() {
  const std::uint64_t total = TRANSPOSITION_TABLE.TotalSlots();
  if (total == 0) return 0;
  return std::uint32_t((total - TRANSPOSITION_TABLE.FreeSlots()) * PERMILLE / total);
}

// The root moves of the first iteration shrink to those the front end allows; moves it names
// that are not root moves are simply not searched.
void RestrictRootMoves(SerialSearch& search, const std::vector<Move>& allowed) {
  auto& moves = search.root_moves;
  const auto kept = std::stable_partition(moves.begin(), moves.end(), [&](const auto& root) {
    return std::find(allowed.begin(), allowed.end(), root->move) != allowed.end();
  });
  if (kept == moves.begin()) return;
  moves.erase(kept, moves.end());
  search.moves_total = search.moves_left = std::int16_t(moves.size());
  search.best_move = moves.front()->move;
}

}  // namespace

// A console prompt may stand unfinished on the line; front ends read whole lines.
void UciProtocol::Initialize() {
  const bool log = Output.SetLog(false);
  Say("\n");
  Output.SetLog(log);
  // Front ends interrupt their engines' process groups; this engine is stopped by "stop".
  std::signal(SIGINT, SIG_IGN);
  SendIdentification();
}

void UciProtocol::SendIdentification() const {
  std::string text =
      std::string("id name Brask ") + VERSION_NUMBER + "\nid author " + AUTHORS + "\n";
  for (const UciOption& option : UciOptions()) text += UciOptionLine(option) + "\n";
  Say(text + "uciok\n");
}

void UciProtocol::SendMove(const std::string& text) { SayToLog("Move " + text); }

void UciProtocol::SendGameResult(std::uint32_t result, std::uint32_t reason, EngineMode) {
  SayToLog(std::string(UserBoard::ResultText(result)) + " {" +
           std::string(UserBoard::ReasonText(result, reason)) + "}");
}

void UciProtocol::ReportPredictedMoveMade(const std::string& text) {
  SayToLog("Predicted move made (" + text + ")");
}

void UciProtocol::ReportCommandIgnored(const std::string& text) {
  Say("info string " + text + "\n");
}

void UciProtocol::SendError(const std::string& text) { SendWarning(text); }

// One info line per message: newlines become blanks.
void UciProtocol::SendWarning(const std::string& text) {
  std::string line = text;
  std::replace(line.begin(), line.end(), '\n', ' ');
  Say("info string " + line + "\n");
}

void UciProtocol::DisplayPositionAfterChange(const GameState& game) {
  const bool terminal = Output.SetTerminal(false);
  game.user_board.Display(true);
  Output.SetTerminal(terminal);
  Output.Flush();
}

void UciProtocol::ReportIterationStart(int iteration) {
  if (iteration == 1 && owes_best_move && !search_moves.empty())
    RestrictRootMoves(*search, search_moves);
  BasicProtocol::ReportIterationStart(iteration);
}

// The candidate has beaten the best score once; its own score is not known yet.
void UciProtocol::ReportNewBestMoveCandidate(const std::string& text) {
  BasicProtocol::ReportNewBestMoveCandidate(text);
  if (!owes_best_move || search->root_moves.empty()) return;
  Say(UciPvInfo(*search, search->score, "lowerbound", search->root_moves[0]->principal_variation));
}

void UciProtocol::ShowThinkingLine(const SerialSearch& search) {
  std::vector<Move> line;
  for (const BestLineMove& move : search.best_line) line.push_back(move.move);
  Output << UciPvInfo(search, search.score, "", line);
}

void UciProtocol::BeginSearch(const UciGoParameters& go, std::vector<Move> moves,
                              SerialSearch& running) {
  owes_best_move = true;
  holds_result = go.ponder || go.infinite;
  held_best_move.clear();
  node_limit = go.nodes;
  search_moves = std::move(moves);
  search = &running;
  Now(last_progress);
}

// The engine never plays on its own board under UCI: the result goes to the front end.
bool UciProtocol::TakeSearchResult(GameState& game, bool discard_result) {
  if (!owes_best_move) return true;
  owes_best_move = false;
  const SerialSearch& finished = game.search;
  std::string line = std::string("bestmove ") + NO_MOVE;
  if (!discard_result && finished.best_move != INVALID) {
    std::vector<Move> moves{finished.best_move};
    if (finished.best_line.size() >= 2 && finished.best_line[0].move == finished.best_move)
      moves.push_back(finished.best_line[1].move);
    const std::vector<std::string> texts = UciLineText(finished.game, moves);
    if (!texts.empty()) line = "bestmove " + texts[0];
    if (texts.size() >= 2) line += " ponder " + texts[1];
  }
  if (holds_result) {
    held_best_move = line;
  } else {
    SendBestMove(line);
  }
  return true;
}

void UciProtocol::ReleaseResult() {
  holds_result = false;
  if (held_best_move.empty()) return;
  SendBestMove(held_best_move);
  held_best_move.clear();
}

void UciProtocol::SendBestMove(const std::string& line) { Say(line + "\n"); }

void UciProtocol::WatchSearch(GameState& game) {
  if (!owes_best_move || !game.SearchRuns() || !game.search.running) return;
  if (ElapsedMsSince(last_progress) >= PROGRESS_INTERVAL_MS) {
    Say(UciProgressInfo(game.search, HashfullPermille()));
    Now(last_progress);
  }
  if (node_limit != 0 && game.search.nodes >= node_limit) game.AbortSearch(false);
}

}  // namespace BraskInterfaces
