// Writes the compressed tablebase form for tests: a header with banner, sizes, match offsets, the
// code lengths in coded form and the check value, then the blocks, each stored plain or coded
// with literals and matches. Options steer it into the decoder's rarer paths.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

struct DatacompOptions {
  enum class Code {
    FROM_DATA,      // Huffman code of the symbols the blocks use
    ALL_SYMBOLS,    // every symbol gets a code, so that rare ones run past the first table level
    SINGLE_SYMBOL,  // one symbol of length 1, no bit consumed (for files of one repeated byte)
    ALL_ZERO,       // every length 0, no bit consumed (for files of zeros)
  };
  Code code = Code::FROM_DATA;
  bool use_matches = true;
  int size_bits = 13;  // the block size is 1 << size_bits
};

std::vector<std::uint8_t> CompressTablebase(const std::vector<std::uint8_t>& plain,
                                            const DatacompOptions& options = {});

void WriteBytes(const std::string& path, const std::vector<std::uint8_t>& bytes);
