#include "bitbases/datacomp_file.h"

#include <algorithm>
#include <cstring>

namespace NalimovTablebases {

namespace Datacomp {
namespace {

constexpr std::uint32_t POLYNOMIAL = 0xEDB88320;

constexpr std::array<std::uint32_t, 256> MakeCheckTable() {
  std::array<std::uint32_t, 256> table{};
  for (std::uint32_t i = 0; i < 256; ++i) {
    std::uint32_t c = i;
    for (int step = 0; step < 8; ++step) c = (c & 1) ? c >> 1 : (c >> 1) ^ POLYNOMIAL;
    table[i] = c;
  }
  return table;
}

constexpr std::array<std::uint32_t, 256> CheckTable = MakeCheckTable();

}  // namespace

std::uint32_t HeaderCheckValue(const std::uint8_t* bytes, std::size_t count) {
  std::uint32_t crc = 0;
  for (std::size_t i = 0; i < count; ++i) crc = (crc >> 8) ^ CheckTable[(crc ^ bytes[i]) & 255];
  return crc;
}

std::uint32_t ReadBigEndian32(const std::uint8_t* bytes) {
  return std::uint32_t(bytes[0]) << 24 | std::uint32_t(bytes[1]) << 16 |
         std::uint32_t(bytes[2]) << 8 | bytes[3];
}

}  // namespace Datacomp

using namespace Datacomp;

namespace {

// Where the two bit streams of the header begin.
std::uint64_t FirstStreamStart(std::uint32_t blocks) { return FIXED_HEADER_SIZE + 8ull * blocks; }
std::uint64_t SecondStreamStart(std::uint32_t blocks, int size_bits) {
  return FirstStreamStart(blocks) + ((std::uint64_t(blocks) + 25) * size_bits + 7) / 8;
}

bool BannerIsValid(const std::uint8_t* bytes) {
  if (std::memcmp(bytes, BANNER_START.data(), BANNER_START.size()) != 0) return false;
  for (int i = int(BANNER_START.size()); i + 1 < BANNER_SIZE; ++i)
    if (bytes[i] == '\r' && bytes[i + 1] == '\n') return true;
  return false;
}

}  // namespace

HeaderStatus FixedHeader::Read(const std::uint8_t* bytes) {
  header_size = ReadBigEndian32(bytes + 64);
  size_bits = bytes[70];
  blocks = ReadBigEndian32(bytes + 72);
  if (!BannerIsValid(bytes) || header_size < MIN_HEADER_SIZE || size_bits == 0 ||
      size_bits > MAX_SIZE_BITS || bytes[71] != MATCH_OFFSETS || blocks == 0 ||
      ReadBigEndian32(bytes + 76) != FORMAT_MARK ||
      SecondStreamStart(blocks, size_bits) + 4 > header_size)
    return HeaderStatus::BROKEN;
  return size_bits == BLOCK_SIZE_BITS ? HeaderStatus::OK : HeaderStatus::UNSUPPORTED_BLOCK_SIZE;
}

HeaderStatus DatacompDecoderInfo::Parse(const FixedHeader& fixed,
                                        const std::vector<std::uint8_t>& header) {
  std::uint32_t end = fixed.header_size - 4;
  if (header.size() != fixed.header_size ||
      HeaderCheckValue(header.data(), end) != ReadBigEndian32(header.data() + end))
    return HeaderStatus::BROKEN;

  std::uint64_t first = FirstStreamStart(fixed.blocks);
  BitReader size_stream(header.data() + first, end - first);
  blocks_ = fixed.blocks;
  if (!ReadSizes(size_stream, fixed.size_bits, fixed.header_size)) return HeaderStatus::BROKEN;

  std::uint64_t second = SecondStreamStart(fixed.blocks, fixed.size_bits);
  BitReader code_stream(header.data() + second, end - second);
  std::uint8_t lengths[SYMBOLS];
  if (!ReadCodeLengths(code_stream, lengths, SYMBOLS) ||
      !code_.Build(lengths, SYMBOLS, DATA_CODE_WIDTH))
    return HeaderStatus::BROKEN;
  return HeaderStatus::OK;
}

bool DatacompDecoderInfo::ReadSizes(BitReader& bits, int size_bits, std::uint32_t header_size) {
  auto read_size = [&] {
    std::uint32_t size = bits.Read(size_bits);
    return size == 0 ? std::uint32_t{1} << size_bits : size;
  };
  sizes_.resize(blocks_);
  for (std::uint16_t& size : sizes_) size = std::uint16_t(read_size());
  last_block_size_ = read_size();
  for (std::uint32_t& offset : match_offsets_) offset = bits.Read(size_bits);
  if (bits.Overrun()) return false;

  group_offsets_.assign(blocks_ / 16 + 2, 0);
  distances_.resize(blocks_);
  std::vector<std::uint64_t> offsets(std::size_t(blocks_) + 16);
  std::uint64_t offset = header_size;
  for (std::size_t block = 0; block < offsets.size(); ++block) {
    offsets[block] = offset;
    if (block < blocks_) offset += sizes_[block];
  }
  if (offset > UINT32_MAX) return false;
  for (std::size_t group = 0; group < group_offsets_.size(); ++group)
    group_offsets_[group] = std::uint32_t(offsets[std::min(group * 16, offsets.size() - 1)]);
  for (std::uint32_t block = 0; block < blocks_; ++block) {
    std::uint32_t group = block >> 4;
    distances_[block] = std::uint16_t(
        (block & 8) == 0 ? offsets[block] - group_offsets_[group]
                         : group_offsets_[group + 1] - offsets[block] - sizes_[block]);
  }
  return true;
}

std::uint64_t DatacompDecoderInfo::BlockOffset(std::uint32_t block) const {
  std::uint32_t group = block >> 4;
  if ((block & 8) == 0) return std::uint64_t(group_offsets_[group]) + distances_[block];
  return std::uint64_t(group_offsets_[group + 1]) - distances_[block] - sizes_[block];
}

namespace {

// Length codes up to 14 are the length less one; above, a power of two and extra bits, with a
// wider form for the longest.
std::uint32_t MatchLength(int code, BitReader& bits) {
  if (code <= 14) return std::uint32_t(code) + 1;
  int n = code - 14;
  std::uint32_t base = std::uint32_t{1} << n;
  if (n == 17) {
    base = 2 * bits.Read(16) + 0x20000;
    n = 1;
  }
  return bits.Read(n) + base + 14;
}

}  // namespace

bool DatacompDecoderInfo::DecodeBlock(const std::uint8_t* compressed,
                                      std::uint32_t compressed_size, std::uint8_t* out,
                                      std::uint32_t plain_size) const {
  if (compressed_size == plain_size) {
    std::memcpy(out, compressed, plain_size);
    return true;
  }
  BitReader bits(compressed, compressed_size);
  std::uint32_t produced = 0;
  while (produced < plain_size) {
    int symbol = code_.Decode(bits);
    if (symbol < LITERALS) {
      out[produced++] = std::uint8_t(symbol);
      continue;
    }
    std::uint32_t distance = match_offsets_[(symbol - LITERALS) >> 5];
    std::uint32_t length = MatchLength((symbol - LITERALS) & 31, bits);
    if (distance == 0 || distance > produced || bits.Overrun()) return false;
    std::uint32_t stop = std::min(plain_size, produced + length);
    // Forward byte by byte: a match may repeat what it has just written.
    for (; produced < stop; ++produced) out[produced] = out[produced - distance];
  }
  return !bits.Overrun();
}

}  // namespace NalimovTablebases
