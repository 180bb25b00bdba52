// Canonical Huffman codes of the compressed tablebase files: building the decoding table from the
// code lengths, decoding one symbol, and reading the code lengths themselves from a bit stream.
#pragma once

#include <cstdint>
#include <vector>

#include "bitbases/bit_reader.h"

namespace NalimovTablebases {

constexpr int MAX_CODE_LENGTH = 31;

// A first level of 1 << width entries, indexed by the next width bits, holds symbol * 32 + length
// for codes that fit. Longer codes lead through a negative entry -j into a bit-by-bit tree stored
// behind the first level, where entries j and j + 1 are the two ways on, and a leaf is the symbol.
class HuffmanCode {
 public:
  // False for lengths that do not form a complete code. All lengths 0 gives a code that answers
  // symbol 0, a single used symbol (of length 1) one that answers it; neither consumes a bit.
  bool Build(const std::uint8_t* lengths, int symbols, int width);

  int Decode(BitReader& bits) const {
    int entry = table_[bits.Peek(width_)];
    if (entry >= 0) {
      bits.Skip(entry & 31);
      return entry >> 5;
    }
    bits.Skip(width_);
    do entry = table_[-entry + int(bits.Read(1))];
    while (entry < 0);
    return entry;
  }

 private:
  int width_ = 0;
  std::vector<std::int16_t> table_;
};

// Fills lengths[0..n) from the stream: a direct list with zero runs for short lists, else a list
// coded by two small Huffman codes that are read first. False on any inconsistency.
bool ReadCodeLengths(BitReader& bits, std::uint8_t* lengths, int n);

}  // namespace NalimovTablebases
