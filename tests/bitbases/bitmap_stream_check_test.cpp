#include "bitbases/bitmap_stream_check.h"

#include <gtest/gtest.h>

#include <roaring/roaring.hh>

using BraskBitbases::IsWellFormedBitmapStream;

namespace {

using Bytes = std::vector<std::uint8_t>;

void Put16(Bytes& bytes, std::uint32_t value) {
  bytes.push_back(std::uint8_t(value));
  bytes.push_back(std::uint8_t(value >> 8));
}

// One container with runs, in the format with the run flags: (start, extra values) pairs.
Bytes RunStream(std::uint32_t key_cardinality, std::initializer_list<std::pair<int, int>> runs) {
  Bytes bytes;
  Put16(bytes, 12347);
  Put16(bytes, 0);     // one container
  bytes.push_back(1);  // it holds runs
  Put16(bytes, 0);
  Put16(bytes, key_cardinality - 1);
  Put16(bytes, std::uint32_t(runs.size()));
  for (auto [start, extra] : runs) {
    Put16(bytes, std::uint32_t(start));
    Put16(bytes, std::uint32_t(extra));
  }
  return bytes;
}

// One array container in the format without runs.
Bytes ArrayStream(std::initializer_list<int> values, int key = 0) {
  Bytes bytes;
  Put16(bytes, 12346);
  Put16(bytes, 0);
  Put16(bytes, 1);  // containers, as 32 bits
  Put16(bytes, 0);
  Put16(bytes, std::uint32_t(key));
  Put16(bytes, std::uint32_t(values.size()) - 1);
  Put16(bytes, 0);  // offset table of one entry
  Put16(bytes, 0);
  for (int value : values) Put16(bytes, std::uint32_t(value));
  return bytes;
}

Bytes Serialised(const Roaring& bitmap) {
  Bytes bytes(bitmap.getSizeInBytes());
  bitmap.write(reinterpret_cast<char*>(bytes.data()));
  return bytes;
}

std::vector<Roaring> SampleBitmaps() {
  Roaring empty, sparse, dense, runs, many;
  for (std::uint32_t i = 0; i < 100; ++i) sparse.add(i * 7919);
  for (std::uint32_t i = 0; i < 20000; ++i) dense.add(i * 3);
  runs.addRange(5, 70000);
  runs.addRange(200000, 200001);
  runs.runOptimize();
  for (std::uint32_t key = 0; key < 9; ++key) many.addRange(key << 16, (key << 16) + key * 100 + 1);
  many.runOptimize();
  return {empty, sparse, dense, runs, many};
}

}  // namespace

TEST(BitmapStreamCheck, WhatTheLibraryWritesPassesAndEveryShorterPrefixFails) {
  for (const Roaring& bitmap : SampleBitmaps()) {
    Bytes bytes = Serialised(bitmap);
    EXPECT_TRUE(IsWellFormedBitmapStream(bytes.data(), bytes.size())) << bitmap.cardinality();
    for (std::size_t length = 0; length < bytes.size(); length += 1 + length / 16)
      EXPECT_FALSE(IsWellFormedBitmapStream(bytes.data(), length)) << length;
    bytes.resize(bytes.size() + 100, 0);  // zeros behind the stream are the file's padding
    EXPECT_TRUE(IsWellFormedBitmapStream(bytes.data(), bytes.size()));
  }
}

TEST(BitmapStreamCheck, FieldsThatWouldMisleadTheReader) {
  struct Case {
    const char* what;
    Bytes bytes;
    bool valid;
  };
  const Case cases[] = {
      {"runs", RunStream(12, {{0, 1}, {10, 9}}), true},
      {"touching runs", RunStream(4, {{0, 1}, {2, 1}}), true},
      {"a run past the block", RunStream(2000, {{65000, 1999}}), false},
      {"overlapping runs", RunStream(12, {{0, 5}, {4, 5}}), false},
      {"runs out of order", RunStream(4, {{10, 1}, {0, 1}}), false},
      {"run count against the header", RunStream(13, {{0, 1}, {10, 9}}), false},
      {"no run", RunStream(1, {}), false},
      {"array", ArrayStream({1, 5, 9}), true},
      {"array out of order", ArrayStream({1, 9, 5}), false},
      {"array with a repeat", ArrayStream({1, 5, 5}), false},
      {"unknown cookie", {0x39, 0x30, 0, 0, 0, 0, 0, 0}, false},
      {"containers beyond the file", {0x3a, 0x30, 0, 0, 0xff, 0xff, 0xff, 0xff}, false},
      {"nothing", {}, false},
  };
  for (const Case& c : cases)
    EXPECT_EQ(IsWellFormedBitmapStream(c.bytes.data(), c.bytes.size()), c.valid) << c.what;

  Bytes bitset = Serialised(SampleBitmaps()[2]);
  bitset.back() ^= 0x80;  // one bit more or less than the header counts
  EXPECT_FALSE(IsWellFormedBitmapStream(bitset.data(), bitset.size()));

  Bytes keys = Serialised(SampleBitmaps()[4]);
  // Descriptive header behind the cookie and two flag bytes: make the second key equal the first.
  keys[6 + 4] = keys[6];
  keys[6 + 5] = keys[7];
  EXPECT_FALSE(IsWellFormedBitmapStream(keys.data(), keys.size()));
}
