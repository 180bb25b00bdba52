// The pieces of the program's start-up that have no home of their own.
#pragma once

#include <string>
#include <vector>

// Writes to the log alone which bit-counting and bit-scanning algorithms this build uses.
void WriteBitboardAlgorithms();

// argv[1..], leaving out empty strings.
std::vector<std::string> CommandLineArguments(int argc, const char* const argv[]);
