// Lines from a file descriptor through a buffer of our own. Front ends send several lines at once
// while the search polls between them; reading the descriptor directly, and nothing else reading
// it, means that no line which has arrived can be lost or hidden from InputAvailable.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

class InputReader {
 public:
  explicit InputReader(int descriptor) : descriptor_(descriptor) {}

  // Never blocks. True if a character is buffered (a partial line counts), or the descriptor is
  // readable; the end of input and a failing poll count as readable, so that ReadLine ends it.
  bool InputAvailable();

  // Blocks until a whole line is there, and returns it without its "\n" or "\r\n". A last line
  // without a newline is still a line. Empty at the end of input.
  std::optional<std::string> ReadLine();

 private:
  // One read(2) appended to the buffer; false once the input has ended or failed.
  bool Fill();
  std::string TakeLine(std::size_t end, std::size_t next);

  int descriptor_;
  std::string buffer_;
  std::size_t start_ = 0;    // first unread character of buffer_
  std::size_t scanned_ = 0;  // buffer_[start_, scanned_) is known to hold no newline
  bool ended_ = false;
};
