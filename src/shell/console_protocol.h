// The protocol for a person at a terminal: prompts and sentences. The engine decides itself when a
// game has ended by resignation or agreement, and does not analyse beyond the end of a game.
#pragma once

#include "shell/basic_protocol.h"

namespace BraskInterfaces {

class ConsoleProtocol : public BasicProtocol {
 public:
  ConsoleProtocol() : BasicProtocol(true) {}

  bool DecidesGameEndItself() const override { return true; }
  bool KeepsAnalyzingAfterGameEnd() const override { return false; }
  void Initialize() override;
  void SendHint(const std::string& text) override;
  void SendMove(const std::string& text) override;
  void SendGameResult(std::uint32_t result, std::uint32_t reason, EngineMode mode) override;
  void ReportPredictedMoveMade(const std::string& text) override;
  void ReportCommandIgnored(const std::string& text) override;
  void ReportEditModeAborted() override;
  void ShowPrompt(const GameState& game) override;
  void ReportEmptyLine() override;
  void SendSearchStatus(const SerialSearch* search) override;
  void ReportNewBestMoveCandidate(const std::string& text) override;
  void ReportSearchInstability() override;
  void ReportSearchFinished(const SerialSearch& search) override;
  void AcceptDraw() override;
  void Resign() override;
  void OfferDraw() override;
  void DisplayPositionAfterChange(const GameState& game) override;
  void DisplayEditBoard(EditBoard& edit_board) override;
  void DisplayGameTags(const PGNInfo& tags) override;
  void SendWarning(const std::string& text) override;
  void ShowEditPrompt(const EditBoard& edit_board) override;
  void ShowThinkingLine(const SerialSearch& search) override;
  void ShowIterationLine(int iteration) override;
  void Greeting() override;
};

// A score as the console shows it: centipawns, or "#n" / "-#n" for mates in n moves.
std::string ConsoleScoreText(std::int32_t score);

}  // namespace BraskInterfaces
