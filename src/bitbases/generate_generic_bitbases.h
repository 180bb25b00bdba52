// Making the engine's own bitbases from the tablebases: one file per generic material, and the
// two flat special files. Every file is written under a temporary name and renamed when complete,
// so a run that is interrupted never leaves a file that a later start would load as finished.
#pragma once

#include <map>
#include <string>

#include "bitbases/generic_bitbases.h"
#include "shell/brask_exception.h"

namespace BraskGenerator {

class GenerationFailed : public BraskException {
 public:
  using BraskException::BraskException;
};

// Where a file is written before it is complete.
std::string TemporaryPath(const std::string& path);

class GenericBitbaseGenerator {
 public:
  using Routine = void (*)(const BraskBitbases::PieceCounters& counters, const std::string& path);

  GenericBitbaseGenerator();

  // Probes every placement of the material and saves the bitbase to path. Throws
  // GenerationFailed; BitArray_IOException when the file cannot be written.
  void Generate(const BraskBitbases::PieceCounters& counters, const std::string& path) const;

 private:
  std::map<BraskBitbases::MaterialSignature, Routine> routines_;
};


}  // namespace BraskGenerator
