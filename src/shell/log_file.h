// The numbered log file of a run: the first free name of "logfile.000" .. "logfile.99999" in the
// working directory, so that no run overwrites the log of another, and "logfile.max" when all
// are taken.
#pragma once

#include <functional>
#include <string>

inline constexpr int LOG_FILE_NUMBERS = 100000;

// "logfile.007" below 1000, plain decimal from there on ("logfile.1000").
std::string NumberedLogName(int number);

// The first of the first `numbers` names for which `exists` is false; else "logfile.max".
std::string FirstFreeLogName(const std::function<bool(const std::string&)>& exists,
                             int numbers = LOG_FILE_NUMBERS);

// Opens the run's log through Output. A directory where no log can be created is no error: the
// engine runs without a log and says nothing about it.
void OpenNumberedLog();
