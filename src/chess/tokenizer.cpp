#include "chess/tokenizer.h"

namespace BraskUtils {
namespace {

constexpr std::size_t NONE = std::string_view::npos;

bool IsOneOf(char c, std::string_view set) { return set.find(c) != NONE; }

class Tokenizer {
 public:
  Tokenizer(std::string_view text, std::string_view separators, std::string_view opening_marks,
            std::string_view closing_marks, std::string_view kept_marks)
      : text_(text),
        separators_(separators),
        opening_(opening_marks),
        closing_(closing_marks),
        kept_(kept_marks) {}

  std::vector<std::string> Run();

 private:
  std::string ReadToken();
  void AppendEmbedded(std::string& token);
  bool AtBreak() const { return pos_ >= text_.size() || IsOneOf(text_[pos_], separators_); }

  std::string_view text_, separators_, opening_, closing_, kept_;
  std::size_t pos_ = 0;
};

std::vector<std::string> Tokenizer::Run() {
  std::vector<std::string> tokens;
  while ((pos_ = text_.find_first_not_of(separators_, pos_)) != NONE) {
    tokens.push_back(ReadToken());
  }
  return tokens;
}

// A token is a run of plain pieces and quoted parts up to a separator or the end. Gluing the
// pieces in one loop keeps the stack flat and the time linear however many quotes touch.
std::string Tokenizer::ReadToken() {
  std::string token;
  for (;;) {
    const std::size_t piece = pos_;
    while (pos_ < text_.size() && !IsOneOf(text_[pos_], separators_) &&
           !IsOneOf(text_[pos_], opening_)) {
      ++pos_;
    }
    token.append(text_.substr(piece, pos_ - piece));
    if (AtBreak()) return token;
    AppendEmbedded(token);
    if (AtBreak()) return token;
  }
}

// text_[pos_] is an opening mark; appends the quoted text and moves behind the closing mark.
void Tokenizer::AppendEmbedded(std::string& token) {
  const char opening = text_[pos_];
  const std::size_t index = opening_.find(opening);
  const char closing = index < closing_.size() ? closing_[index] : opening;
  const std::size_t close = text_.find(closing, pos_ + 1);
  if (close == NONE) throw unterminated_embedded_string_exception();
  const std::size_t from = IsOneOf(opening, kept_) ? pos_ : pos_ + 1;
  token.append(text_.substr(from, close - from));
  if (IsOneOf(closing, kept_)) token += closing;
  pos_ = close + 1;
}

}  // namespace

std::vector<std::string> Tokenize(std::string_view text, std::string_view separators,
                                  std::string_view opening_marks, std::string_view closing_marks,
                                  std::string_view kept_marks) {
  return Tokenizer(text, separators, opening_marks, closing_marks, kept_marks).Run();
}

}  // namespace BraskUtils
