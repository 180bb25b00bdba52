#include "bitbases/job_description.h"

#include <cctype>

#include "chess/string_helpers.h"
#include "chess/tokenizer.h"
#include "shell/conversions.h"

namespace BraskBitbases {

namespace {

constexpr const char* KEYWORD = "generic";
constexpr std::string_view BLANKS = " \t\r\n";
constexpr int MIN_PIECES = 3;

using ParseError = GenericBitbaseJobDescription::ParseError;

std::string Trimmed(std::string text) {
  BraskUtils::Trim(text, BLANKS);
  return text;
}

std::string Quoted(const std::string& word) { return "'" + word + "'"; }

[[noreturn]] void TooFewPieces(const std::string& job) {
  throw ParseError(
      "Incorrect job description, as generic bitbases require that there are at least three "
      "pieces: " + Quoted(job));
}

[[noreturn]] void TooManyPieces() {
  throw ParseError(
      "Incorrect job description (too many pieces, as the current implementation support only " +
      std::to_string(GENERIC_BITBASES_MAX_SUPPORTED_PIECES) + " pieces)");
}

[[noreturn]] void NotAJob(const std::string& job) {
  throw ParseError("Could not parse single job description: " + Quoted(job));
}

int ParseCount(const std::string& text, const std::string& job) {
  try {
    return StringToInt(Trimmed(text));
  } catch (const string_conversion_error&) {
    throw ParseError("Could not parse integer in single job description: " + Quoted(job));
  }
}

// One side's pieces into counters[colour]; exactly one king, letters in either case.
void ParseSide(const std::string& side, int colour, PieceCounters& counters) {
  int kings = 0;
  for (char letter : side) {
    switch (std::tolower(static_cast<unsigned char>(letter))) {
      case 'k': ++kings; break;
      case 'p': ++counters[CounterIndex(colour, PAWN)]; break;
      case 'n': ++counters[CounterIndex(colour, KNIGHT)]; break;
      case 'b': ++counters[CounterIndex(colour, BISHOP)]; break;
      case 'r': ++counters[CounterIndex(colour, ROOK)]; break;
      case 'q': ++counters[CounterIndex(colour, QUEEN)]; break;
      default: throw ParseError("Undefined piece in job description: " + Quoted(side));
    }
  }
  if (kings != 1) throw ParseError("Incorrect number of kings in job description: " + Quoted(side));
}

}  // namespace

GenericBitbaseJobDescription::GenericBitbaseJobDescription(const std::string& word) {
  if (word == KEYWORD) {
    piece_counts = {3, 4, 5};
    return;
  }
  std::string list;
  if (BraskUtils::StartsWith(word, KEYWORD)) list = Trimmed(word.substr(std::string(KEYWORD).size()));
  if (list.size() < 2 || list.front() != '[' || list.back() != ']')
    throw ParseError(std::string("Could not parse job description:\n\nSyntax: '") + KEYWORD +
                     "[<job1>,...,<jobN>]'.\nDo not seperate the jobs by whitespaces.\n\n");
  std::vector<std::string> jobs;
  try {
    jobs = BraskUtils::Tokenize(std::string_view(list).substr(1, list.size() - 2), ",",
                                BraskUtils::QUOTES, BraskUtils::QUOTES, {});
  } catch (const BraskUtils::tokenize_exception&) {
    throw ParseError("Could not parse job description");
  }
  for (const std::string& job : jobs) ParseJob(job);
}

void GenericBitbaseJobDescription::ParseJob(std::string job) {
  BraskUtils::Trim(job, BLANKS);
  const char first = job.empty() ? '\0' : job.front();
  if (std::isdigit(static_cast<unsigned char>(first))) {
    ParseRange(job);
  } else if (first == 'k' || first == 'K') {
    ParseMaterial(job);
  } else {
    NotAJob(job);
  }
}

// "4" or "3-5".
void GenericBitbaseJobDescription::ParseRange(const std::string& job) {
  const std::size_t dash = job.find('-');
  const int lower = ParseCount(job.substr(0, dash), job);
  const int upper = dash == std::string::npos ? lower : ParseCount(job.substr(dash + 1), job);
  if (lower < MIN_PIECES) TooFewPieces(job);
  if (upper < lower) throw ParseError("Incorrect job description (empty range): " + Quoted(job));
  if (upper > GENERIC_BITBASES_MAX_SUPPORTED_PIECES) TooManyPieces();
  for (int count = lower; count <= upper; ++count) piece_counts.push_back(count);
}

// "krp_kr": White's side first.
void GenericBitbaseJobDescription::ParseMaterial(const std::string& job) {
  const std::size_t underscore = job.find('_');
  if (underscore == std::string::npos)
    throw ParseError("Could not parse single job description: " + Quoted(job) +
                     " (Maybe you forgot the underscore, e.g., \"krp_kr\"?)");
  if (job.find('_', underscore + 1) != std::string::npos) NotAJob(job);
  PieceCounters counters{};
  ParseSide(job.substr(0, underscore), WHITE, counters);
  ParseSide(job.substr(underscore + 1), BLACK, counters);
  const int pieces = PieceCount(counters);
  if (pieces < MIN_PIECES) TooFewPieces(job);
  if (pieces > GENERIC_BITBASES_MAX_SUPPORTED_PIECES) TooManyPieces();
  endgames.push_back(counters);
}

std::vector<PieceCounters> GenericBitbaseJobDescription::Expand(bool without_mirrored) const {
  std::vector<PieceCounters> result = endgames;
  for (int pieces : piece_counts) {
    std::vector<PieceCounters> all;
    EnumerateEndgames(pieces, all);
    for (const PieceCounters& counters : all)
      if (!without_mirrored || !IsMirrored(counters)) result.push_back(counters);
  }
  return result;
}

}  // namespace BraskBitbases
