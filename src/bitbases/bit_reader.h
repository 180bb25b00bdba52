// Reads a byte buffer as a stream of bits, most significant bit first. Reading past the end gives
// zero bits and is remembered, so a decoder can run on a broken buffer and notice afterwards.
#pragma once

#include <cstddef>
#include <cstdint>

namespace NalimovTablebases {

class BitReader {
 public:
  BitReader(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}

  // The next n bits (n <= 24) without consuming them.
  std::uint32_t Peek(int n) const {
    std::size_t byte = position_ >> 3;
    std::uint32_t word = 0;
    for (std::size_t k = 0; k < 4; ++k)
      word = word << 8 | (byte + k < size_ ? data_[byte + k] : 0u);
    return n == 0 ? 0 : (word << (position_ & 7)) >> (32 - n);
  }

  void Skip(int n) { position_ += std::size_t(n); }

  // n <= 32 bits as an unsigned number.
  std::uint32_t Read(int n) {
    std::uint32_t value = 0;
    for (int done = 0; done < n;) {
      int chunk = n - done < 16 ? n - done : 16;
      value = value << chunk | Peek(chunk);
      Skip(chunk);
      done += chunk;
    }
    return value;
  }

  bool Overrun() const { return position_ > size_ * 8; }

 private:
  const std::uint8_t* data_;
  std::size_t size_;
  std::size_t position_ = 0;  // in bits
};

}  // namespace NalimovTablebases
