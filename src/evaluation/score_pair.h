// A score in two styles: what a positional player and what a reckless player would make of the
// same term. Sums wrap at 16 bits; no term comes near the limit.
#pragma once

#include <cstdint>

struct ScorePair {
  std::int16_t positional = 0;
  std::int16_t reckless = 0;

  constexpr ScorePair() = default;
  constexpr ScorePair(int positional_value, int reckless_value)
      : positional(std::int16_t(positional_value)), reckless(std::int16_t(reckless_value)) {}

  constexpr ScorePair& operator+=(ScorePair other) {
    positional = std::int16_t(positional + other.positional);
    reckless = std::int16_t(reckless + other.reckless);
    return *this;
  }
  constexpr ScorePair& operator-=(ScorePair other) {
    positional = std::int16_t(positional - other.positional);
    reckless = std::int16_t(reckless - other.reckless);
    return *this;
  }
  friend constexpr ScorePair operator+(ScorePair a, ScorePair b) { return a += b; }
  friend constexpr ScorePair operator-(ScorePair a, ScorePair b) { return a -= b; }
  friend constexpr ScorePair operator-(ScorePair a) { return ScorePair{} - a; }
  friend constexpr bool operator==(ScorePair a, ScorePair b) = default;
};
