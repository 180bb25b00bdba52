#include "shell/commands_bitbase_jobs.h"


#include "bitbases/bit_array.h"
#include "bitbases/generate_special_bitbases.h"
#include "bitbases/job_description.h"
#include "bitbases/log_only_scope.h"
#include "bitbases/special_bitbases.h"
#include "bitbases/verify_bitbases.h"
#include "chess/board.h"
#include "chess/string_helpers.h"
#include "chess/tokenizer.h"
#include "shell/error_command.h"
#include "shell/os_dependent.h"
#include "shell/tee_stream.h"
#include "shell/time_point.h"

namespace BraskInterfaces {

namespace {

using BraskBitbases::GenericBitbaseJobDescription;
using BraskGenerator::VerificationHandler;
using JobFailedException = AbstractJob::JobFailedException;

constexpr const char* GENERATION_JOBS = "two_pawns rammed_pawn generic";
constexpr const char* VERIFICATION_JOBS = "single_pawn two_pawns rammed_pawn generic";
constexpr const char* GENERIC = "generic";
constexpr double MS_PER_SECOND = 1000.0;

double SecondsSince(const TimePoint& start) { return double(ElapsedMsSince(start)) / MS_PER_SECOND; }

std::string InExecutableDirectory(const char* name) { return ExecutableDirectory() + "/" + name; }

// The failures of the machinery under a job become the job's failure, with the same text.
template <typename Body>
auto Guarded(Body&& body) {
  try {
    return body();
  } catch (const BraskGenerator::GenerationFailed& error) {
    throw JobFailedException(error.Text());
  } catch (const BraskGenerator::VerificationFailed& error) {
    throw JobFailedException(error.Text());
  } catch (const BraskBitbases::BitArrayException& error) {
    throw JobFailedException(error.Text());
  }
}

class DefaultVerificationHandler : public VerificationHandler {
 public:
  void StartVerification(const std::string& name) override {
    positions_ = 0;
    name_ = name;
    Output << "Verifying bitbase '" << name << "'...";
    Output.Flush();
  }
  void FinishVerification(const std::string&, int status) override {
    if (status == BraskGenerator::VERIFICATION_PASSED)
      Output << "passed (" << (unsigned long long)positions_ << " positions)\n";
    else if (status == BraskGenerator::VERIFICATION_STOPPED)
      Output << "skipped\n";
    else
      Output << "failed\n";
    Output.Flush();
  }
  void PositionVerified(const Board&) override { ++positions_; }
  bool InvalidResult(const Board& board) override {
    Report(board, "Position reports wrong result.\n");
    FinishVerification(name_, BraskGenerator::VERIFICATION_FAILED);
    return false;
  }
  bool PositionNotFound(const Board& board) override {
    Report(board, "Position not found.\n");
    FinishVerification(name_, BraskGenerator::VERIFICATION_STOPPED);
    return false;
  }
 private:
  void Report(const Board& board, const char* what) {
    BraskBitbases::LogOnlyScope log_only;
    Output << "Error in " << name_ << " bitbase.\n" << what;
    board.Display(true);
  }

  std::uint64_t positions_ = 0;
  std::string name_;
};

class VerifyBitbasesJob : public AbstractJob {
 public:
  bool Run() override {
    DefaultVerificationHandler handler;
    return Guarded([&] { return Verify(handler); }) != BraskGenerator::VERIFICATION_FAILED;
  }
  virtual int Verify(VerificationHandler& handler) = 0;
};

class VerifySinglePawnBitbasesJob : public VerifyBitbasesJob {
 public:
  std::string GetDescription() const override { return "single_pawn"; }
  int Verify(VerificationHandler& handler) override {
    return BraskGenerator::VerifySinglePawnBitbases(handler);
  }
};

class VerifyTwoPawnsBitbasesJob : public VerifyBitbasesJob {
 public:
  std::string GetDescription() const override { return "two_pawns"; }
  int Verify(VerificationHandler& handler) override {
    return BraskGenerator::VerifyTwoPawnsBitbases(handler);
  }
};

class VerifyRammedPawnBitbasesJob : public VerifyBitbasesJob {
 public:
  std::string GetDescription() const override { return "rammed_pawn"; }
  int Verify(VerificationHandler& handler) override {
    return BraskGenerator::VerifyRammedPawnBitbases(handler);
  }
};

class VerifyGenericBitbasesJob : public AbstractJob {
 public:
  explicit VerifyGenericBitbasesJob(GenericBitbaseJobDescription description)
      : description_(std::move(description)) {}
  std::string GetDescription() const override { return GENERIC; }
  bool Run() override {
    const auto endgames = description_.Expand(false);
    Output << "Verifying generic bitbases (" << std::uint32_t(endgames.size()) << " total):\n";
    Output.Flush();
    DefaultVerificationHandler handler;
    bool all = true;
    for (const auto& counters : endgames)
      all &= Guarded([&] { return BraskGenerator::VerifyGenericBitbaseHelper(counters, handler); }) !=
             BraskGenerator::VERIFICATION_FAILED;
    return all;
  }

 private:
  GenericBitbaseJobDescription description_;
};

// A special file in the executable's directory; an existing one is left alone.
class GenerateSpecialBitbasesJob : public AbstractJob {
 public:
  GenerateSpecialBitbasesJob(const char* file, const char* description,
                             void (*generate)(const std::string&))
      : path_(InExecutableDirectory(file)), description_(description), generate_(generate) {}
  std::string GetDescription() const override { return description_; }
  bool Run() override {
    if (FileExists(path_)) return true;
    Guarded([&] { generate_(path_); });
    return false;
  }

 private:
  std::string path_;
  const char* description_;
  void (*generate_)(const std::string&);
};

class GenerateGenericBitbasesJob : public AbstractJob {
 public:
  explicit GenerateGenericBitbasesJob(GenericBitbaseJobDescription description)
      : description_(std::move(description)) {}
  std::string GetDescription() const override { return "Generating generic bitbases data files"; }
  bool Run() override {
    const auto endgames = description_.Expand(true);
    Output << "\nGenerating generic bitbases (" << std::uint32_t(endgames.size()) << " total):\n";
    Output.Flush();
    return Guarded([&] {
      const BraskGenerator::GenericBitbaseGenerator generator;
      bool all_skipped = true;
      for (const auto& counters : endgames) all_skipped &= GenerateOne(generator, counters);
      return all_skipped;
    });
  }

 private:
  static bool GenerateOne(const BraskGenerator::GenericBitbaseGenerator& generator,
                          const BraskBitbases::PieceCounters& counters) {
    std::string name, path;
    const bool exists = BraskBitbases::GenericBitbaseExists(counters, name, path);
    Output << "- " << name << "...";
    Output.Flush();
    if (exists) {
      Output << "skipped\n";
      Output.Flush();
      return true;
    }
    TimePoint start;
    Now(start);
    generator.Generate(counters, path);
    Output << "done (" << SecondsSince(start) << " sec)\n";
    Output.Flush();
    return false;
  }

  GenericBitbaseJobDescription description_;
};

// What follows the command's word on the line.
std::string ArgumentOf(const std::string& line) {
  std::string rest = line;
  BraskUtils::Trim(rest, BraskUtils::WHITESPACE);
  const std::size_t end = rest.find_first_of(BraskUtils::WHITESPACE);
  rest = end == std::string::npos ? "" : rest.substr(end);
  BraskUtils::Trim(rest, BraskUtils::WHITESPACE);
  return rest;
}

enum class Purpose { generation, verification };

// A job list that cannot be read, with the command's error text.
struct JobListError {
  std::string text;
};

struct JobTexts {
  const char* all;
  const char* generic_error;
  const char* unknown_job;
};

constexpr JobTexts GENERATION_TEXTS{GENERATION_JOBS,
                                    "Could not parse generic bitbase generation command (",
                                    "Could not parse generation job description '"};
constexpr JobTexts VERIFICATION_TEXTS{VERIFICATION_JOBS,
                                      "Could not parse generic bitbase verification command (",
                                      "Could not parse verify job description '"};

std::unique_ptr<AbstractJob> MakeJob(const std::string& word, Purpose purpose) {
  const bool generating = purpose == Purpose::generation;
  const JobTexts& texts = generating ? GENERATION_TEXTS : VERIFICATION_TEXTS;
  if (word == "single_pawn") {
    if (generating) throw JobListError{"Support for single pawn bitbase generation disabled"};
    return std::make_unique<VerifySinglePawnBitbasesJob>();
  }
  if (word == "two_pawns") {
    if (!generating) return std::make_unique<VerifyTwoPawnsBitbasesJob>();
    return std::make_unique<GenerateSpecialBitbasesJob>(
        BraskBitbases::TWO_PAWNS_FILE_NAME, "Generating king+pawn vs king+pawn bitbases data file",
        &BraskGenerator::GenerateTwoPawnsBitbases);
  }
  if (word == "rammed_pawn") {
    if (!generating) return std::make_unique<VerifyRammedPawnBitbasesJob>();
    return std::make_unique<GenerateSpecialBitbasesJob>(
        BraskBitbases::RAMMED_PAWN_FILE_NAME, "Generating rammed pawn bitbases data file",
        &BraskGenerator::GenerateRammedPawnBitbases);
  }
  if (BraskUtils::StartsWith(word, GENERIC)) {
    try {
      GenericBitbaseJobDescription description(word);
      if (generating) return std::make_unique<GenerateGenericBitbasesJob>(std::move(description));
      return std::make_unique<VerifyGenericBitbasesJob>(std::move(description));
    } catch (const GenericBitbaseJobDescription::ParseError& error) {
      throw JobListError{texts.generic_error + error.Text() + ")"};
    }
  }
  throw JobListError{texts.unknown_job + word + "'"};
}

// Every job of the argument; JobListError before any has run.
JobList ParseJobs(const std::string& argument, Purpose purpose) {
  const JobTexts& texts = purpose == Purpose::generation ? GENERATION_TEXTS : VERIFICATION_TEXTS;
  // Bracketed parts stay one word with their brackets, so that "generic[3, 4]" is one job.
  std::vector<std::string> words;
  try {
    words = BraskUtils::Tokenize(argument == "all" ? std::string(texts.all) : argument,
                                 BraskUtils::WHITESPACE, "\"'[{", "\"']}", "[]");
  } catch (const BraskUtils::tokenize_exception&) {
    throw JobListError{"Could not parse job list: a bracket or quotation mark is not closed"};
  }
  JobList jobs;
  for (const std::string& word : words) jobs.push_back(MakeJob(word, purpose));
  return jobs;
}

void ListJobs(const char* heading, const char* names) {
  Output << heading << names << "\n";
  Output.Flush();
}

}  // namespace

Command_Generate::Command_Generate(std::string line)
    : Command(std::move(line)), argument_(ArgumentOf(this->line)) {}
Command_Generate::~Command_Generate() = default;

void Command_Generate::Execute(GameState& game) {
  if (argument_.empty()) {
    ListJobs("List of available generation jobs:\n", GENERATION_JOBS);
    finished = true;
    return;
  }
  if (!checked) {
    RequireForceMode(game);
    try {
      jobs_ = ParseJobs(argument_, Purpose::generation);
    } catch (const JobListError& error) {
      Fail(error.text);
    }
    checked = true;
  }
  for (const auto& job : jobs_) {
    TimePoint start;
    Now(start);
    Output << job->GetDescription() << "...";
    Output.Flush();
    bool skipped = false;
    try {
      skipped = job->Run();
    } catch (const JobFailedException& error) {
      Output << "failed\n";
      Output.Flush();
      Fail(error.Text());
    }
    if (skipped)
      Output << "skipped (file already exists)\n";
    else
      Output << "done (" << SecondsSince(start) << " sec)\n";
    Output.Flush();
  }
  Output.ReportLogOnly("Generation finished. Reloading bitbases.");
  BraskBitbases::LoadBitbases();
  finished = true;
}

Command_Verify::Command_Verify(std::string line)
    : Command(std::move(line)), argument_(ArgumentOf(this->line)) {}
Command_Verify::~Command_Verify() = default;

void Command_Verify::Execute(GameState& game) {
  if (argument_.empty()) {
    ListJobs("List of available verification jobs:\n", VERIFICATION_JOBS);
    finished = true;
    return;
  }
  if (!checked) {
    RequireForceMode(game);
    try {
      jobs_ = ParseJobs(argument_, Purpose::verification);
    } catch (const JobListError& error) {
      Fail(error.text);
    }
    checked = true;
  }
  TimePoint start;
  Now(start);
  for (const auto& job : jobs_) {
    try {
      job->Run();
    } catch (const JobFailedException& error) {
      Output << "failed\n";
      Output.Flush();
      Fail(error.Text());
    }
  }
  {
    BraskBitbases::LogOnlyScope log_only;
    Output << "Verification finished (" << (long long)ElapsedMsSince(start) << "ms total).\n";
  }
  finished = true;
}

}  // namespace BraskInterfaces
