// The engine's one stream of fixed pseudo-random numbers: the hash keys are drawn from it first,
// and the move ordering goes on drawing from it, so every run of the program is repeatable.
#pragma once

#include <cstdint>

// The next output of the stream, in 0 .. 2^30 - 1.
std::int32_t RandomNumber();

// Starts the stream again from its seed (the hash keys, drawn once at start, stay as they are), so
// that a search can be repeated draw for draw whatever ran before it.
void RestartRandomStream();

// Knuth's lagged subtractive generator (long lag 100, short lag 37, modulus 2^30), exposed for
// its published self-test. The engine's stream is this generator started with seed 310952.
namespace LaggedSubtractive {
constexpr int LONG_LAG = 100;
constexpr int SHORT_LAG = 37;
constexpr int BUFFER_SIZE = 1009;

class Generator {
 public:
  explicit Generator(std::int32_t seed);
  // Fills out[0 .. n) (n >= LONG_LAG) and advances the state.
  void Array(std::int32_t* out, int n);
  std::int32_t Next();
  std::int32_t StateWord(int i) const { return state_[i]; }

 private:
  void Start(std::int32_t seed);
  std::int32_t state_[LONG_LAG];
  std::int32_t buffer_[BUFFER_SIZE];
  int next_ = LONG_LAG;  // index into buffer_; LONG_LAG means "refill"
};
}  // namespace LaggedSubtractive
