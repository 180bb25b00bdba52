// The protocols of graphical front ends: terse machine lines on standard output, everything meant
// for people in the log. The front end decides the end of a game; analysis may go on after it.
#pragma once

#include "shell/basic_protocol.h"

namespace BraskInterfaces {

class BasicXBoardProtocol : public BasicProtocol {
 public:
  BasicXBoardProtocol() : BasicProtocol(false) {}

  bool DecidesGameEndItself() const override { return false; }
  bool KeepsAnalyzingAfterGameEnd() const override { return true; }
  void SendHint(const std::string& text) override;
  void SendMove(const std::string& text) override;
  void SendGameResult(std::uint32_t result, std::uint32_t reason, EngineMode mode) override;
  void ReportPredictedMoveMade(const std::string& text) override;
  void ReportCommandIgnored(const std::string& text) override;
  void ReportEditModeAborted() override {}
  void ShowPrompt(const GameState&) override {}
  void ReportEmptyLine() override {}
  void AcceptDraw() override;
  void OfferDraw() override;
  void Resign() override;
  void DisplayPositionAfterChange(const GameState& game) override;
  void DisplayEditBoard(EditBoard& edit_board) override;
  void DisplayGameTags(const PGNInfo& tags) override;
  void SendWarning(const std::string& text) override;
  void ShowEditPrompt(const EditBoard&) override {}
  void ShowIterationLine(int) override {}
  void ShowThinkingLine(const SerialSearch& search) override;
};

class XBoardProtocol_1 : public BasicXBoardProtocol {
 public:
  void Initialize() override;
};

class XBoardProtocol_2 : public XBoardProtocol_1 {
 public:
  void Initialize() override;
};

// An XBoardProtocol_1 in all behaviour, under its own name.
class XBoardFritzAdapter : public XBoardProtocol_1 {};

// The feature lines of protocol 2, "done=1" last.
std::string FeatureLines(const std::string& quoted_engine_name);

}  // namespace BraskInterfaces
