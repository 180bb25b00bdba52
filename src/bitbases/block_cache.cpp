#include "bitbases/block_cache.h"

namespace NalimovTablebases {

bool BlockCache::Set(std::size_t bytes) {
  headers_.clear();
  blocks_.clear();
  headers_.shrink_to_fit();
  blocks_.shrink_to_fit();
  if (bytes >= MIN_BYTES) {
    std::size_t entries = bytes / ENTRY_BYTES;
    headers_.resize(entries);
    blocks_.resize(entries * BLOCK_BYTES);
  }
  Clear();
  return bytes >= MIN_BYTES;
}

void BlockCache::Clear() {
  newest_ = oldest_ = NONE;
  free_ = headers_.empty() ? NONE : 0;
  for (std::size_t i = 0; i < headers_.size(); ++i)
    headers_[i].older = i + 1 < headers_.size() ? std::int32_t(i + 1) : NONE;
  for (auto& table : buckets_)
    for (auto& side : table) side.fill(NONE);
}

const std::uint8_t* BlockCache::Find(int id, int side, std::uint32_t block) {
  if (headers_.empty()) return nullptr;
  std::int32_t& head = BucketHead(id, side, block);
  for (std::int32_t e = head; e != NONE; e = headers_[e].bucket_older) {
    const Header& h = headers_[e];
    if (h.id != id || h.side != side || h.block != block) continue;
    UnlinkBucket(e);
    UnlinkGlobal(e);
    LinkAtHead(e);
    return BlockOf(e);
  }
  return nullptr;
}

int BlockCache::Take() {
  std::int32_t entry = free_;
  if (entry != NONE) {
    free_ = headers_[entry].older;
    return entry;
  }
  entry = oldest_;
  if (entry == NONE) return NONE;
  UnlinkGlobal(entry);
  UnlinkBucket(entry);
  return entry;
}

void BlockCache::Insert(int entry, int id, int side, std::uint32_t block) {
  Header& h = headers_[entry];
  h.id = std::int16_t(id);
  h.side = std::int16_t(side);
  h.block = block;
  LinkAtHead(entry);
}

void BlockCache::Release(int entry) {
  headers_[entry].older = free_;
  free_ = entry;
}

void BlockCache::UnlinkGlobal(std::int32_t entry) {
  Header& h = headers_[entry];
  (h.newer == NONE ? newest_ : headers_[h.newer].older) = h.older;
  (h.older == NONE ? oldest_ : headers_[h.older].newer) = h.newer;
}

void BlockCache::UnlinkBucket(std::int32_t entry) {
  Header& h = headers_[entry];
  if (h.bucket_newer == NONE) BucketHead(h.id, h.side, h.block) = h.bucket_older;
  else headers_[h.bucket_newer].bucket_older = h.bucket_older;
  if (h.bucket_older != NONE) headers_[h.bucket_older].bucket_newer = h.bucket_newer;
}

void BlockCache::LinkAtHead(std::int32_t entry) {
  Header& h = headers_[entry];
  h.newer = NONE;
  h.older = newest_;
  (newest_ == NONE ? oldest_ : headers_[newest_].newer) = entry;
  newest_ = entry;

  std::int32_t& head = BucketHead(h.id, h.side, h.block);
  h.bucket_newer = NONE;
  h.bucket_older = head;
  if (head != NONE) headers_[head].bucket_newer = entry;
  head = entry;
}

}  // namespace NalimovTablebases
