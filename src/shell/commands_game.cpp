#include "shell/commands_game.h"

#include <cctype>

#include "shell/basic_protocol.h"
#include "shell/checked_assert.h"
#include "shell/error_command.h"
#include "shell/game_state.h"

namespace BraskInterfaces {

namespace {
void StartClock(GameState& game) { game.time_control.Start(); }

void RequestAnalyzeIfAnalyzing(GameState& game, bool& finished) {
  finished = true;
  if (game.engine_mode == EngineMode::analyze)
    game.RequestSearch(SearchState::analyze, game.user_board);
}
}  // namespace

void Command_New::Execute(GameState& game) {
  game.AbortSearch(true);
  game.user_board.NewGame();
  game.time_control.Reset(WHITE);
  game.draw_handler.Reset();
  game.ponder_move = PONDER_MOVE_UNKNOWN;
  game.st_limit_ms = 0;
  game.sd_limit = 0;
  game.Protocol().DisplayPositionAfterChange(game);
  const bool analyze = game.engine_mode == EngineMode::analyze;
  game.SetPlayers(Player::StandardHuman(), Player::StandardEngine(!analyze), analyze);
  finished = true;
  if (analyze) game.RequestSearch(SearchState::analyze, game.user_board);
}

void Command_Force::Execute(GameState& game) {
  game.AbortSearch(true);
  game.EnterForceMode();
  finished = true;
}

void Command_Go::Execute(GameState& game) {
  if (!checked) {
    if (game.search_state == SearchState::normal || game.search_state == SearchState::analyze)
      Fail("command not legal now");
    checked = true;
  }
  game.AbortSearch(true);
  game.SetPlayers(Player::StandardEngine(true), Player::StandardHuman(), false);
  StartClock(game);
  game.draw_handler.Reset();
  finished = true;
  game.RequestSearch(SearchState::normal, game.user_board);
}

void Command_Playother::Execute(GameState& game) {
  if (!checked) {
    if (game.GameIsOver()) Fail("game over");
    checked = true;
  }
  game.AbortSearch(true);
  game.SetPlayers(Player::StandardHuman(), Player::StandardEngine(true), false);
  StartClock(game);
  game.draw_handler.Reset();
  finished = true;
  if (game.pondering_enabled) game.StartPondering();
}

void Command_SetSide::Execute(GameState& game) {
  if (!checked) {
    must_change = game.SideOnMove() != side;
    if (must_change) {
      try {
        changed = game.user_board.ChangeSide();
      } catch (const UserBoard::invalid_board_after_changing_side&) {
        Fail("cannot change sides");
      }
    }
    checked = true;
  }
  game.AbortSearch(true);
  if (must_change) {
    game.user_board = changed;
    game.ponder_move = PONDER_MOVE_UNKNOWN;
  }
  game.time_control.Stop();
  game.SetPlayers(Player::StandardHuman(), Player::StandardEngine(true), false);
  finished = true;
}

void Command_Analyze::Execute(GameState& game) {
  if (game.GameIsOver() && !game.Protocol().KeepsAnalyzingAfterGameEnd()) {
    game.Protocol().ReportCommandIgnored("game over");
    finished = true;
    return;
  }
  game.AbortSearch(true);
  game.time_control.Stop();
  game.engine_mode = EngineMode::analyze;
  game.white.plays = game.black.plays = false;
  finished = true;
  game.RequestSearch(SearchState::analyze, game.user_board);
}

void Command_Exit::Execute(GameState& game) {
  if (!checked) {
    if (game.search_state != SearchState::analyze) Fail("must be in analyze mode");
    checked = true;
  }
  game.AbortSearch(true);
  game.engine_mode = EngineMode::force;
  finished = true;
}

// The move is made once, on the first execution, in the position it was typed for; later
// executions only settle what happens to the search.
void Command_Move::Execute(GameState& game) {
  if (!checked) CheckAndMake(game);
  GoOn(game);
}

void Command_Move::CheckAndMake(GameState& game) {
  if (game.search_state == SearchState::normal) Fail("it is not your turn now");
  if (game.user_board.ParseMove(text, move) != PARSE_OK)
    throw ErrorCommand(ErrorCommand::illegal_move, "", text);
  expected = game.ponder_move;
  game.MakeUserMove(move);
  game.Protocol().DisplayPositionAfterChange(game);
  if (game.engine_mode == EngineMode::one_side) StartClock(game);
  checked = true;
}

void Command_Move::GoOn(GameState& game) {
  if (game.GameIsOver()) {
    game.AbortSearch(true);
    const GameBoard& board = game.user_board.current;
    game.Protocol().SendGameResult(board.result, board.reason, game.engine_mode);
    game.time_control.Stop();
    if (game.engine_mode == EngineMode::analyze && game.Protocol().KeepsAnalyzingAfterGameEnd()) {
      finished = true;
      game.RequestSearch(SearchState::analyze, game.user_board);
    }
    game.EnterForceMode();
    finished = true;
    return;
  }
  if (game.SearchRuns()) {
    if (game.search_state == SearchState::pondering && move == expected) {
      game.search.PonderHit();
      game.search_state = SearchState::normal;
      game.Protocol().ReportPredictedMoveMade(line);
      finished = true;
      return;
    }
    game.AbortSearch(true);
  }
  finished = true;
  if (game.engine_mode == EngineMode::one_side)
    game.RequestSearch(SearchState::normal, game.user_board);
  if (game.engine_mode == EngineMode::analyze)
    game.RequestSearch(SearchState::analyze, game.user_board);
}

void Command_Undo::Execute(GameState& game) {
  if (!checked) {
    if (game.user_board.moves.empty()) Fail("no move to undo");
    if (count <= 0) Fail("argument out of bounds");
    if (game.engine_mode != EngineMode::force && game.engine_mode != EngineMode::analyze)
      Fail("must be in force mode");
    checked = true;
  }
  game.AbortSearch(true);
  if (count == ALL_MOVES) {
    game.user_board.Rewind();
  } else {
    int remaining = count;
    for (; remaining > 0 && !game.user_board.moves.empty(); --remaining) game.user_board.Undo();
    if (remaining > 0)
      game.Protocol().SendWarning("could not undo " + std::to_string(remaining) +
                                  " move(s), because start position has been reached");
  }
  game.ponder_move = PONDER_MOVE_UNKNOWN;
  game.Protocol().DisplayPositionAfterChange(game);
  RequestAnalyzeIfAnalyzing(game, finished);
}

void Command_Next::Execute(GameState& game) {
  if (!checked) {
    if (game.user_board.next_moves.empty()) Fail("next move buffer is empty");
    if (count <= 0) Fail("argument out of bounds");
    if (game.engine_mode != EngineMode::force && game.engine_mode != EngineMode::analyze)
      Fail("must be in force mode");
    checked = true;
  }
  game.AbortSearch(true);
  if (count == ALL_MOVES) {
    game.user_board.NextAll();
  } else {
    int remaining = count;
    for (; remaining > 0 && !game.user_board.next_moves.empty(); --remaining)
      game.user_board.Next();
    if (remaining > 0)
      game.Protocol().SendWarning(std::to_string(remaining) +
                                  " move(s) could not be made, because next move buffer is empty");
  }
  game.ponder_move = PONDER_MOVE_UNKNOWN;
  game.Protocol().DisplayPositionAfterChange(game);
  RequestAnalyzeIfAnalyzing(game, finished);
}

// Two half-moves go back once, on the first execution; a running search is dropped afterwards.
void Command_Remove::Execute(GameState& game) {
  if (!checked) {
    const bool human_on_move = !game.PlayerOf(game.SideOnMove()).is_computer;
    if (game.engine_mode != EngineMode::force &&
        !(game.engine_mode == EngineMode::one_side && human_on_move))
      Fail("command not legal now");
    try {
      game.user_board.Remove();
    } catch (const UserBoard::no_moves_to_undo&) {
      Fail("no moves to remove");
    }
    game.ponder_move = PONDER_MOVE_UNKNOWN;
    game.Protocol().DisplayPositionAfterChange(game);
    checked = true;
  }
  game.AbortSearch(true);
  finished = true;
  if (game.engine_mode == EngineMode::one_side && game.pondering_enabled) game.StartPondering();
}

std::uint32_t ResultReason(std::uint32_t result, const std::string& line) {
  if (result == 4) return 8;
  std::string comment;
  const auto open = line.find('{');
  if (open != std::string::npos) {
    const auto close = line.find('}', open + 1);
    if (close != std::string::npos && close - open - 1 < 511) {
      comment = line.substr(open + 1, close - open - 1);
      for (char& c : comment) c = char(std::tolower(static_cast<unsigned char>(c)));
    }
  }
  auto contains = [&](const char* word) { return comment.find(word) != std::string::npos; };
  if (result == 3 && (contains("agree") || contains("mutal"))) return 6;
  if (contains("time")) return 2;
  if (contains("resign")) return 1;
  return 9;
}

void Command_Result::Execute(GameState& game) {
  game.AbortSearch(true);
  game.EnterForceMode();
  GameBoard& board = game.user_board.current;
  if (board.result != 0) {
    game.Protocol().ReportCommandIgnored("game over");
  } else {
    board.result = result;
    board.reason = ResultReason(result, line);
  }
  finished = true;
}

void Command_Draw::Execute(GameState& game) {
  if (game.GameIsOver()) Fail("game over");
  if (game.engine_mode != EngineMode::one_side) Fail("command not legal now");
  game.Protocol().ConsiderDrawOffer(game.draw_handler.opponent_is_computer);
  game.draw_handler.draw_offer_pending = true;
  finished = true;
}

// A hint with no move known starts a short search; the command comes back when it has ended.
void Command_Hint::Execute(GameState& game) {
  if (!checked) {
    if (game.ponder_move == PONDER_MOVE_UNKNOWN && game.SearchRuns())
      Fail("command not legal now");
    checked = true;
  }
  if (game.GameIsOver()) {
    game.Protocol().SendHint("");
    finished = true;
    return;
  }
  switch (game.ponder_move) {
    case PONDER_MOVE_UNKNOWN:
      game.ponder_move = PONDER_MOVE_HINT_RUNNING;
      game.RequestSearch(SearchState::puzzle, game.user_board);
    case PONDER_MOVE_NONE:
      game.Protocol().SendHint("");
      break;
    case PONDER_MOVE_HINT_RUNNING:
      CHECKED_ASSERT(false, "Unfinished hint request detected!");
    default:
      game.Protocol().SendHint(game.user_board.MoveText(game.ponder_move, SAN_NOTATION));
  }
  finished = true;
}

void Command_MoveNow::Execute(GameState& game) {
  finished = true;
  if (game.search_state == SearchState::normal) game.AbortSearch(false);
  game.Protocol().ReportCommandIgnored("no search running");
}

void Command_SendSearchStatus::Execute(GameState& game) {
  const bool under_way = !game.GameIsOver() && game.SearchRuns() && game.search.running;
  game.Protocol().SendSearchStatus(under_way ? &game.search : nullptr);
  finished = true;
}

}  // namespace BraskInterfaces
