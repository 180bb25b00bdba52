#include "shell/console_protocol.h"

#include <cstdlib>

#include "chess/basic.h"
#include "chess/edit_board.h"
#include "chess/pgn_info.h"
#include "chess/user_board.h"
#include "search/search_serial.h"
#include "shell/game_state.h"
#include "shell/player.h"
#include "shell/search_statistics.h"
#include "shell/tee_stream.h"

namespace BraskInterfaces {

namespace {
void Say(const std::string& text) {
  Output << text;
  Output.Flush();
}

// Writes to one side only, giving the switch back its former value.
void ToTerminalOnly(const std::string& text) {
  const bool log = Output.SetLog(false);
  Output << text;
  Output.SetLog(log);
  Output.Flush();
}
}  // namespace

void ConsoleProtocol::Initialize() {
  Greeting();
  Say("\n");
}

void ConsoleProtocol::SendHint(const std::string& text) {
  if (text.empty()) Say("Hint request could not be responded, because no legal move was found\n");
  else Say("Brask suggests " + text + "\n");
}

void ConsoleProtocol::SendMove(const std::string& text) { Say("Brask played: " + text + "\n"); }

void ConsoleProtocol::SendGameResult(std::uint32_t result, std::uint32_t reason, EngineMode) {
  Say("game over: " + std::string(UserBoard::ResultText(result)) + " (" +
      std::string(UserBoard::ReasonText(result, reason)) + ")\n");
}

void ConsoleProtocol::ReportPredictedMoveMade(const std::string& text) {
  Say("Predicted move made (" + text + ")\n");
}

void ConsoleProtocol::ReportCommandIgnored(const std::string& text) {
  Say("Command ignored (" + text + ")\n");
}

void ConsoleProtocol::ReportEditModeAborted() { Say("Edit mode aborted\n"); }

void ConsoleProtocol::ShowPrompt(const GameState& game) {
  ToTerminalOnly(" \r");
  const UserBoard& board = game.user_board;
  const int move_number = (int(board.moves.size()) + board.start_ply) / 2 + 1;
  Output << (game.SideOnMove() == WHITE ? "White" : "Black") << " " << std::int32_t(move_number)
         << "> ";
  Output.Flush();
}

void ConsoleProtocol::ReportEmptyLine() { Say("OK.\n"); }

void ConsoleProtocol::SendSearchStatus(const SerialSearch* search) {
  if (!search) ReportCommandIgnored("no search running");
  else BasicProtocol::SendSearchStatus(search);
}

void ConsoleProtocol::ReportNewBestMoveCandidate(const std::string& text) {
  if (post) ToTerminalOnly("!? " + text + " ");
  Output.ReportLogOnly("New move found: " + text + "\n");
}

void ConsoleProtocol::ReportSearchInstability() { Say("#warning: Search instability found!\n"); }

void ConsoleProtocol::ReportSearchFinished(const SerialSearch& search) {
  WriteSearchStatistics(search);
  Output.Flush();
}

void ConsoleProtocol::AcceptDraw() { Say("Brask accepts draw offer\n"); }

void ConsoleProtocol::Resign() { Say("Congratulations! Brask resigns.\n"); }

void ConsoleProtocol::OfferDraw() { Say("Brask offers draw. (Note: type \"draw\" to accept)\n"); }

void ConsoleProtocol::DisplayPositionAfterChange(const GameState& game) {
  game.user_board.Display(false);
}

void ConsoleProtocol::DisplayEditBoard(EditBoard& edit_board) { edit_board.Display(true); }

void ConsoleProtocol::DisplayGameTags(const PGNInfo& tags) { DisplayInfo(tags); }

void ConsoleProtocol::SendWarning(const std::string& text) { Say(text + "\n"); }

void ConsoleProtocol::ShowEditPrompt(const EditBoard&) { Say("edit mode> "); }

void ConsoleProtocol::ShowThinkingLine(const SerialSearch& search) {
  ToTerminalOnly("\r");
  std::string line = "Depth: " + std::to_string(search.depth) + ". ";
  for (const BestLineMove& move : search.best_line) line += move.text + " ";
  line += "(" + ConsoleScoreText(search.score) + ")\n";
  if (search.nodes >= 100001) line += std::to_string(search.nodes / 1000) + " knodes searched\n";
  Output << line;
}

void ConsoleProtocol::ShowIterationLine(int iteration) {
  Output << "Depth: " << std::int32_t(iteration) << ".";
  const bool terminal = Output.SetTerminal(false);
  Output << " (" << NOT_SENT_TO_XBOARD << ")\n";
  Output.SetTerminal(terminal);
}

// The greeting is chosen by the C library's generator, which nobody seeds.
void ConsoleProtocol::Greeting() {
  static constexpr const char* greetings[] = {"Hallo",   "Guten Tag",        "Welcome",
                                              "Brask welcomes you", "Brask ist bereit",
                                              "Ave und beim Jupiter"};
  std::string text = greetings[std::rand() % 6];
  if (Player::default_name != "Incognito") text += ", " + Player::default_name;
  Output << text << "!";
  Output.Flush();
}

std::string ConsoleScoreText(std::int32_t score) {
  const std::int32_t size = score < 0 ? -score : score;
  if (size <= MATE_THRESHOLD + 1) return std::to_string(score);
  const int plies = MATE - size;
  const std::string moves = std::to_string((plies - 1) / 2 + 1);
  return score < 0 ? "-#" + moves : "#" + moves;
}

}  // namespace BraskInterfaces
