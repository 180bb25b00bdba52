#include "shell/commands_protocol.h"

#include "shell/console_protocol.h"
#include "shell/control_flow.h"
#include "shell/game_state.h"
#include "shell/tee_stream.h"

namespace BraskInterfaces {

void Command_InstallNewProtocol::Execute(GameState& game) {
  std::unique_ptr<BasicProtocol> protocol = CreateProtocol();
  protocol->CopyStateFrom(game.Protocol());
  game.ReplaceProtocol(std::move(protocol));
  game.Protocol().Initialize();
  finished = true;
}

std::unique_ptr<BasicProtocol> Command_Console::CreateProtocol() const {
  return std::make_unique<ConsoleProtocol>();
}

void Command_SetOutput::Execute(GameState& game) {
  game.Protocol().post = post;
  finished = true;
}

void Command_SetPondering::Execute(GameState& game) {
  game.pondering_enabled = enabled;
  if (!enabled && game.search_state == SearchState::pondering) game.AbortSearch(true);
  finished = true;
}

void Command_Ping::Execute(GameState&) {
  Output << "pong " << number << "\n";
  Output.Flush();
  finished = true;
}

void Command_Id::Execute(GameState& game) {
  game.Protocol().id = id;
  finished = true;
}

// The name replaces the opponent's only where the game is one of the engine against someone who
// still has the default name; it becomes the default name in any case.
void Command_Name::Execute(GameState& game) {
  if (game.white.is_computer != game.black.is_computer) {
    Player& other = game.white.is_computer ? game.black : game.white;
    if (other.name == Player::default_name) other.name = name;
  }
  Player::default_name = name;
  finished = true;
}

void Command_Rating::Execute(GameState& game) {
  if (game.white.is_computer != game.black.is_computer) {
    Player& computer = game.white.is_computer ? game.white : game.black;
    Player& other = game.white.is_computer ? game.black : game.white;
    if (other.name == Player::default_name) {
      computer.rating = engine;
      other.rating = opponent;
    }
  }
  Player::default_engine_rating = engine;
  Player::default_opponent_rating = opponent;
  finished = true;
}

void Command_Computer::Execute(GameState& game) {
  game.draw_handler.opponent_is_computer = true;
  finished = true;
}

void Command_Version::Execute(GameState& game) {
  game.Protocol().ShowVersion();
  finished = true;
}

void Command_Help::Execute(GameState& game) {
  game.Protocol().ShowHelp();
  finished = true;
}

void Command_Quit::Execute(GameState& game) {
  game.AbortSearch(true);
  finished = true;
  throw quit_command_received_exception{};
}

}  // namespace BraskInterfaces
