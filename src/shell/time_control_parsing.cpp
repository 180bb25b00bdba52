#include "shell/time_control_parsing.h"

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "chess/tokenizer.h"
#include "shell/conversions.h"

namespace {

constexpr const char* NOT_AN_INTEGER = "integer argument expected";
constexpr const char* OUT_OF_BOUNDS = "argument out of bounds";
constexpr const char* MISSING_PARAMETERS = "missing parameters";
constexpr const char* LAST_STAGE_TERMINATES = "last time control must not terminate";
constexpr const char* TOO_MANY_LISTS = "too many parameters";

constexpr std::int64_t ZERO_TIME_MS = 10000;
constexpr int MAX_DECIMALS = 3;

std::int32_t ToInt(std::string_view text) {
  try {
    return StringToInt(text);
  } catch (const string_conversion_error&) {
    throw TimeControlArgumentError(NOT_AN_INTEGER);
  }
}

bool IsDigits(std::string_view text) {
  return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

// Stages store 32-bit milliseconds; whatever doesn't fit is out of bounds, as are negatives.
std::int32_t CheckedMs(std::int64_t ms, std::int64_t minimum) {
  if (ms < minimum || ms > std::numeric_limits<std::int32_t>::max())
    throw TimeControlArgumentError(OUT_OF_BOUNDS);
  return static_cast<std::int32_t>(ms);
}

// Stages of 0 moves are those without a move limit.
std::int32_t StageMoves(std::int32_t moves) { return moves == 0 ? -1 : moves; }

std::int64_t ParseStageTimeMs(std::string_view text) {
  const std::size_t colon = text.find(':');
  if (colon == std::string_view::npos) {
    const std::int64_t minutes = ToInt(text);
    return minutes == 0 ? ZERO_TIME_MS : 60000 * minutes;
  }
  const std::int64_t minutes = ToInt(text.substr(0, colon));
  const std::int64_t seconds = ToInt(text.substr(colon + 1));
  // Negative parts give no time at all, refused later together with the other bounds.
  if (minutes < 0 || seconds < 0) return 0;
  return 1000 * (60 * minutes + seconds);
}

std::int64_t ParseIncrementMs(std::string_view text) {
  const std::size_t point = text.find('.');
  if (point == std::string_view::npos) return 1000 * std::int64_t(ToInt(text));
  const bool negative = text.starts_with('-');
  const std::string_view whole = text.substr(negative ? 1 : 0, point - (negative ? 1 : 0));
  std::string decimals(text.substr(point + 1));
  if (!IsDigits(whole) || !IsDigits(decimals) || decimals.size() > MAX_DECIMALS)
    throw TimeControlArgumentError(NOT_AN_INTEGER);
  decimals.resize(MAX_DECIMALS, '0');
  const std::int64_t ms = 1000 * std::int64_t(ToInt(whole)) + ToInt(decimals);
  return negative ? -ms : ms;
}

struct StageArguments {
  std::int32_t moves;
  std::int64_t time_ms;
  std::int64_t increment_ms;
};

// All three are read before any is judged, so a malformed argument is reported as such even
// beside one out of bounds.
StageArguments ReadStage(std::string_view moves, std::string_view time,
                         std::string_view increment) {
  return {ToInt(moves), ParseStageTimeMs(time), ParseIncrementMs(increment)};
}

TimeControlStage MakeStage(const StageArguments& arguments, std::int32_t repeat) {
  if (arguments.moves < 0) throw TimeControlArgumentError(OUT_OF_BOUNDS);
  return {StageMoves(arguments.moves), CheckedMs(arguments.time_ms, 1),
          CheckedMs(arguments.increment_ms, 0), repeat};
}

TimeControlStages ParseStageList(const std::vector<std::string>& tokens) {
  TimeControlStages stages;
  std::vector<StageArguments> arguments;
  for (std::size_t i = 0; i < tokens.size(); i += 3)
    arguments.push_back(ReadStage(tokens[i], tokens[i + 1], tokens[i + 2]));
  for (const StageArguments& stage : arguments) stages.push_back(MakeStage(stage, 0));
  if (arguments.back().moves != 0) throw TimeControlArgumentError(LAST_STAGE_TERMINATES);
  return stages;
}

std::vector<std::vector<std::string>> SplitLists(std::string_view text) {
  std::vector<std::vector<std::string>> lists;
  std::size_t begin = 0;
  for (;;) {
    const std::size_t end = text.find(';', begin);
    // No quotes in a time control: a quote character stays in its token and is refused there.
    lists.push_back(
        BraskUtils::Tokenize(text.substr(begin, end - begin), BraskUtils::WHITESPACE, {}, {}, {}));
    if (end == std::string_view::npos) return lists;
    begin = end + 1;
  }
}

}  // namespace

TimeControlSetting ParseLevel(std::string_view moves, std::string_view time,
                              std::string_view increment) {
  const TimeControlStage stage = MakeStage(ReadStage(moves, time, increment), -1);
  return {{stage}, {stage}};
}

TimeControlSetting ParseTc(std::string_view text) {
  const std::vector<std::vector<std::string>> lists = SplitLists(text);
  if (lists.size() > 2) throw TimeControlArgumentError(TOO_MANY_LISTS);
  for (const std::vector<std::string>& tokens : lists)
    if (tokens.empty() || tokens.size() % 3 != 0)
      throw TimeControlArgumentError(MISSING_PARAMETERS);
  const TimeControlStages white = ParseStageList(lists.front());
  return {white, lists.size() == 1 ? white : ParseStageList(lists.back())};
}
