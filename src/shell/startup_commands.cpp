// The command line is the command language in another dress: every option is a command whose word
// stands behind one or two dashes, with the arguments up to the next dash as its parameters.
#include <cstdlib>
#include <iostream>
#include <set>
#include <string_view>

#include "shell/application.h"
#include "shell/basic_protocol.h"
#include "shell/control_flow.h"
#include "shell/error_command.h"
#include "shell/startup_command_names.h"
#include "shell/tee_stream.h"

namespace {

struct could_not_parse_exception {
  std::string argument;
};

const std::set<std::string_view> FORCE_MODE_NAMES = {
    "contempt", "hash", "tb", "modify_settings", "personality", "read_fen",
    "read_pgn", "read_settings", "setboard", "generate", "verify"};
const std::set<std::string_view> EXIT_NAMES = {"help", "version"};

std::size_t LeadingDashes(const std::string& argument) {
  std::size_t dashes = 0;
  while (dashes < 2 && dashes < argument.size() && argument[dashes] == '-') ++dashes;
  return dashes;
}

[[noreturn]] void StopStartup(BraskInterfaces::BasicProtocol& protocol, const std::string& text) {
  protocol.SendWarning("Error while parsing startup commands (stopped at \"" + text + "\")");
  std::exit(1);
}

}  // namespace

void Application::ParseStartupCommands(const std::vector<std::string>& arguments) {
  BraskInterfaces::BasicProtocol* protocol = &game->Protocol();
  std::size_t index = 0;
  try {
    while (index < arguments.size()) {
      const std::string& argument = arguments[index++];
      const std::size_t dashes = LeadingDashes(argument);
      if (dashes == 0)
        std::cerr << "Warning: Expecting '-' before option \"" << argument
                  << "\"! Continuing...\n";
      if (dashes == argument.size()) throw could_not_parse_exception{argument};

      std::string name = argument.substr(dashes);
      std::vector<std::string> parameters;
      const auto equals = name.find('=', 1);
      if (equals != std::string::npos && equals + 1 < name.size()) {
        parameters.push_back(name.substr(equals + 1));
        name.resize(equals);
      }
      while (index < arguments.size() && !arguments[index].starts_with('-'))
        parameters.push_back(arguments[index++]);

      if (!IsStartupCommand(name)) StopStartup(*protocol, name);
      if (FORCE_MODE_NAMES.count(name)) ExecuteStartupLine("force", "force");
      std::string line = name;
      for (const std::string& parameter : parameters) line += " " + parameter;
      Output.ReportLogOnly("Executing startup command: " + line);
      ExecuteStartupLine(name, line);
      protocol = &game->Protocol();
      if (EXIT_NAMES.count(name)) std::exit(0);
    }
  } catch (const could_not_parse_exception& failure) {
    StopStartup(*protocol, failure.argument);
  } catch (const quit_command_received_exception&) {
    std::exit(0);
  } catch (const search_request_received_exception&) {
    // No start-up command asks for a search; should one, the main loop starts without it.
  }
}

void Application::ExecuteStartupLine(const std::string& name, const std::string& line) {
  BraskInterfaces::BasicProtocol& protocol = game->Protocol();
  if (name == "help") {
    protocol.ShowStartupHelp();
    return;
  }
  try {
    std::unique_ptr<BraskInterfaces::Command> command = protocol.ParseLine(line);
    command->Execute(*game);
  } catch (const IgnorableErrorCommand& error) {
    const bool terminal = Output.SetTerminal(false);
    Output << "Execution of the command failed, but it is safe to proceed and ignore this error:\n"
           << error.what() << "\n";
    Output.SetTerminal(terminal);
    Output.Flush();
    protocol.SendWarning(std::string("Warning: Startup command failed!\n") + error.what());
  } catch (const ErrorCommand& error) {
    StopStartup(game->Protocol(), error.what());
  }
}
