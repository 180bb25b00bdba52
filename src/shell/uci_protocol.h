// The protocol of UCI front ends. The front end owns the game: it sends the position before
// every search and receives the best move, which the engine does not play on its own board.
// Pondering and infinite analysis end only when the front end says so. Answers are UCI lines;
// everything else goes to the log, and errors become "info string" lines.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "chess/basic.h"
#include "shell/basic_protocol.h"
#include "shell/time_point.h"
#include "shell/uci_go.h"

namespace BraskInterfaces {

class UciProtocol : public BasicProtocol {
 public:
  static constexpr std::int64_t DEFAULT_NALIMOV_CACHE_MIB = 4;

  UciProtocol() : BasicProtocol(true) {}

  bool DecidesGameEndItself() const override { return false; }
  bool KeepsAnalyzingAfterGameEnd() const override { return true; }
  void Initialize() override;
  void SendHint(const std::string&) override {}
  void SendMove(const std::string& text) override;
  void SendGameResult(std::uint32_t result, std::uint32_t reason, EngineMode mode) override;
  void ReportPredictedMoveMade(const std::string& text) override;
  void ReportCommandIgnored(const std::string& text) override;
  void ReportEditModeAborted() override {}
  void SendError(const std::string& text) override;
  void ShowPrompt(const GameState&) override {}
  void ReportEmptyLine() override {}
  void ReportIterationStart(int iteration) override;
  void ReportNewBestMoveCandidate(const std::string& text) override;
  void AcceptDraw() override {}
  void Resign() override {}
  void OfferDraw() override {}
  void DisplayPositionAfterChange(const GameState& game) override;
  void DisplayEditBoard(EditBoard&) override {}
  void DisplayGameTags(const PGNInfo&) override {}
  void SendWarning(const std::string& text) override;
  std::unique_ptr<Command> Parse(const std::vector<std::string>& tokens,
                                 const std::string& line) override;
  void ShowEditPrompt(const EditBoard&) override {}
  void ShowThinkingLine(const SerialSearch& search) override;
  void ShowIterationLine(int) override {}
  bool TakeSearchResult(GameState& game, bool discard_result) override;
  void WatchSearch(GameState& game) override;

  // A search of a "go" starts: what it owes the front end and the limits the protocol watches.
  void BeginSearch(const UciGoParameters& go, std::vector<Move> search_moves, SerialSearch& search);
  // "stop" or "ponderhit": a result held back for the front end goes out now; a search still
  // running will send it when it ends.
  void ReleaseResult();
  bool HoldsResult() const { return holds_result; }

  // The id lines, the options and "uciok".
  void SendIdentification() const;

  // Tablebases of the options, loaded when both are known.
  std::string nalimov_path;
  std::int64_t nalimov_cache_mib = DEFAULT_NALIMOV_CACHE_MIB;

 private:
  void SendBestMove(const std::string& line);

  // The running "go" wants one "bestmove" line.
  bool owes_best_move = false;
  // Pondering and infinite searches keep their result until "stop" or "ponderhit".
  bool holds_result = false;
  std::string held_best_move;
  std::uint64_t node_limit = 0;
  std::vector<Move> search_moves;
  // Set by BeginSearch, valid while owes_best_move.
  SerialSearch* search = nullptr;
  TimePoint last_progress{};
};

}  // namespace BraskInterfaces
