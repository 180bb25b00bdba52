// Standard output redirected into a string for the lifetime of the object, counting flushes.
#pragma once

#include <iostream>
#include <sstream>
#include <string>

class TerminalCapture {
 public:
  TerminalCapture() : previous_(std::cout.rdbuf(&buffer_)) {}
  ~TerminalCapture() {
    std::cout.rdbuf(previous_);
    std::cout.copyfmt(std::ios(nullptr));  // undo the formatting a test set on std::cout
  }
  TerminalCapture(const TerminalCapture&) = delete;
  TerminalCapture& operator=(const TerminalCapture&) = delete;

  std::string Text() const { return buffer_.str(); }
  int Flushes() const { return buffer_.syncs; }

 private:
  struct CountingBuffer : std::stringbuf {
    int syncs = 0;
    int sync() override {
      ++syncs;
      return std::stringbuf::sync();
    }
  };
  CountingBuffer buffer_;
  std::streambuf* previous_;
};
