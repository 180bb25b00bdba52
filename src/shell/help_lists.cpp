#include "shell/help_lists.h"

#include <algorithm>
#include <iterator>

#include "shell/startup_command_names.h"

namespace BraskHelpScreen {

namespace {

const HelpEntry COMMAND_HELP[] = {
    {"\".\"", "Sends a request for the current search status"},
    {"?", "Forces the engine to move immediately"},
    {"accepted", "unsupported (will be ignored for compatibility reasons)"},
    {"analyze", "Enters analyze mode"},
    {"black", "Sets Black on move. Sets the engine to play White. Stop clocks."},
    {"computer", "unsupported (will be ignored for compatibility reasons)"},
    {"console", "Enters console mode"},
    {"contempt",
     "Sets the contempt value. A positive value will encourage the engine to draw, where a "
     "negative value will force the engine to avoid draws."},
    {"display", "Displays the current board"},
    {"display_settings", "Displays the current values of one or more search settings"},
    {"draw", "Accept a draw offer, or propose a draw if no offer has been received"},
    {"easy", "Turns off pondering"},
    {"edit", "Enters edit mode"},
    {"eval", "Evaluates the current position"},
    {"exit", "Leaves analyze mode"},
    {"force", "Enters force mode"},
    {"fritz", "Activates Fritz mode (not really supported)"},
    {"generate",
     "Generates brask bitbases by using the results from the tablebases. Therefore, tablebases "
     "must be loaded, otherwise the command will fail. The generated bitbases will be stored in "
     "the executable's directory (*.bbb). They will be automatically loaded during startup.\n"
     "If given no parameters, a list of all types of bitbases, which are supported by the "
     "generator, will be displayed. To generate all supported bitbases, use \"generate all\"."},
    {"go", "Engine plays side on move and begins thinking immediately"},
    {"hard", "Turns on pondering"},
    {"hash",
     "If given no parameters, it will display the status of all hashtables (used memory, fill "
     "percentage). Otherwise it modifies the size of the specified table (trans, pawn, eval).\n"
     "Example: \"hash trans 256M\""},
    {"help", "Displays this help screen"},
    {"hint", "Makes the engine propose a move"},
    {"id", "Overwrites the engine's id (for testing only)"},
    {"level", "Sets time controls"},
    {"modify_settings", "Modifies one or more search settings"},
    {"name", "Set the name of the engine's opponent"},
    {"new", "Starts a new game"},
    {"next",
     "Makes the next move in the previous move buffer (if there is one). Additionally, \"next "
     "all\" will make all moves  at once, and \"next <number>\" will make up to <number> moves."},
    {"nopost", "Turns off thinking/pondering output"},
    {"otim", "Sets the remaining time of the side which has not to move next"},
    {"personality",
     "Controls the engine's personality:\n"
     "A positive (integer) value will make the engine play more reckless, where a negative value "
     "will result in a more positional and material playing style. Reasonable values are between "
     "-20 and 20. 0 is the default value, which is the best compromise, because the engine will "
     "adjust according to the situation.\n"
     "There are some predefined personalities that you can use: \"Nurz\" likes to sacrifice "
     "material and will attack the enemy king at all costs. \"Vessimar\", in contrast, prefers "
     "to keep things simple. He will try to achieve small positional advantages without much "
     "risk and generally keeps a solid pawn structure without weaknesses. \"Random\" will choose "
     "a random personality between -20 and 20."},
    {"ping", "The engine will respond by sending \"pong\""},
    {"playother", "Makes the engine switch sides"},
    {"post", "Turns on thinking/pondering output"},
    {"probe", "Probes bitbases and tablebases for the given (FEN-)position"},
    {"protover", "Enters XBoard mode using the given protocol (e.g., \"protover 2\")."},
    {"quit", "Leaves the program"},
    {"random", "unsupported (will be ignored for compatibility reasons)"},
    {"rating", "Sets the rating of the engine's opponent"},
    {"read_fen", "Reads a FEN-position and sets it as the current position"},
    {"read_pgn", "Reads a PGN-position into the previous moves buffer"},
    {"read_settings", "Reads search settings from a file"},
    {"rejected", "unsupported (will be ignored for compatibility reasons)"},
    {"remove", "Undos the last two moves"},
    {"result", "Sets the result of the current game"},
    {"sd", "Sets a bound for the maximum depth of the engine"},
    {"setboard", "Sets up a new (FEN-)position"},
    {"st", "Sets a bound for the maximum thinking time of the engine (in seconds)"},
    {"tb",
     "If given no parameters, it will display the status of all available tablebases and "
     "bitbases. Otherwise \"tb <type> <size> <path>\" initializes (or resizes) a tablebase or "
     "bitbase of the given <type> (nalimov), where <size> controls how much memory is being "
     "allocated (0 turns off caching, but will prevent then engine from accessing tablebases "
     "that are not loaded into memory) and <path> specifies the location on the disk.\n"
     "Example: \"tb nalimov 8M path/to/nalimov_tb\""},
    {"tc", "Sets time controls (this command is not included in the xboard protocol)"},
    {"time", "Sets the remaining time of the side which has to move next"},
    {"uci", "Enters UCI mode, the protocol of most chess GUIs"},
    {"undo",
     "Undos the last move and save it into the previous moves buffer.\n"
     "Extensions: \"undo all\" will undo all moves at once, furthermore \"undo <number>\" will "
     "undo up to <number> moves."},
    {"usermove", "Can be used to send a move to the engine (e.g. \"usermove Nf3\")"},
    {"verify",
     "Verifies loaded bitbases by comparing their results with the results from the tablebases. "
     "Therefore, it is required that tablebases are available, otherwise the command will fail.\n"
     "To verify all bitbases, use \"verify all\", but it is also possible to verify only "
     "specific bitbases:\n"
     "\"verify <type1> <type2> ...\"\n"
     "If given no parameters, \"verify\" will list of all available verification jobs."},
    {"version", "Displays informations about the current program version"},
    {"white", "Sets White on move. Sets the engine to play Black. Stop clocks."},
    {"write_fen", "Saves the current position as FEN"},
    {"write_pgn", "Saves the current game as PGN"},
    {"write_settings", "Writes search settings to a file"},
    {"xboard", "Enters XBoard mode (protocol 1)"},
};

const HelpEntry EDIT_HELP[] = {
    {"\".\"", "Leaves edit mode and confirms the changes that were made"},
    {"#", "Clears the board"},
    {"c", "Changes current piece color"},
    {"cancel", "Leaves edit mode and discards the changes that were made"},
    {"display", "Displays the current board"},
    {"help", "Displays this help screen"},
    {"quit", "Leaves the program"},
    {"restore", "Undos all changes and restores the original position"},
    {"s", "Changes side to move"},
    {"verify", "Checks if the current position is legal"},
};

std::vector<HelpEntry> StartupEntries(const std::vector<HelpEntry>& commands) {
  std::vector<HelpEntry> entries;
  std::ranges::copy_if(commands, std::back_inserter(entries),
                       [](const HelpEntry& entry) { return IsStartupCommand(entry.command); });
  return entries;
}

}  // namespace

const std::vector<HelpEntry>& CommandHelpList() {
  static const std::vector<HelpEntry> list = SortedHelpList(COMMAND_HELP);
  return list;
}

const std::vector<HelpEntry>& StartupHelpList() {
  static const std::vector<HelpEntry> list = StartupEntries(CommandHelpList());
  return list;
}

const std::vector<HelpEntry>& EditHelpList() {
  static const std::vector<HelpEntry> list = SortedHelpList(EDIT_HELP);
  return list;
}

}  // namespace BraskHelpScreen
