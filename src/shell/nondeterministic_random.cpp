#include "shell/nondeterministic_random.h"

#include <ctime>

#include "shell/tee_stream.h"

namespace {
constexpr const char* OVERUSE_NOTE =
    "Note: NonDeterministicRand_16bit seems to be used more often than originally intended. "
    "This could be a problem, because its implementation is bad.";
}

std::int32_t NonDeterministicRandom::Next() {
  if (calls_ >= 0 && ++calls_ > INTENDED_CALLS) {
    Output.ReportLogOnly(OVERUSE_NOTE);
    calls_ = -1;
  }
  seed_ = seed_ * 1103515245u + 12345u;  // unsigned: wraps modulo 2^32
  return std::int32_t((seed_ >> 16) & 0x7FFF);
}

std::int32_t NonDeterministicRand_16bit() {
  static NonDeterministicRandom generator(std::uint32_t(std::time(nullptr)) & 0xFFFF);
  return generator.Next();
}
