// The root of the protocols. The command language is one for all protocols; they differ in how
// they answer, which their virtual operations tell.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "shell/engine_states.h"

class EditBoard;
class GameState;
class SerialSearch;
struct PGNInfo;

namespace BraskInterfaces {

class Command;

class BasicProtocol {
 public:
  explicit BasicProtocol(bool post) : post(post) {}
  virtual ~BasicProtocol() = default;

  virtual void CopyStateFrom(const BasicProtocol& other);
  virtual bool DecidesGameEndItself() const = 0;
  virtual bool KeepsAnalyzingAfterGameEnd() const = 0;
  virtual void Initialize() {}
  virtual void SendHint(const std::string& text) = 0;
  virtual void SendMove(const std::string& text) = 0;
  virtual void SendGameResult(std::uint32_t result, std::uint32_t reason, EngineMode mode) = 0;
  virtual void ReportPredictedMoveMade(const std::string& text) = 0;
  virtual void ReportCommandIgnored(const std::string& text) = 0;
  virtual void ReportEditModeAborted() = 0;
  virtual void SendError(const std::string& text);
  virtual void ShowPrompt(const GameState& game) = 0;
  virtual void ReportEmptyLine() = 0;
  virtual void SendSearchStatus(const SerialSearch* search);
  virtual void ReportNewBestLine(const SerialSearch& search);
  virtual void ReportIterationStart(int iteration);
  virtual void ReportNewBestMoveCandidate(const std::string& text);
  virtual void ReportSearchInstability();
  virtual void ReportSearchFinished(const SerialSearch& search);
  virtual void AcceptDraw() = 0;
  virtual void RejectDraw(bool opponent_is_computer);
  virtual void Resign() = 0;
  virtual void OfferDraw() = 0;
  virtual void ConsiderDrawOffer(bool opponent_is_computer);
  virtual void ShowHelp();
  virtual void ShowStartupHelp();
  virtual void ShowEditHelp();
  virtual void ShowVersion();
  virtual void DisplayBoard(const GameState& game, bool with_details);
  virtual void DisplayPersonality();
  virtual void DisplayHashtableStatus(bool detailed);
  virtual void DisplayPositionAfterChange(const GameState& game) = 0;
  virtual void DisplayEditBoard(EditBoard& edit_board) = 0;
  virtual void DisplayGameTags(const PGNInfo& tags) = 0;
  virtual void SendWarning(const std::string& text) = 0;
  virtual std::string QuotedEngineName() const;
  virtual std::string EngineName() const;
  virtual std::unique_ptr<Command> Parse(const std::vector<std::string>& tokens,
                                         const std::string& line);
  virtual void ShowEditPrompt(const EditBoard& edit_board) = 0;
  virtual void ShowThinkingLine(const SerialSearch& search) = 0;
  virtual void ShowIterationLine(int iteration) = 0;
  virtual void Greeting() {}
  // Where the front end owns the game, a search's result goes to it instead of being played: true
  // when the protocol has taken it.
  virtual bool TakeSearchResult(GameState&, bool /*discard_result*/) { return false; }
  // At every poll of a running search, before the input is read: limits the protocol watches.
  virtual void WatchSearch(GameState&) {}

  // Splits the line into tokens and hands them to Parse.
  std::unique_ptr<Command> ParseLine(const std::string& line);

  bool post;
  std::int16_t personality = 0;
  std::string id;
};

}  // namespace BraskInterfaces
