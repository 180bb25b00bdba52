// A small generator that differs from run to run, for the one place where the engine wants
// surprise (the "Random" personality). Everything that must be repeatable draws from the fixed
// stream of chess/random_numbers.h instead.
#pragma once

#include <cstdint>

// Numbers in 0 .. 32767, from the classic linear congruential step of C libraries. It is weak,
// so its eleventh use in a run leaves a note in the log.
std::int32_t NonDeterministicRand_16bit();

class NonDeterministicRandom {
 public:
  static constexpr int INTENDED_CALLS = 10;

  explicit NonDeterministicRandom(std::uint32_t seed) : seed_(seed) {}
  std::int32_t Next();

 private:
  std::uint32_t seed_;
  int calls_ = 0;  // -1 once the note has been written
};
