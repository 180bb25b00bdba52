#include "shell/self_check.h"

#include "chess/basic.h"

namespace {

bool SquareAgrees(int rank, int file) {
  const int s = MakeSquare(file, rank);
  const auto twice = [](auto f, int square) { return f(f(square)); };
  bool ok = s == 8 * rank + file && File(s) == file && Rank(s) == rank;
  ok &= (s ^ 7) == 8 * rank + (file ^ 7);
  ok &= (s ^ 56) == 8 * (rank ^ 7) + file;
  ok &= (s ^ 63) == 8 * (rank ^ 7) + (file ^ 7);
  ok &= Rotate90(s) == rank + 8 * (file ^ 7);
  ok &= twice(Rotate90, s) == (s ^ 63) && twice(Rotate90, twice(Rotate90, s)) == s;
  ok &= Transpose(s) == (s >> 3) + 8 * (s & 7);
  ok &= twice(Transpose, s) == s && (Transpose(Transpose(s) ^ 63) ^ 63) == s;
  return ok;
}

}  // namespace

bool CoordinateArithmeticAgrees() {
  bool ok = true;
  for (int rank = 0; rank < 8; ++rank) {
    for (int file = 0; file < 8; ++file) ok &= SquareAgrees(rank, file);
  }
  return ok;
}
