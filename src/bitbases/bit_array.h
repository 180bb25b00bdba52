// A fixed-size array of two-bit entries held compressed in memory: the container under every
// generic bitbase. Compression and the file format are those of the Roaring bitmap's portable
// serialisation; a file is exactly one serialised bitmap, possibly followed by zero bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include <roaring/roaring.hh>

#include "shell/brask_exception.h"

namespace BraskBitbases {

class BitArrayException : public BraskException {
 public:
  using BraskException::BraskException;
};

class BitArray_IOException : public BitArrayException {
 public:
  using BitArrayException::BitArrayException;
};

class BitArray_MemoryLimitReached : public BitArrayException {
 public:
  using BitArrayException::BitArrayException;
};

class BitArray {
 public:
  // An all-zero array of `bits` bits, for the generator and for tests.
  explicit BitArray(std::uint32_t bits);
  // Loads a saved array; memory_limit in bytes, 0 for none. The limit is checked after the load.
  BitArray(const std::string& path, std::uint32_t bits, std::size_t memory_limit);

  // The entry at an even index: low bit at index, high bit at index + 1. Allocates nothing.
  int Get2(std::uint32_t index) const {
    return int(vector_.contains(index)) + 2 * int(vector_.contains(index + 1));
  }
  bool Get1(std::uint32_t index) const { return vector_.contains(index); }
  void Set2(std::uint32_t index, int value);
  // Inclusive on both ends, in either order.
  void SetRange(std::uint32_t first, std::uint32_t last, bool bit);

  // Calls run(first, last) for each maximal run of set bits, in ascending order.
  template <typename Run>
  void ForEachRun(Run&& run) const {
    bool open = false;
    std::uint32_t first = 0, last = 0;
    for (std::uint32_t bit : vector_) {
      if (open && bit == last + 1) {
        last = bit;
        continue;
      }
      if (open) run(first, last);
      first = last = bit;
      open = true;
    }
    if (open) run(first, last);
  }

  std::size_t MemoryUsage() const { return vector_.getSizeInBytes(); }
  std::uint32_t Bits() const { return bits_; }
  void Save(const std::string& path);

 private:
  void Compress();

  Roaring vector_;
  std::uint32_t bits_;
};

}  // namespace BraskBitbases
