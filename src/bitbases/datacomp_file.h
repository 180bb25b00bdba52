// The compressed form of a tablebase file: a header with a banner, the sizes of the blocks, the
// match offsets and the Huffman code, and behind it the blocks, each coded on its own. This unit
// reads the header into the decoder's information and decodes one block; the reader does the I/O.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>
#include <vector>

#include "bitbases/huffman_code.h"

namespace NalimovTablebases {

namespace Datacomp {
constexpr std::string_view BANNER_START = "Compressed by DATACOMP v 1.0";
constexpr int BANNER_SIZE = 64;
constexpr int FIXED_HEADER_SIZE = 80;
constexpr std::uint32_t MIN_HEADER_SIZE = 0x54;
constexpr int MAX_SIZE_BITS = 16;
constexpr int MATCH_OFFSETS = 0x18;
constexpr std::uint32_t FORMAT_MARK = 0x4001F5;
constexpr int SYMBOLS = 1024;
constexpr int LITERALS = 256;
constexpr int DATA_CODE_WIDTH = 13;
constexpr int BLOCK_SIZE = 8192;
constexpr int BLOCK_SIZE_BITS = 13;
// Room for one compressed block and the bytes a 32-bit bit buffer may look ahead.
constexpr std::size_t DECODE_BUFFER_SIZE = 0x2040;

// The CRC of the header. Its table steps the polynomial in the sense opposite to the common one.
std::uint32_t HeaderCheckValue(const std::uint8_t* bytes, std::size_t count);

std::uint32_t ReadBigEndian32(const std::uint8_t* bytes);
}  // namespace Datacomp

enum class HeaderStatus { OK, BROKEN, UNSUPPORTED_BLOCK_SIZE };

// The first 80 bytes, enough to know how much header follows.
struct FixedHeader {
  std::uint32_t header_size = 0;
  int size_bits = 0;
  std::uint32_t blocks = 0;

  HeaderStatus Read(const std::uint8_t* bytes);
  int BlockSize() const { return 1 << size_bits; }
};

class DatacompDecoderInfo {
 public:
  // header: the whole header, header_size bytes, whose fixed part has passed FixedHeader::Read.
  HeaderStatus Parse(const FixedHeader& fixed, const std::vector<std::uint8_t>& header);

  std::uint32_t Blocks() const { return blocks_; }
  std::uint64_t PlainSize() const {
    return std::uint64_t(blocks_ - 1) * Datacomp::BLOCK_SIZE + last_block_size_;
  }
  std::uint32_t PlainBlockSize(std::uint32_t block) const {
    return block + 1 == blocks_ ? last_block_size_ : Datacomp::BLOCK_SIZE;
  }
  std::uint32_t CompressedSize(std::uint32_t block) const { return sizes_[block]; }
  std::uint64_t BlockOffset(std::uint32_t block) const;

  // Turns one compressed block into plain bytes. False when the block does not decode.
  bool DecodeBlock(const std::uint8_t* compressed, std::uint32_t compressed_size,
                   std::uint8_t* out, std::uint32_t plain_size) const;

 private:
  bool ReadSizes(BitReader& bits, int size_bits, std::uint32_t header_size);

  std::uint32_t blocks_ = 0;
  std::uint32_t last_block_size_ = 0;
  std::array<std::uint32_t, Datacomp::MATCH_OFFSETS> match_offsets_{};
  // Block offsets in compact form: absolute for every 16th block, and per block a 16-bit distance
  // forward from the absolute before it (blocks 0-7 of a group) or from its own end back to the
  // absolute after it (blocks 8-15), which keeps every distance below 64 KiB.
  std::vector<std::uint32_t> group_offsets_;
  std::vector<std::uint16_t> distances_;
  std::vector<std::uint16_t> sizes_;
  HuffmanCode code_;
};

}  // namespace NalimovTablebases
