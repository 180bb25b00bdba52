#include "bitbases/bitmap_stream_check.h"

#include <bit>
#include <vector>

namespace BraskBitbases {

namespace {

constexpr std::uint32_t COOKIE_WITH_RUNS = 12347;  // low half; high half: containers - 1
constexpr std::uint32_t COOKIE_WITHOUT_RUNS = 12346;
constexpr std::uint32_t MAX_CONTAINERS = 65536;
constexpr std::uint32_t MAX_ARRAY_CARDINALITY = 4096;
constexpr std::size_t BITSET_BYTES = 8192;
constexpr std::uint32_t NO_OFFSET_THRESHOLD = 4;  // fewer containers with runs: no offset table
constexpr std::uint32_t BLOCK_VALUES = 65536;

// Little-endian reads that fail instead of passing the end.
class Reader {
 public:
  Reader(const std::uint8_t* bytes, std::size_t size) : bytes_(bytes), size_(size) {}
  bool Skip(std::size_t count) {
    if (count > size_ - position_) return false;
    position_ += count;
    return true;
  }
  bool U16(std::uint32_t& value) {
    if (2 > size_ - position_) return false;
    value = std::uint32_t(bytes_[position_]) | std::uint32_t(bytes_[position_ + 1]) << 8;
    position_ += 2;
    return true;
  }
  bool U32(std::uint32_t& value) {
    std::uint32_t low = 0, high = 0;
    if (4 > size_ - position_ || !U16(low) || !U16(high)) return false;
    value = low | high << 16;
    return true;
  }
  const std::uint8_t* Here() const { return bytes_ + position_; }
  std::size_t Left() const { return size_ - position_; }

 private:
  const std::uint8_t* bytes_;
  std::size_t size_;
  std::size_t position_ = 0;
};

bool RunContainerIsValid(Reader& in, std::uint32_t cardinality) {
  std::uint32_t runs = 0, count = 0, next_free = 0;
  if (!in.U16(runs)) return false;
  for (std::uint32_t i = 0; i < runs; ++i) {
    std::uint32_t start = 0, extra = 0;
    if (!in.U16(start) || !in.U16(extra)) return false;
    if (start < next_free || start + extra >= BLOCK_VALUES) return false;  // sorted, inside
    next_free = start + extra + 1;
    count += extra + 1;
  }
  return runs > 0 && count == cardinality;
}

bool ArrayContainerIsValid(Reader& in, std::uint32_t cardinality) {
  std::uint32_t previous = 0;
  for (std::uint32_t i = 0; i < cardinality; ++i) {
    std::uint32_t value = 0;
    if (!in.U16(value) || (i > 0 && value <= previous)) return false;
    previous = value;
  }
  return true;
}

bool BitsetContainerIsValid(Reader& in, std::uint32_t cardinality) {
  if (in.Left() < BITSET_BYTES) return false;
  std::uint32_t count = 0;
  for (std::size_t i = 0; i < BITSET_BYTES; ++i)
    count += std::uint32_t(std::popcount(in.Here()[i]));
  return in.Skip(BITSET_BYTES) && count == cardinality;
}

// The type follows from the flag and the count, as the reader decides it.
bool ContainerIsValid(Reader& in, bool is_run, std::uint32_t cardinality) {
  if (is_run) return RunContainerIsValid(in, cardinality);
  if (cardinality <= MAX_ARRAY_CARDINALITY) return ArrayContainerIsValid(in, cardinality);
  return BitsetContainerIsValid(in, cardinality);
}

}  // namespace

bool IsWellFormedBitmapStream(const std::uint8_t* bytes, std::size_t size) {
  Reader in(bytes, size);
  std::uint32_t cookie = 0, containers = 0;
  if (!in.U32(cookie)) return false;
  const bool with_runs = (cookie & 0xFFFF) == COOKIE_WITH_RUNS;
  std::vector<bool> is_run;
  if (with_runs) {
    containers = (cookie >> 16) + 1;
    const std::uint8_t* flags = in.Here();
    if (!in.Skip((containers + 7) / 8)) return false;
    for (std::uint32_t i = 0; i < containers; ++i) is_run.push_back((flags[i / 8] >> (i % 8)) & 1);
  } else if (cookie == COOKIE_WITHOUT_RUNS) {
    if (!in.U32(containers) || containers > MAX_CONTAINERS) return false;
    is_run.assign(containers, false);
  } else {
    return false;
  }
  // Each container needs four header bytes: a count beyond the file is refused before any work.
  if (std::size_t(containers) * 4 > in.Left()) return false;
  std::vector<std::uint32_t> cardinalities(containers);
  for (std::uint32_t i = 0, previous_key = 0; i < containers; ++i) {
    std::uint32_t key = 0, cardinality_less_one = 0;
    if (!in.U16(key) || !in.U16(cardinality_less_one)) return false;
    if (i > 0 && key <= previous_key) return false;
    previous_key = key;
    cardinalities[i] = cardinality_less_one + 1;
  }
  if ((!with_runs || containers >= NO_OFFSET_THRESHOLD) && !in.Skip(std::size_t(containers) * 4))
    return false;
  for (std::uint32_t i = 0; i < containers; ++i) {
    if (!ContainerIsValid(in, is_run[i], cardinalities[i])) return false;
  }
  return true;
}

}  // namespace BraskBitbases
