#include "shell/help_text_wrapping.h"

#include <cstddef>
#include <utility>

namespace BraskHelpScreen {

namespace {

class Wrapper {
 public:
  Wrapper(int indent, int columns) : indent_(indent), columns_(columns) {}

  void BreakLine() {
    result_.text += '\n';
    result_.text.append(static_cast<std::size_t>(indent_) + 1, ' ');
    ++result_.lines;
    column_ = 0;
  }

  void AddWord(std::string_view word) {
    const int length = static_cast<int>(word.size());
    if (indent_ + length + column_ < columns_ - 1) {
      if (column_ != 0) {
        result_.text += ' ';
        ++column_;
      }
    } else {
      BreakLine();
    }
    result_.text += word;
    column_ += length;
  }

  WrappedText Take() { return std::move(result_); }

 private:
  int indent_;
  int columns_;
  int column_ = 0;
  WrappedText result_;
};

}  // namespace

WrappedText WrapDescription(std::string_view description, int indent, int columns) {
  Wrapper wrapper(indent, columns);
  std::size_t position = 0;
  while (position < description.size()) {
    const char c = description[position];
    if (c == '\n') {
      wrapper.BreakLine();
      ++position;
    } else if (c == ' ') {
      ++position;
    } else {
      const std::size_t end = description.find_first_of(" \n", position);
      const std::size_t length =
          (end == std::string_view::npos ? description.size() : end) - position;
      wrapper.AddWord(description.substr(position, length));
      position += length;
    }
  }
  return wrapper.Take();
}

}  // namespace BraskHelpScreen
