// Standard output redirected into a string for the lifetime of the object, so that tests can see
// what the output channel sends to the terminal.
#pragma once

#include <iostream>
#include <sstream>
#include <string>

class TerminalCapture {
 public:
  TerminalCapture() : previous_(std::cout.rdbuf(buffer_.rdbuf())) {}
  ~TerminalCapture() { std::cout.rdbuf(previous_); }
  TerminalCapture(const TerminalCapture&) = delete;
  TerminalCapture& operator=(const TerminalCapture&) = delete;

  std::string Text() const { return buffer_.str(); }

 private:
  std::ostringstream buffer_;
  std::streambuf* previous_;
};
