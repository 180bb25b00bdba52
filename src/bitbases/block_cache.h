// The tablebase reader's cache of decoded 8 KiB blocks: a fixed number of entries carved from one
// memory budget, a global least-recently-used list, and per table part 32 buckets chosen by the
// low bits of the block number. Probes never allocate: every entry exists from Set on.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "bitbases/tablebase_descriptors.h"

namespace NalimovTablebases {

class BlockCache {
 public:
  // What one entry costs of the budget: a 32-byte header and the block with decoder slack.
  static constexpr std::size_t ENTRY_BYTES = 8260;
  static constexpr std::size_t MIN_BYTES = 32;
  static constexpr std::size_t BLOCK_BYTES = 8192;
  static constexpr int BUCKETS = 32;

  // Drops all blocks and makes room for bytes / ENTRY_BYTES of them. False below MIN_BYTES,
  // which leaves no cache at all. Throws std::bad_alloc.
  bool Set(std::size_t bytes);
  void Clear();

  std::size_t Entries() const { return headers_.size(); }

  // The block if cached, now the most recently used; nullptr if not.
  const std::uint8_t* Find(int id, int side, std::uint32_t block);

  // An entry to fill: a free one, else the least recently used, taken out of every list. -1 when
  // the cache has no entries.
  int Take();
  std::uint8_t* BlockOf(int entry) { return &blocks_[std::size_t(entry) * BLOCK_BYTES]; }
  // The filled entry becomes the most recently used block of its part.
  void Insert(int entry, int id, int side, std::uint32_t block);
  // A taken entry that could not be filled.
  void Release(int entry);

 private:
  static constexpr std::int32_t NONE = -1;

  struct Header {
    std::int16_t id;
    std::int16_t side;
    std::uint32_t block;
    std::int32_t newer, older;                 // global list; free entries chain through older
    std::int32_t bucket_newer, bucket_older;   // list of the bucket
  };

  std::int32_t& BucketHead(int id, int side, std::uint32_t block) {
    return buckets_[std::size_t(id)][std::size_t(side)][block % BUCKETS];
  }
  void UnlinkGlobal(std::int32_t entry);
  void UnlinkBucket(std::int32_t entry);
  void LinkAtHead(std::int32_t entry);

  std::vector<Header> headers_;
  std::vector<std::uint8_t> blocks_;
  std::int32_t newest_ = NONE, oldest_ = NONE, free_ = NONE;
  std::array<std::array<std::array<std::int32_t, BUCKETS>, 2>, TABLE_COUNT + 1> buckets_{};
};

}  // namespace NalimovTablebases
