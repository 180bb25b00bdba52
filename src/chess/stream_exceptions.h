// Makes every failure of a stream arrive as an exception for as long as the guard lives, and
// gives the stream back its former exception mask afterwards.
#pragma once

#include <ios>

class StreamExceptions {
 public:
  // Throws at once if the stream has failed already.
  explicit StreamExceptions(std::ios& stream) : stream_(stream), former_(stream.exceptions()) {
    try {
      stream_.exceptions(std::ios::failbit | std::ios::badbit);
    } catch (const std::ios::failure&) {
      Restore();
      throw;
    }
  }
  ~StreamExceptions() { Restore(); }
  StreamExceptions(const StreamExceptions&) = delete;
  StreamExceptions& operator=(const StreamExceptions&) = delete;

 private:
  void Restore() noexcept {
    try {
      stream_.exceptions(former_);
    } catch (const std::ios::failure&) {
      // The owner asked to hear of failures by exception and has heard of this one already,
      // as an error of our own kind.
    }
  }

  std::ios& stream_;
  std::ios::iostate former_;
};
