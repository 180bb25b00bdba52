#include "shell/basic_protocol.h"

#include <iostream>

#include "chess/tokenizer.h"
#include "search/search_serial.h"
#include "shell/command.h"
#include "shell/error_command.h"
#include "shell/game_state.h"
#include "shell/help_screens.h"
#include "shell/os_dependent.h"
#include "shell/search_statistics.h"
#include "shell/tee_stream.h"
#include "shell/version.h"
#include "evaluation/personalities.h"

namespace BraskInterfaces {

void BasicProtocol::CopyStateFrom(const BasicProtocol& other) {
  personality = other.personality;
  id = other.id;
}

void BasicProtocol::SendError(const std::string& text) {
  Output << text << "\n";
  Output.Flush();
}

void BasicProtocol::SendSearchStatus(const SerialSearch* search) {
  if (!search) {
    Output << "stat01: 0 0 0 0 0\n";
  } else {
    Output << "stat01: " << std::int64_t(ElapsedMsSince(search->start_time) / 10) << " "
           << search->nodes << " " << std::int32_t(search->depth) << " "
           << std::int32_t(search->moves_left - 1) << " " << std::int32_t(search->moves_total)
           << " " << search->current_move_text << "\n";
  }
  Output.Flush();
}

// Thinking output reaches the terminal only with post; the log always gets it.
void BasicProtocol::ReportNewBestLine(const SerialSearch& search) {
  const bool terminal = Output.SetTerminal(post);
  ShowThinkingLine(search);
  if (!post) Output << " (" << NOT_SENT_TO_XBOARD << ")\n";
  Output.SetTerminal(terminal);
  Output.Flush();
}

void BasicProtocol::ReportIterationStart(int iteration) {
  const bool terminal = Output.SetTerminal(post);
  ShowIterationLine(iteration);
  Output.SetTerminal(terminal);
  Output.Flush();
}

void BasicProtocol::ReportNewBestMoveCandidate(const std::string& text) {
  Output.ReportLogOnly("New pv-move candidate found: " + text);
}

void BasicProtocol::ReportSearchInstability() { Output.ReportLogOnly("Search instability found!"); }

void BasicProtocol::ReportSearchFinished(const SerialSearch& search) {
  const bool terminal = Output.SetTerminal(false);
  WriteSearchStatistics(search);
  Output.SetTerminal(terminal);
  Output.Flush();
}

void BasicProtocol::RejectDraw(bool opponent_is_computer) {
  if (!opponent_is_computer)
    SendWarning(EngineName() + " rejects the draw offer and wants to play on.");
}

void BasicProtocol::ConsiderDrawOffer(bool opponent_is_computer) {
  if (!opponent_is_computer)
    SendWarning(EngineName() +
                " is thinking about the draw offer and will decide after the next move.");
}

void BasicProtocol::ShowHelp() { BraskHelpScreen::CommandHelpScreen().Show(); }
void BasicProtocol::ShowStartupHelp() { BraskHelpScreen::StartupHelpScreen().Show(); }
void BasicProtocol::ShowEditHelp() { BraskHelpScreen::EditHelpScreen().Show(); }

// Straight to standard output: the version is not part of the log.
void BasicProtocol::ShowVersion() {
  std::cout << VersionText();
  std::cout.flush();
}

void BasicProtocol::DisplayBoard(const GameState& game, bool with_details) {
  game.user_board.Display(with_details);
}

void BasicProtocol::DisplayPersonality() {
  Output << "Personality: " << PersonalityName(personality) << " (" << std::int32_t(personality)
         << ")\n";
  Output.Flush();
}

void BasicProtocol::DisplayHashtableStatus(bool) {}

std::string BasicProtocol::EngineName() const {
  if (id.size() >= 3 && id.starts_with("##")) return id.substr(2);
  return "Brask";
}

std::string BasicProtocol::QuotedEngineName() const {
  if (id.size() >= 3 && id.starts_with("##")) return "\"" + id.substr(2) + "\"";
  std::string name = "\"";
  if (personality != 0) name += PersonalityName(personality) + " ";
  name += "Brask";
  if (!id.empty()) name += " " + id;
  return name + "\"";
}

std::unique_ptr<Command> BasicProtocol::ParseLine(const std::string& line) {
  std::vector<std::string> tokens;
  try {
    tokens = BraskUtils::Tokenize(line, " \t\r\n", "\"'", "\"'", "");
  } catch (const BraskUtils::tokenize_exception&) {
    throw ErrorCommand(ErrorCommand::error, "could not tokenize the input string", line);
  }
  if (tokens.empty()) {
    ReportEmptyLine();
    return std::make_unique<Command_DoNothing>(line);
  }
  return Parse(tokens, line);
}

}  // namespace BraskInterfaces
