#include "shell/commands_position.h"

#include <cctype>
#include <cstring>
#include <fstream>

#include "chess/edit_board.h"
#include "chess/pgn_info.h"
#include "chess/tokenizer.h"
#include "shell/basic_protocol.h"
#include "shell/control_flow.h"
#include "shell/error_command.h"
#include "shell/game_state.h"
#include "shell/os_dependent.h"
#include "shell/tee_stream.h"

namespace BraskInterfaces {

std::string RestOfLine(const std::string& line) {
  const char* blanks = " \t\r\n";
  const auto word_start = line.find_first_not_of(blanks);
  if (word_start == std::string::npos) return "";
  const auto word_end = line.find_first_of(blanks, word_start);
  if (word_end == std::string::npos) return "";
  const auto rest = line.find_first_not_of(blanks, word_end);
  if (rest == std::string::npos) return "";
  const auto last = line.find_last_not_of(blanks);
  return line.substr(rest, last - rest + 1);
}

void Command_SetupBoardCommands::Execute(GameState& game) {
  if (!checked) {
    if (game.engine_mode != EngineMode::force && game.engine_mode != EngineMode::analyze)
      Fail("must be in force mode");
    new_board = game.user_board;
    outcome = SetupBoard(game, new_board);
    checked = true;
  }
  BasicProtocol& protocol = game.Protocol();
  if (outcome == illegal_position) {
    // A front end that gets no position back would go on from a game the engine does not have.
    if (protocol.DecidesGameEndItself()) {
      protocol.ReportCommandIgnored("Illegal position");
    } else {
      protocol.SendWarning("Illegal position");
      game.user_board.SetEmptyEditBoardPosition();
    }
    finished = true;
    return;
  }
  if (outcome == cancelled) {
    protocol.ReportEditModeAborted();
    finished = true;
    return;
  }
  game.AbortSearch(true);
  game.user_board = new_board;
  game.ponder_move = PONDER_MOVE_UNKNOWN;
  game.draw_handler.Reset();
  protocol.DisplayPositionAfterChange(game);
  game.time_control.Reset(game.SideOnMove());
  finished = true;
  if (game.engine_mode == EngineMode::analyze)
    game.RequestSearch(SearchState::analyze, game.user_board);
}

Command_SetupBoardCommands::Outcome Command_Setboard::SetupBoard(GameState& game,
                                                                 UserBoard& board) {
  try {
    board.SetFEN(fen);
  } catch (const UserBoard::io_error&) {
    game.Protocol().ReportCommandIgnored("input inconsistent with FEN standard");
    return illegal_position;
  } catch (const UserBoard::invalid_position&) {
    return illegal_position;
  }
  return done;
}

namespace {
constexpr const char* EDIT_PIECE_LETTERS = "PNBRQK";

// "Pe4", "xa1": a piece letter (X empties the square), a file and a rank, in either case.
bool ParsePlacement(const std::string& token, int& square, int& type) {
  if (token.size() != 3) return false;
  const char letter = char(std::toupper(static_cast<unsigned char>(token[0])));
  if (letter == 'X') {
    type = NO_PIECE;
  } else {
    const char* found = std::strchr(EDIT_PIECE_LETTERS, letter);
    if (!found || letter == '\0') return false;
    type = int(found - EDIT_PIECE_LETTERS) + 1;
  }
  if (!IsFileLetter(token[1]) || !IsRankDigit(token[2])) return false;
  square = SquareFromLetters(token[1], token[2]);
  return true;
}
}  // namespace

// Edit mode reads its own lines, blocking: the engine does not search meanwhile.
Command_SetupBoardCommands::Outcome Command_Edit::SetupBoard(GameState& game, UserBoard& board) {
  BasicProtocol& protocol = game.Protocol();
  const Board start = game.user_board.current;
  EditBoard edit(start);
  for (;;) {
    protocol.ShowEditPrompt(edit);
    const std::string line = ReadLine();
    std::vector<std::string> tokens;
    try {
      tokens = BraskUtils::Tokenize(line, " \t\r\n", "\"'", "\"'", "");
    } catch (const BraskUtils::tokenize_exception&) {
      protocol.SendError("Error (could not tokenize the input string): " + line);
      continue;
    }
    const std::string word = tokens.size() == 1 ? tokens[0] : "";
    int square = 0, type = 0;
    bool show = true;
    if (word == "#") {
      edit.Clear();
    } else if (word == "c") {
      edit.color_is_black ^= 1;
      show = false;
    } else if (word == "restore") {
      edit = EditBoard(start);
    } else if (word == "s") {
      edit.side ^= 1;
      edit.state = EditBoard::CHANGED;
    } else if (word == ".") {
      if (edit.IsValid()) {
        board.SetFromEditBoard(edit);
        return done;
      }
      if (!protocol.DecidesGameEndItself()) return illegal_position;
      protocol.ReportCommandIgnored("Illegal position");
      continue;
    } else if (word == "cancel") {
      return cancelled;
    } else if (word == "help") {
      protocol.ShowEditHelp();
      show = false;
    } else if (word == "verify") {
      Output << (edit.IsValid() ? "Current position is valid\n" : "Current position is invalid\n");
      Output.Flush();
      show = false;
    } else if (word == "display") {
      edit.Display(true);
      show = false;
    } else if (word == "quit") {
      throw quit_command_received_exception{};
    } else if (ParsePlacement(word, square, type)) {
      edit.SetPiece(square, type);
    } else {
      protocol.SendError("Error (unknown command): " + line);
      continue;
    }
    if (show) protocol.DisplayEditBoard(edit);
  }
}

void Command_Display::Execute(GameState& game) {
  game.Protocol().DisplayBoard(game, true);
  finished = true;
}

namespace {
// Reads a new game from a file into a copy, so that a failure leaves the game as it was.
template <typename Read>
void ReadGameFile(GameState& game, const Command& command, const std::string& file,
                  const char* read_error, Read read) {
  std::ifstream stream(file);
  if (!stream) throw ErrorCommand(ErrorCommand::error, "could not open file", command.line);
  UserBoard board = game.user_board;
  try {
    read(board, stream);
  } catch (const UserBoard::io_error&) {
    throw ErrorCommand(ErrorCommand::error, read_error, command.line);
  } catch (const UserBoard::invalid_position&) {
    throw ErrorCommand(ErrorCommand::error, "Illegal position", command.line);
  } catch (const UserBoard::invalid_move&) {
    throw ErrorCommand(ErrorCommand::error, "Illegal move", command.line);
  }
  game.user_board = board;
}
}  // namespace

void Command_ReadFEN::Execute(GameState& game) {
  RequireForceMode(game);
  ReadGameFile(game, *this, file, "could not read FEN file",
               [](UserBoard& board, std::istream& stream) { board.ReadFEN(stream); });
  game.ponder_move = PONDER_MOVE_UNKNOWN;
  game.Protocol().DisplayPositionAfterChange(game);
  finished = true;
}

void Command_ReadPGN::Execute(GameState& game) {
  RequireForceMode(game);
  PGNInfo tags;
  ReadGameFile(game, *this, file, "could not read PGN file",
               [&tags](UserBoard& board, std::istream& stream) { board.ReadPGN(stream, tags); });
  game.ponder_move = PONDER_MOVE_UNKNOWN;
  game.Protocol().DisplayPositionAfterChange(game);
  game.Protocol().DisplayGameTags(tags);
  finished = true;
}

void Command_WriteFEN::Execute(GameState& game) {
  std::ofstream stream(file);
  if (!stream) Fail("could not open file");
  game.user_board.WriteFEN(stream);
  stream.flush();
  if (!stream) Fail("could not write FEN file");
  finished = true;
}

void Command_WritePGN::Execute(GameState& game) {
  std::ofstream stream(file);
  if (!stream) Fail("could not open file");
  PGNInfo tags;
  tags.white = game.white.name;
  tags.black = game.black.name;
  game.user_board.WritePGN(stream, tags);
  stream.flush();
  if (!stream) Fail("could not write PGN file");
  finished = true;
}

}  // namespace BraskInterfaces
