#include "shell/uci_commands.h"

#include "search/hash.h"
#include "shell/control_flow.h"
#include "shell/error_command.h"
#include "shell/game_state.h"
#include "shell/tee_stream.h"
#include "shell/uci_options.h"
#include "shell/uci_position.h"
#include "shell/uci_protocol.h"

namespace BraskInterfaces {

namespace {

UciProtocol& Uci(const Command& command, GameState& game) {
  auto* protocol = dynamic_cast<UciProtocol*>(&game.Protocol());
  if (protocol == nullptr)
    throw ErrorCommand(ErrorCommand::error, "command not legal now", command.line);
  return *protocol;
}

// A command that replaces the search stops it as "stop" would: the front end gets its best move
// before anything else happens.
void StopSearch(UciProtocol& protocol, GameState& game) {
  if (!game.SearchRuns()) return;
  protocol.ReleaseResult();
  game.AbortSearch(false);
}

}  // namespace

void Command_Uci::Execute(GameState& game) {
  game.AbortSearch(true);
  Command_InstallNewProtocol::Execute(game);
}

std::unique_ptr<BasicProtocol> Command_Uci::CreateProtocol() const {
  return std::make_unique<UciProtocol>();
}

void Command_IsReady::Execute(GameState&) {
  Output << "readyok\n";
  Output.Flush();
  finished = true;
}

void Command_UciNewGame::Execute(GameState& game) {
  StopSearch(Uci(*this, game), game);
  game.user_board.NewGame();
  game.draw_handler.Reset();
  game.ponder_move = PONDER_MOVE_UNKNOWN;
  // What was learnt in one game must not decide the next one.
  TRANSPOSITION_TABLE.Clear();
  PAWN_HASH_TABLE.Clear();
  EVALUATION_HASH_TABLE.Clear();
  finished = true;
}

void Command_Position::Execute(GameState& game) {
  UciProtocol& protocol = Uci(*this, game);
  StopSearch(protocol, game);
  game.user_board = board;
  game.ponder_move = PONDER_MOVE_UNKNOWN;
  protocol.DisplayPositionAfterChange(game);
  finished = true;
}

void Command_UciGo::Execute(GameState& game) {
  UciProtocol& protocol = Uci(*this, game);
  if (!checked) {
    board = game.user_board;
    IgnoreDrawByRule(board);
    for (const std::string& text : go.search_moves) {
      Move move = INVALID;
      if (board.ParseMove(text, move) != PARSE_OK)
        throw ErrorCommand(ErrorCommand::illegal_move, "", text);
      search_moves.push_back(move);
    }
    request = UciSearchRequest(go, int(board.current.side_on_move));
    checked = true;
  }
  StopSearch(protocol, game);
  protocol.BeginSearch(go, search_moves, game.search);
  finished = true;
  throw search_request_received_exception(request, board);
}

void Command_Stop::Execute(GameState& game) {
  finished = true;
  Uci(*this, game).ReleaseResult();
  game.AbortSearch(false);
}

void Command_PonderHit::Execute(GameState& game) {
  finished = true;
  if (game.search_state == SearchState::pondering) {
    game.search.PonderHit();
    game.search_state = SearchState::normal;
    game.Protocol().ReportPredictedMoveMade(line);
  }
  Uci(*this, game).ReleaseResult();
}

void Command_SetOption::Execute(GameState& game) {
  if (game.SearchRuns()) Fail("command not legal now");
  SetUciOption(game, Uci(*this, game), name, value, line);
  finished = true;
}

}  // namespace BraskInterfaces
