// The engine's one road to the operating system (Unix-like systems): standard input, time, files,
// the terminal and a varying random number. Nothing else in the engine calls the system itself.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "shell/conversions.h"
#include "chess/coordinate_characters.h"
#include "shell/nondeterministic_random.h"
#include "shell/time_point.h"

// Standard input. All reading goes through InputAvailable and ReadLine, never through std::cin or
// stdio, which would buffer lines where InputAvailable cannot see them.
void EnterRawMode();  // for the xboard protocols; a second call does nothing
bool InputAvailable();
// The next line, also written to the log as "Brask received input: <line>". At the end of input,
// "quit" (and nothing logged), so the command language ends the run.
std::string ReadLine();

// The directory of the program, fixed by the first call from argv[0] ("." when argv[0] names none);
// later calls return it whatever they are given.
std::string ExecutableDirectory(std::string_view argv0 = {});
// The directory part of a program path: the text before the last "/", or "." if that is empty.
std::string DirectoryOf(std::string_view path);

// True if the file can be opened for reading, so a file without read permission counts as missing.
bool FileExists(const std::string& name);

// The size of the terminal on standard output: 24 rows and 80 columns where it isn't a terminal.
std::uint32_t TerminalRows();
std::uint32_t TerminalColumns();
// False when standard output goes to a file or a pipe, where nobody could answer a page prompt.
bool StandardOutputIsTerminal();

// Ends the process if the coordinate arithmetic of squares doesn't hold on this platform.
void CheckPlatformArithmetic();
