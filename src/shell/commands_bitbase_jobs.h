// generate and verify: one command line runs a list of jobs in turn, each making or checking one
// kind of bitbase. A job failure ends the command and drops the jobs behind it.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "shell/brask_exception.h"
#include "shell/command.h"

namespace BraskInterfaces {

class AbstractJob {
 public:
  class JobFailedException : public BraskException {
   public:
    using BraskException::BraskException;
  };

  virtual ~AbstractJob() = default;
  // True when there was nothing to do: skipped, or (verification) not failed.
  virtual bool Run() = 0;
  virtual std::string GetDescription() const = 0;
};

using JobList = std::vector<std::unique_ptr<AbstractJob>>;

class Command_Generate : public Command {
 public:
  explicit Command_Generate(std::string line);
  ~Command_Generate() override;
  void Execute(GameState& game) override;

 private:
  std::string argument_;
  JobList jobs_;
};

class Command_Verify : public Command {
 public:
  explicit Command_Verify(std::string line);
  ~Command_Verify() override;
  void Execute(GameState& game) override;

 private:
  std::string argument_;
  JobList jobs_;
};

}  // namespace BraskInterfaces
