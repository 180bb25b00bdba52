// The solver's own numbering of the positions of a table, per side on move. Unlike the file's
// index it is plain mixed radix, cheap both ways, and uses only the symmetries that move every
// square (mirrors of files and, without pawns, of ranks): no position is its own mirror image,
// so counting moves forward and taking them back from one image of a position agree exactly.
#pragma once

#include <cstdint>

#include "bitbases/table_material.h"
#include "chess/basic.h"

namespace NalimovTablebases {

class SolverStateSpace {
 public:
  explicit SolverStateSpace(const TableMaterial& material) : count_(material.count) {
    pawns_ = material.HasPawns();
    size_ = pawns_ ? 32 : 16;
    for (int i = 1; i < count_; ++i) {
      radix_[i] = material.type[std::size_t(i)] == PAWN ? 48 : 64;
      offset_[i] = material.type[std::size_t(i)] == PAWN ? 8 : 0;
      size_ *= std::uint64_t(radix_[i]);
    }
    weight_[count_ - 1] = 1;
    for (int i = count_ - 2; i > 0; --i) weight_[i] = weight_[i + 1] * radix_[i + 1];
  }

  // How much the number changes when the piece (not White's king) goes one square up.
  std::int64_t Weight(int piece) const { return weight_[piece]; }

  std::uint64_t Size() const { return size_; }

  // The mask that brings White's king to files a-d and, without pawns, to ranks 1-4.
  int FrameMask(int white_king) const {
    return (File(white_king) >= 4 ? 7 : 0) | (!pawns_ && Rank(white_king) >= 4 ? 56 : 0);
  }

  // squares: White's king first, as the material orders the pieces. Brings them into the frame.
  std::uint64_t Encode(int* squares) const {
    int mask = FrameMask(squares[0]);
    for (int i = 0; i < count_; ++i) squares[i] ^= mask;
    std::uint64_t index = std::uint64_t(File(squares[0]) + 4 * Rank(squares[0]));
    for (int i = 1; i < count_; ++i)
      index = index * std::uint64_t(radix_[i]) + std::uint64_t(squares[i] - offset_[i]);
    return index;
  }

  void Decode(std::uint64_t index, int* squares) const {
    for (int i = count_ - 1; i > 0; --i) {
      squares[i] = int(index % std::uint64_t(radix_[i])) + offset_[i];
      index /= std::uint64_t(radix_[i]);
    }
    squares[0] = MakeSquare(int(index % 4), int(index / 4));
  }

 private:
  int count_;
  bool pawns_;
  int radix_[MAX_TABLE_PIECES] = {};
  int offset_[MAX_TABLE_PIECES] = {};
  std::int64_t weight_[MAX_TABLE_PIECES] = {};
  std::uint64_t size_;
};

}  // namespace NalimovTablebases
