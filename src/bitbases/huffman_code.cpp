#include "bitbases/huffman_code.h"

#include <algorithm>

namespace NalimovTablebases {

bool HuffmanCode::Build(const std::uint8_t* lengths, int symbols, int width) {
  width_ = width;
  table_.assign((std::size_t{1} << width) + 2 * std::size_t(symbols), 0);

  int used = 0, only = 0;
  std::uint64_t kraft = 0;  // in units of 2^-32
  int count[MAX_CODE_LENGTH + 1] = {};
  for (int s = 0; s < symbols; ++s) {
    if (lengths[s] > MAX_CODE_LENGTH) return false;
    if (lengths[s] == 0) continue;
    ++used, only = s;
    ++count[lengths[s]];
    kraft += std::uint64_t{1} << (32 - lengths[s]);
  }
  if (used == 0) return true;
  if (used == 1) {
    std::fill(table_.begin(), table_.begin() + (1 << width), std::int16_t(only * 32));
    return lengths[only] == 1;
  }
  if (kraft != std::uint64_t{1} << 32) return false;

  // Canonical codes: shorter codes first, and in symbol order within one length.
  std::uint32_t next_code[MAX_CODE_LENGTH + 2] = {};
  for (int length = 1; length <= MAX_CODE_LENGTH; ++length)
    next_code[length + 1] = (next_code[length] + count[length]) << 1;

  int next_node = 1 << width;
  for (int s = 0; s < symbols; ++s) {
    int length = lengths[s];
    if (length == 0) continue;
    std::uint32_t code = next_code[length]++;
    if (length <= width) {
      std::uint32_t first = code << (width - length), n = 1u << (width - length);
      std::fill_n(table_.begin() + first, n, std::int16_t(s * 32 + length));
      continue;
    }
    std::int16_t* entry = &table_[code >> (length - width)];
    for (int bit = length - width - 1; bit >= 0; --bit) {
      if (*entry >= 0) {  // a way on that no earlier code has opened yet
        if (next_node + 2 > int(table_.size())) return false;
        *entry = std::int16_t(-next_node);
        next_node += 2;
      }
      entry = &table_[-*entry + ((code >> bit) & 1)];
    }
    *entry = std::int16_t(s);
  }
  return true;
}

namespace {

// A run of copies of one length: short runs directly, longer ones with extra bits.
std::int64_t ReadRunLength(BitReader& bits, const HuffmanCode& code_b) {
  std::int64_t c = code_b.Decode(bits);
  if (c > 31) {
    int m = int(c - 32);
    std::int64_t extra;
    if (m > 16) {
      extra = std::int64_t(bits.Read(16)) << (m - 16);
      extra += bits.Read(m - 16);
    } else {
      extra = bits.Read(m);
    }
    c = (std::int64_t{1} << m) + extra + 31;
  }
  return c + 2;
}

bool ReadDirectLengths(BitReader& bits, std::uint8_t* lengths, int n) {
  int width = int(bits.Read(5));
  for (int i = 0; i < n;) {
    std::uint32_t value = bits.Read(width);
    if (value > MAX_CODE_LENGTH) return false;
    lengths[i++] = std::uint8_t(value);
    if (value == 0) {
      int zeros = int(bits.Read(4));
      if (i + zeros > n) return false;
      std::fill_n(lengths + i, zeros, 0);
      i += zeros;
    }
    if (bits.Overrun()) return false;
  }
  return true;
}

bool ReadCodedLengths(BitReader& bits, std::uint8_t* lengths, int n) {
  std::uint8_t small[128];
  HuffmanCode code_a, code_b;
  if (!ReadCodeLengths(bits, small, 128) || !code_a.Build(small, 64, 8) ||
      !code_b.Build(small + 64, 64, 8))
    return false;
  for (int i = 0; i < n;) {
    int s = code_a.Decode(bits);
    if (s < 32) {
      lengths[i++] = std::uint8_t(s);
    } else {
      std::int64_t run = ReadRunLength(bits, code_b);
      if (i + run > n) return false;
      std::fill_n(lengths + i, run, std::uint8_t(s & 31));
      i += int(run);
    }
    if (bits.Overrun()) return false;
  }
  return true;
}

}  // namespace

bool ReadCodeLengths(BitReader& bits, std::uint8_t* lengths, int n) {
  if (bits.Read(1)) {
    std::fill_n(lengths, n, 0);
    return !bits.Overrun();
  }
  return n <= 128 ? ReadDirectLengths(bits, lengths, n) : ReadCodedLengths(bits, lengths, n);
}

}  // namespace NalimovTablebases
