// Which generic bitbases a generate or verify job concerns: all of them, some piece counts, or
// named endgames, as one word such as "generic[3,kqr_kr,krp_kr]".
#pragma once

#include <string>
#include <vector>

#include "bitbases/generic_bitbases.h"
#include "shell/brask_exception.h"

namespace BraskBitbases {

class GenericBitbaseJobDescription {
 public:
  class ParseError : public BraskException {
   public:
    using BraskException::BraskException;
  };

  // Throws ParseError; a word that fails leaves no description.
  explicit GenericBitbaseJobDescription(const std::string& word);

  // The named endgames as given, then every endgame of each piece count. Mirrored materials are
  // left out of the piece counts (never out of the names) when without_mirrored is set. Nothing
  // removes duplicates.
  std::vector<PieceCounters> Expand(bool without_mirrored) const;

  std::vector<int> piece_counts;
  std::vector<PieceCounters> endgames;

 private:
  void ParseJob(std::string job);
  void ParseRange(const std::string& job);
  void ParseMaterial(const std::string& job);
};

}  // namespace BraskBitbases
