#include "shell/xboard_protocol.h"

#include <csignal>

#include "chess/edit_board.h"
#include "chess/pgn_info.h"
#include "search/search_serial.h"
#include "shell/commands_protocol.h"
#include "shell/game_state.h"
#include "shell/os_dependent.h"
#include "shell/tee_stream.h"

namespace BraskInterfaces {

namespace {
void Say(const std::string& text) {
  Output << text;
  Output.Flush();
}

// Runs a writer with the terminal side off, for texts the front end must not see.
template <typename Write>
void ToLogOnly(Write write) {
  const bool terminal = Output.SetTerminal(false);
  write();
  Output.SetTerminal(terminal);
  Output.Flush();
}
}  // namespace

void BasicXBoardProtocol::SendHint(const std::string& text) {
  if (!text.empty()) Say("Hint: " + text + "\n");
}

void BasicXBoardProtocol::SendMove(const std::string& text) { Say("move " + text + "\n"); }

void BasicXBoardProtocol::SendGameResult(std::uint32_t result, std::uint32_t reason,
                                         EngineMode mode) {
  if (mode != EngineMode::one_side && mode != EngineMode::both_sides) return;
  Say(std::string(UserBoard::ResultText(result)) + " {" +
      std::string(UserBoard::ReasonText(result, reason)) + "}\n");
}

void BasicXBoardProtocol::ReportPredictedMoveMade(const std::string& text) {
  Output.ReportLogOnly("Predicted move made (" + text + ")");
}

void BasicXBoardProtocol::ReportCommandIgnored(const std::string& text) {
  Output.ReportLogOnly("Command ignored (" + text + ")");
}

void BasicXBoardProtocol::AcceptDraw() { Say("offer draw\n"); }
void BasicXBoardProtocol::OfferDraw() { Say("offer draw\n"); }
void BasicXBoardProtocol::Resign() { Say("resign\n"); }

void BasicXBoardProtocol::DisplayPositionAfterChange(const GameState& game) {
  ToLogOnly([&] { game.user_board.Display(true); });
}

void BasicXBoardProtocol::DisplayEditBoard(EditBoard& edit_board) {
  ToLogOnly([&] { edit_board.Display(true); });
}

void BasicXBoardProtocol::DisplayGameTags(const PGNInfo& tags) {
  ToLogOnly([&] { DisplayInfo(tags); });
}

// A front end shows one line per message: newlines become tabs.
void BasicXBoardProtocol::SendWarning(const std::string& text) {
  std::string line = text;
  for (char& c : line)
    if (c == '\n') c = '\t';
  Say("telluser " + line + "\n");
}

void BasicXBoardProtocol::ShowThinkingLine(const SerialSearch& search) {
  std::string line = std::to_string(search.depth) + " " + std::to_string(search.score) + " " +
                     std::to_string(ElapsedMsSince(search.start_time) / 10) + " " +
                     std::to_string(search.nodes) + " ";
  for (const BestLineMove& move : search.best_line) line += move.text + " ";
  Output << line << "\n";
}

// Front ends send signals to interrupt engines; this engine polls its input instead. A console
// prompt may still stand unfinished on the line, and front ends read whole lines: end it first.
void XBoardProtocol_1::Initialize() {
  const bool log = Output.SetLog(false);
  Say("\n");
  Output.SetLog(log);
  EnterRawMode();
  std::signal(SIGINT, SIG_IGN);
  std::signal(SIGTERM, SIG_IGN);
}

std::string FeatureLines(const std::string& quoted_engine_name) {
  const std::pair<const char*, std::string> features[] = {
      {"analyze", "1"},  {"colors", "0"},   {"draw", "1"},
      {"ics", "0"},      {"myname", quoted_engine_name},
      {"name", "1"},     {"pause", "0"},    {"ping", "1"},
      {"playother", "1"}, {"resume", "0"},  {"reuse", "1"},
      {"san", "1"},      {"setboard", "1"}, {"sigint", "0"},
      {"sigterm", "0"},  {"time", "0"},     {"usermove", "1"},
      {"variants", "normal"}, {"done", "1"},
  };
  std::string lines;
  for (const auto& [name, value] : features) lines += "feature " + std::string(name) + "=" + value + "\n";
  return lines;
}

void XBoardProtocol_2::Initialize() {
  XBoardProtocol_1::Initialize();
  Say(FeatureLines(QuotedEngineName()));
}

std::unique_ptr<BasicProtocol> Command_Xboard::CreateProtocol() const {
  return std::make_unique<XBoardProtocol_1>();
}

std::unique_ptr<BasicProtocol> Command_Protover2::CreateProtocol() const {
  return std::make_unique<XBoardProtocol_2>();
}

std::unique_ptr<BasicProtocol> Command_Fritz::CreateProtocol() const {
  return std::make_unique<XBoardFritzAdapter>();
}

}  // namespace BraskInterfaces
