// The root of the engine's failure classes: every failure a user can cause is one of these, with a
// ready text. Exceptions used for control flow stand outside this tree.
#pragma once

#include <exception>
#include <string>
#include <utility>

class BraskException : public std::exception {
 public:
  explicit BraskException(std::string text) : text_(std::move(text)) {}
  const char* what() const noexcept override { return text_.c_str(); }
  const std::string& Text() const noexcept { return text_; }

 private:
  std::string text_;
};
