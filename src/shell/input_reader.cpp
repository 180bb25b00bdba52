#include "shell/input_reader.h"

#include <sys/select.h>
#include <unistd.h>

#include <cerrno>

namespace {
constexpr std::size_t CHUNK = 4096;
}

bool InputReader::InputAvailable() {
  if (start_ < buffer_.size() || ended_) return true;
  // A descriptor that select cannot watch is left to ReadLine, which tells data from the end.
  if (descriptor_ < 0 || descriptor_ >= FD_SETSIZE) return true;
  fd_set readable;
  FD_ZERO(&readable);
  FD_SET(descriptor_, &readable);
  timeval no_wait{0, 0};
  return select(descriptor_ + 1, &readable, nullptr, nullptr, &no_wait) != 0;
}

std::optional<std::string> InputReader::ReadLine() {
  for (;;) {
    const std::size_t newline = buffer_.find('\n', scanned_);
    if (newline != std::string::npos) return TakeLine(newline, newline + 1);
    scanned_ = buffer_.size();
    if (!Fill()) break;
  }
  if (start_ == buffer_.size()) return std::nullopt;
  return TakeLine(buffer_.size(), buffer_.size());
}

bool InputReader::Fill() {
  if (ended_) return false;
  // Consumed text is dropped only when it is the larger part, so a burst of lines is not copied
  // once per line.
  if (start_ > CHUNK && start_ * 2 > buffer_.size()) {
    buffer_.erase(0, start_);
    scanned_ -= start_;
    start_ = 0;
  }
  const std::size_t old_size = buffer_.size();
  buffer_.resize(old_size + CHUNK);
  ssize_t count;
  do {
    count = read(descriptor_, buffer_.data() + old_size, CHUNK);
  } while (count < 0 && errno == EINTR);
  buffer_.resize(old_size + (count > 0 ? std::size_t(count) : 0));
  ended_ = count <= 0;
  return !ended_;
}

std::string InputReader::TakeLine(std::size_t end, std::size_t next) {
  std::size_t length = end - start_;
  if (length > 0 && buffer_[end - 1] == '\r') --length;
  std::string line = buffer_.substr(start_, length);
  start_ = next;
  scanned_ = next;
  if (start_ == buffer_.size()) {
    buffer_.clear();
    start_ = scanned_ = 0;
  }
  return line;
}
