// The files beneath the bitbases: two-bit arrays, their bitmap streams, mapped and plain I/O.
#include "bitbases/bit_array.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <random>
#include <roaring/roaring.hh>

#include "bitbases/bitbase_test_support.h"
#include "bitbases/bitmap_stream_check.h"
#include "bitbases/memory_mapped_file.h"
#include "bitbases/portable_io.h"

using namespace BraskBitbases;
using BraskUtils::MemoryMappedFile;

namespace {

constexpr std::uint32_t BITS = 1u << 20;

// An array with entries in several kinds of block: scattered, dense runs, and a last entry.
BitArray SampleArray() {
  BitArray array(BITS);
  for (std::uint32_t i = 0; i < 4000; i += 2) array.Set2(i * 37 % (BITS / 2) * 2, int(i / 2 % 4));
  array.SetRange(300000, 400001, true);
  array.Set2(BITS - 2, 3);
  return array;
}

void ExpectSameEntries(const BitArray& a, const BitArray& b) {
  int differences = 0;
  for (std::uint32_t index = 0; index < BITS; index += 2)
    differences += a.Get2(index) != b.Get2(index);
  EXPECT_EQ(differences, 0);
}

}  // namespace

TEST(BitArray, EntriesAndInclusiveRangesInEitherOrder) {
  BitArray array(BITS), forward(BITS), backward(BITS);
  for (int value : {3, 1, 2, 0, 2}) {
    array.Set2(100, value);
    EXPECT_EQ(array.Get2(100), value);
  }
  EXPECT_EQ(array.Get2(98) + array.Get2(102) + array.Get2(BITS - 2), 0);
  forward.SetRange(10, 21, true);
  backward.SetRange(21, 10, true);
  ExpectSameEntries(forward, backward);
  forward.SetRange(13, 11, false);
  // Entries 8 to 22: both bits of 10 to 20 were set, then bits 11 to 13 cleared.
  const int expected[] = {0, 1, 0, 3, 3, 3, 3, 0};
  for (std::uint32_t i = 0; i < 8; ++i) EXPECT_EQ(forward.Get2(8 + 2 * i), expected[i]) << i;
}

// Zero padding behind the stream changes nothing; the memory limit is checked after the load.
TEST(BitArray, SavedArraysLoadTheSameEntriesOrFailWithTheirTexts) {
  TemporaryDirectory directory;
  BitArray original = SampleArray();
  original.Save(directory.File("sample"));
  std::vector<std::uint8_t> bytes = ReadBytes(directory.File("sample"));
  bytes.resize(bytes.size() + 4096, 0);
  WriteBytes(directory.File("padded"), bytes);
  ExpectSameEntries(BitArray(directory.File("padded"), BITS, 0), original);
  BitArray(BITS).Save(directory.File("empty"));
  ExpectSameEntries(BitArray(directory.File("empty"), BITS, 0), BitArray(BITS));
  const std::size_t usage = BitArray(directory.File("sample"), BITS, 0).MemoryUsage();
  EXPECT_NO_THROW(BitArray(directory.File("sample"), BITS, usage));
  EXPECT_THROW(BitArray(directory.File("sample"), BITS, usage - 1), BitArray_MemoryLimitReached);

  EXPECT_EQ(FailureOf<BitArray_IOException>([&] { BitArray(directory.File("missing"), BITS, 0); }),
            "Error: Failed to map file '" + directory.File("missing") + "' to memory!");
  WriteBytes(directory.File("empty"), {});
  EXPECT_THROW(BitArray(directory.File("empty"), BITS, 0), BitArray_IOException);
  EXPECT_THROW(original.Save(directory.File("no/such/directory")), BitArray_IOException);
  // Entries beyond the array's end: a file of a larger size class.
  EXPECT_THROW(BitArray(directory.File("sample"), BITS / 2, 0), BitArray_IOException);
}

// Damaged files: every one either loads or is refused with BitArray_IOException, and probing what
// loaded stays inside the array.
TEST(BitArray, FuzzTruncatedAndCorruptFilesNeverCrash) {
  TemporaryDirectory directory;
  SampleArray().Save(directory.File("sample"));
  const std::vector<std::uint8_t> good = ReadBytes(directory.File("sample"));
  std::mt19937 random(20261123);
  int loaded = 0, refused = 0;
  for (int trial = 0; trial < 400; ++trial) {
    std::vector<std::uint8_t> bytes = good;
    if (trial % 4 == 0) {
      bytes.resize(random() % bytes.size());
    } else {
      // A quarter of the trials damage the header alone.
      const std::size_t reach =
          trial % 4 == 1 ? std::min<std::size_t>(64, bytes.size()) : bytes.size();
      for (int flips = 1 + int(random() % 8); flips > 0; --flips)
        bytes[random() % reach] ^= std::uint8_t(1u << (random() % 8));
    }
    WriteBytes(directory.File("damaged"), bytes);
    try {
      BitArray array(directory.File("damaged"), BITS, 0);
      for (std::uint32_t index = 0; index < BITS; index += 2 * 997) array.Get2(index);
      ++loaded;
    } catch (const BitArray_IOException&) {
      ++refused;
    }
  }
  EXPECT_EQ(loaded + refused, 400);
  EXPECT_GT(refused, 0);
}

namespace {

using BraskBitbases::IsWellFormedBitmapStream;
using Bytes = std::vector<std::uint8_t>;

Bytes Words(std::initializer_list<std::uint32_t> words) {
  Bytes bytes;
  for (std::uint32_t word : words)
    bytes.insert(bytes.end(), {std::uint8_t(word), std::uint8_t(word >> 8)});
  return bytes;
}

Bytes operator+(Bytes a, const Bytes& b) {
  a.insert(a.end(), b.begin(), b.end());
  return a;
}

// One run container, in the format with run flags: (start, extra values) pairs.
Bytes RunStream(std::uint32_t cardinality, std::initializer_list<std::uint32_t> runs) {
  const std::uint32_t count = std::uint32_t(runs.size() / 2);
  return Words({12347, 0}) + Bytes{1} + Words({0, cardinality - 1, count}) + Words(runs);
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
  Bytes bitset = Serialised(SampleBitmaps()[2]), keys = Serialised(SampleBitmaps()[4]);
  bitset.back() ^= 0x80;
  // Descriptive header behind the cookie and two flag bytes: the second key made the first.
  keys[6 + 4] = keys[6];
  keys[6 + 5] = keys[7];
  const struct {
    const char* what;
    Bytes bytes;
    bool valid;
  } cases[] = {
      {"runs", RunStream(12, {0, 1, 10, 9}), true},
      {"touching runs", RunStream(4, {0, 1, 2, 1}), true},
      {"a run past the block", RunStream(2000, {65000, 1999}), false},
      {"overlapping runs", RunStream(12, {0, 5, 4, 5}), false},
      {"runs out of order", RunStream(4, {10, 1, 0, 1}), false},
      {"run count against the header", RunStream(13, {0, 1, 10, 9}), false},
      {"no run", RunStream(1, {}), false},
      {"unknown cookie", {0x39, 0x30, 0, 0, 0, 0, 0, 0}, false},
      {"containers beyond the file", {0x3a, 0x30, 0, 0, 0xff, 0xff, 0xff, 0xff}, false},
      {"nothing", {}, false},
      {"a bitset of one bit more or less than the header counts", bitset, false},
      {"a repeated key", keys, false},
  };
  for (const auto& c : cases)
    EXPECT_EQ(IsWellFormedBitmapStream(c.bytes.data(), c.bytes.size()), c.valid) << c.what;
}

// A writable mapping creates the file and writes through; a shorter one keeps what lies beyond.
TEST(MemoryMappedFile, WritableMappingCreatesAndKeepsTails) {
  TemporaryDirectory dir;
  {
    MemoryMappedFile created(dir.File("new"), 5000);
    EXPECT_EQ(created.GetData()[4999], 0);
    created.GetData()[10] = 42;
  }
  { MemoryMappedFile shorter(dir.File("new"), 100); }
  std::vector<std::uint8_t> bytes;
  BraskPortableIO::ReadFile(dir.File("new"), bytes);
  ASSERT_EQ(bytes.size(), 5000u);
  EXPECT_EQ(bytes[10], 42);
  std::uint8_t byte = 1;
  EXPECT_EQ(FailureOf<BraskPortableIO::IOException>(
                [&] { BraskPortableIO::WriteFile(dir.File("no/such/directory"), &byte, 1); }),
            "Could not open file");
  EXPECT_THROW(BraskPortableIO::ReadFile(dir.File("missing"), bytes), BraskPortableIO::IOException);
}
