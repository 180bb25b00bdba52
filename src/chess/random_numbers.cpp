#include "chess/random_numbers.h"

namespace LaggedSubtractive {
namespace {
constexpr std::int32_t MODULUS = 1 << 30;
constexpr int SEED_ROUNDS = 70;

constexpr std::int32_t ModDiff(std::int32_t x, std::int32_t y) { return (x - y) & (MODULUS - 1); }
}  // namespace

Generator::Generator(std::int32_t seed) { Start(seed); }

void Generator::Array(std::int32_t* out, int n) {
  int i, j;
  for (j = 0; j < LONG_LAG; ++j) out[j] = state_[j];
  for (; j < n; ++j) out[j] = ModDiff(out[j - LONG_LAG], out[j - SHORT_LAG]);
  for (i = 0; i < SHORT_LAG; ++i, ++j) state_[i] = ModDiff(out[j - LONG_LAG], out[j - SHORT_LAG]);
  for (; i < LONG_LAG; ++i, ++j) state_[i] = ModDiff(out[j - LONG_LAG], state_[i - SHORT_LAG]);
}

// The published seeding procedure: the seed's bits drive a polynomial "square and multiply" in
// the generator's own arithmetic, so that different seeds give unrelated streams.
void Generator::Start(std::int32_t seed) {
  std::int32_t x[LONG_LAG + LONG_LAG - 1];
  std::int32_t ss = (seed + 2) & (MODULUS - 2);
  for (int j = 0; j < LONG_LAG; ++j) {
    x[j] = ss;
    ss <<= 1;
    if (ss >= MODULUS) ss -= MODULUS - 2;
  }
  x[1]++;
  ss = seed & (MODULUS - 1);
  for (int t = SEED_ROUNDS - 1; t;) {
    for (int j = LONG_LAG - 1; j > 0; --j) {
      x[j + j] = x[j];
      x[j + j - 1] = 0;
    }
    for (int j = LONG_LAG + LONG_LAG - 2; j >= LONG_LAG; --j) {
      x[j - (LONG_LAG - SHORT_LAG)] = ModDiff(x[j - (LONG_LAG - SHORT_LAG)], x[j]);
      x[j - LONG_LAG] = ModDiff(x[j - LONG_LAG], x[j]);
    }
    if (ss & 1) {
      for (int j = LONG_LAG; j > 0; --j) x[j] = x[j - 1];
      x[0] = x[LONG_LAG];
      x[SHORT_LAG] = ModDiff(x[SHORT_LAG], x[LONG_LAG]);
    }
    if (ss) ss >>= 1;
    else --t;
  }
  for (int j = 0; j < SHORT_LAG; ++j) state_[j + LONG_LAG - SHORT_LAG] = x[j];
  for (int j = SHORT_LAG; j < LONG_LAG; ++j) state_[j - SHORT_LAG] = x[j];
  for (int j = 0; j < 10; ++j) Array(x, LONG_LAG + LONG_LAG - 1);
  next_ = LONG_LAG;
}

// Each cycle fills the whole buffer but hands out only its first LONG_LAG values, which is what
// makes the stream's quality good.
std::int32_t Generator::Next() {
  if (next_ >= LONG_LAG) {
    Array(buffer_, BUFFER_SIZE);
    next_ = 0;
  }
  return buffer_[next_++];
}
}  // namespace LaggedSubtractive

namespace {
constexpr std::int32_t STREAM_SEED = 310952;

LaggedSubtractive::Generator& Stream() {
  static LaggedSubtractive::Generator generator(STREAM_SEED);
  return generator;
}
}  // namespace

std::int32_t RandomNumber() { return Stream().Next(); }

void RestartRandomStream() { Stream() = LaggedSubtractive::Generator(STREAM_SEED); }
