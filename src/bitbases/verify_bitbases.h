// Checking the engine's bitbases against the tablebases, position by position. A handler observes
// the walk: it hears of each verified position and decides whether to go on after a wrong or
// missing one.
#pragma once

#include <string>

#include "bitbases/generic_bitbases.h"
#include "shell/brask_exception.h"

class Board;

namespace BraskGenerator {

// The verification cannot run at all: no tablebases, or a disabled bitbase.
class VerificationFailed : public BraskException {
 public:
  using BraskException::BraskException;
};

// Results of a verification.
constexpr int VERIFICATION_FAILED = 0;
constexpr int VERIFICATION_PASSED = 1;
constexpr int VERIFICATION_STOPPED = 2;  // positions missing: nothing to compare

class VerificationHandler {
 public:
  virtual ~VerificationHandler() = default;
  virtual void StartVerification(const std::string& /*name*/) {}
  virtual void FinishVerification(const std::string& /*name*/, int /*status*/) {}
  virtual void PositionVerified(const Board& /*board*/) {}
  // Both return whether to go on.
  virtual bool InvalidResult(const Board& board) = 0;
  virtual bool PositionNotFound(const Board& board) = 0;
};

// For callers without a console: only the first wrong position is told, in the log.
class SilentVerificationHandler : public VerificationHandler {
 public:
  bool InvalidResult(const Board& board) override;
  bool PositionNotFound(const Board& board) override;
};

// The loaded single pawn, two pawns and rammed pawn bitbases, each through the generic probe.
int VerifySinglePawnBitbases(VerificationHandler& handler);
int VerifyTwoPawnsBitbases(VerificationHandler& handler);
int VerifyRammedPawnBitbases(VerificationHandler& handler);

// One generic material, as loaded; the file in directory says whether there is anything to check.
int VerifyGenericBitbaseHelper(const BraskBitbases::PieceCounters& counters,
                               VerificationHandler& handler, const std::string& directory);
int VerifyGenericBitbaseHelper(const BraskBitbases::PieceCounters& counters,
                               VerificationHandler& handler);

}  // namespace BraskGenerator
