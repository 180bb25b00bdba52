#include "shell/uci_go.h"

#include <algorithm>
#include <charconv>
#include <string_view>

#include "chess/basic.h"
#include "shell/error_command.h"

namespace {

// Without "movestogo" the time is planned as if this many moves were left.
constexpr std::int64_t ASSUMED_MOVES_LEFT = 30;
// Against a failing search the hard limit stretches the planned time this many times over.
constexpr std::int64_t HARD_LIMIT_FACTOR = 5;
// Of the increment, this share in percent is planned for the move it comes with.
constexpr std::int64_t INCREMENT_SHARE_PERCENT = 75;
// No move plans to use more than this share of what is left.
constexpr std::int64_t SHORT_CLOCK_SHARE = 3;
// Depths beyond the search's own last iteration mean nothing.
constexpr std::int64_t MAX_DEPTH = 100;

[[noreturn]] void Refuse(std::string_view message, const std::string& line) {
  throw ErrorCommand(ErrorCommand::error, message, line);
}

std::int64_t Number(const std::vector<std::string>& tokens, std::size_t& i, std::int64_t minimum,
                    std::int64_t maximum, const std::string& line) {
  if (i + 1 >= tokens.size()) Refuse("missing parameters", line);
  const std::string& text = tokens[++i];
  std::int64_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size())
    Refuse("integer argument expected", line);
  if (value < minimum || value > maximum) Refuse("argument out of bounds", line);
  return value;
}

// A clock may be reported below zero by a front end that lets a flagged game go on.
constexpr std::int64_t CLOCK_MIN = -(std::int64_t(1) << 40), CLOCK_MAX = std::int64_t(1) << 40;

// The parameters that take a number: the word, the range, and where the number goes.
struct NumberWord {
  std::string_view word;
  std::int64_t minimum, maximum;
  void (*store)(UciGoParameters& go, std::int64_t value);
};

constexpr NumberWord NUMBER_WORDS[] = {
    {"wtime", CLOCK_MIN, CLOCK_MAX,
     [](UciGoParameters& go, std::int64_t v) { go.time_ms[WHITE] = v; }},
    {"btime", CLOCK_MIN, CLOCK_MAX,
     [](UciGoParameters& go, std::int64_t v) { go.time_ms[BLACK] = v; }},
    {"winc", 0, INT32_MAX, [](UciGoParameters& go, std::int64_t v) { go.increment_ms[WHITE] = v; }},
    {"binc", 0, INT32_MAX, [](UciGoParameters& go, std::int64_t v) { go.increment_ms[BLACK] = v; }},
    {"movestogo", 1, INT32_MAX,
     [](UciGoParameters& go, std::int64_t v) { go.moves_to_go = std::int32_t(v); }},
    {"movetime", 1, INT32_MAX,
     [](UciGoParameters& go, std::int64_t v) { go.move_time_ms = std::int32_t(v); }},
    {"depth", 1, MAX_DEPTH,
     [](UciGoParameters& go, std::int64_t v) { go.depth = std::int32_t(v); }},
    {"nodes", 1, INT64_MAX,
     [](UciGoParameters& go, std::int64_t v) { go.nodes = std::uint64_t(v); }},
    {"mate", 1, MAX_DEPTH / 2,
     [](UciGoParameters& go, std::int64_t v) { go.mate = std::int32_t(v); }},
};

const NumberWord* FindNumberWord(std::string_view word) {
  for (const NumberWord& entry : NUMBER_WORDS)
    if (entry.word == word) return &entry;
  return nullptr;
}

bool IsGoWord(std::string_view word) {
  return FindNumberWord(word) != nullptr || word == "infinite" || word == "ponder" ||
         word == "searchmoves";
}

}  // namespace

UciGoParameters ParseGoParameters(const std::vector<std::string>& tokens, const std::string& line) {
  UciGoParameters go;
  for (std::size_t i = 0; i < tokens.size(); ++i) {
    const std::string& word = tokens[i];
    if (const NumberWord* number = FindNumberWord(word)) {
      number->store(go, Number(tokens, i, number->minimum, number->maximum, line));
    } else if (word == "infinite") {
      go.infinite = true;
    } else if (word == "ponder") {
      go.ponder = true;
    } else if (word == "searchmoves") {
      while (i + 1 < tokens.size() && !IsGoWord(tokens[i + 1]))
        go.search_moves.push_back(tokens[++i]);
      if (go.search_moves.empty()) Refuse("missing parameters", line);
    } else {
      Refuse("unknown parameter " + word, line);
    }
  }
  return go;
}

namespace {

// The two limits from the clock of the side to move. The soft limit is the planned time of this
// move, which the search's stop rule stretches or shrinks; the hard limit caps that stretch and
// never reaches into the reserve.
void ClockLimits(std::int64_t clock_ms, std::int64_t increment_ms, std::int32_t moves_to_go,
                 SearchRequest& request) {
  // Five per cent of the clock and the overhead stay untouched, so that a slow answer to one
  // move can't flag.
  const std::int64_t usable = clock_ms - clock_ms / 20 - UCI_MOVE_OVERHEAD_MS;
  // With a move count the last move of the stage keeps one move's share in reserve.
  const std::int64_t moves = moves_to_go > 0 ? std::int64_t(moves_to_go) + 1 : ASSUMED_MOVES_LEFT;
  // On a short clock the increment is not spent in advance: a move must then cost less than it
  // brings, the way to the front end included, or the clock never recovers.
  std::int64_t soft = std::min(usable / moves + increment_ms * INCREMENT_SHARE_PERCENT / 100,
                               usable / SHORT_CLOCK_SHARE);
  std::int64_t hard = std::min(usable, soft * HARD_LIMIT_FACTOR);
  hard = std::max<std::int64_t>(hard, UCI_MIN_THINKING_TIME_MS);
  soft = std::clamp<std::int64_t>(soft, UCI_MIN_THINKING_TIME_MS, hard);
  request.max_time_limit = std::int32_t(std::min<std::int64_t>(hard, INT32_MAX));
  request.variable_time_limit = std::int32_t(std::min<std::int64_t>(soft, INT32_MAX));
}

}  // namespace

SearchRequest UciSearchRequest(const UciGoParameters& go, int side) {
  SearchRequest request;
  request.type = go.ponder     ? SearchType::pondering
                 : go.infinite ? SearchType::analyze
                               : SearchType::normal;
  // A mate in n moves lies 2n - 1 plies deep; one more iteration lets it be seen from both sides.
  request.max_depth = go.depth;
  if (go.mate > 0)
    request.max_depth =
        request.max_depth > 0 ? std::min(request.max_depth, 2 * go.mate) : 2 * go.mate;
  if (go.infinite) return request;
  if (go.move_time_ms > 0) {
    request.max_time_limit = std::int32_t(
        std::max<std::int64_t>(go.move_time_ms - UCI_MOVE_OVERHEAD_MS, UCI_MIN_THINKING_TIME_MS));
  } else if (go.time_ms[side] != UciGoParameters::NO_CLOCK) {
    ClockLimits(go.time_ms[side], go.increment_ms[side], go.moves_to_go, request);
  }
  return request;
}
