#include "bitbases/bit_array.h"

#include <gtest/gtest.h>

#include <random>

#include "bitbases/bitbase_test_support.h"
#include "support/temporary_directory.h"

using namespace BraskBitbases;

namespace {

constexpr std::uint32_t BITS = 1u << 20;

std::vector<std::uint8_t> ReadAll(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

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

TEST(BitArray, EntriesWriteAndReadBothBits) {
  BitArray array(BITS);
  for (int value : {3, 1, 2, 0, 2}) {
    array.Set2(100, value);
    EXPECT_EQ(array.Get2(100), value);
  }
  EXPECT_EQ(array.Get2(98), 0);
  EXPECT_EQ(array.Get2(102), 0);
  EXPECT_EQ(array.Get2(BITS - 2), 0);  // a block never touched
}

TEST(BitArray, RangesAreInclusiveInEitherOrder) {
  BitArray forward(BITS), backward(BITS);
  forward.SetRange(10, 21, true);
  backward.SetRange(21, 10, true);
  ExpectSameEntries(forward, backward);
  EXPECT_EQ(forward.Get2(8), 0);
  EXPECT_EQ(forward.Get2(10), 3);
  EXPECT_EQ(forward.Get2(20), 3);
  EXPECT_EQ(forward.Get2(22), 0);
  forward.SetRange(13, 11, false);
  EXPECT_EQ(forward.Get2(10), 1);
  EXPECT_EQ(forward.Get2(12), 0);
  EXPECT_EQ(forward.Get2(14), 3);
}

TEST(BitArray, SavedArraysLoadWithTheSameEntriesAndZeroPaddingChangesNothing) {
  TemporaryDirectory directory;
  BitArray original = SampleArray();
  original.Save(directory.File("sample"));
  ExpectSameEntries(BitArray(directory.File("sample"), BITS, 0), original);
  std::vector<std::uint8_t> bytes = ReadAll(directory.File("sample"));
  bytes.resize(bytes.size() + 4096, 0);
  WriteBytes(directory.File("padded"), bytes);
  ExpectSameEntries(BitArray(directory.File("padded"), BITS, 0), original);
  BitArray(BITS).Save(directory.File("empty"));
  ExpectSameEntries(BitArray(directory.File("empty"), BITS, 0), BitArray(BITS));
}

TEST(BitArray, MemoryLimitIsCheckedAfterTheLoad) {
  TemporaryDirectory directory;
  SampleArray().Save(directory.File("sample"));
  EXPECT_THROW(BitArray(directory.File("sample"), BITS, 1), BitArray_MemoryLimitReached);
  const std::size_t usage = BitArray(directory.File("sample"), BITS, 0).MemoryUsage();
  EXPECT_NO_THROW(BitArray(directory.File("sample"), BITS, usage));
  EXPECT_THROW(BitArray(directory.File("sample"), BITS, usage - 1), BitArray_MemoryLimitReached);
}

TEST(BitArray, FailuresAreIOExceptionsWithTheirTexts) {
  TemporaryDirectory directory;
  try {
    BitArray(directory.File("missing"), BITS, 0);
    FAIL() << "a missing file loaded";
  } catch (const BitArray_IOException& error) {
    EXPECT_EQ(error.Text(),
              "Error: Failed to map file '" + directory.File("missing") + "' to memory!");
  }
  WriteBytes(directory.File("empty"), {});
  EXPECT_THROW(BitArray(directory.File("empty"), BITS, 0), BitArray_IOException);
  EXPECT_THROW(SampleArray().Save(directory.File("no/such/directory")), BitArray_IOException);
  // Entries beyond the array's end: a file of a larger size class.
  SampleArray().Save(directory.File("large"));
  EXPECT_THROW(BitArray(directory.File("large"), BITS / 2, 0), BitArray_IOException);
}

// Damaged files: every one either loads or is refused with BitArray_IOException, and probing what
// loaded stays inside the array.
TEST(BitArray, FuzzTruncatedAndCorruptFilesNeverCrash) {
  TemporaryDirectory directory;
  SampleArray().Save(directory.File("sample"));
  const std::vector<std::uint8_t> good = ReadAll(directory.File("sample"));
  std::mt19937 random(20261123);
  int loaded = 0, refused = 0;
  for (int trial = 0; trial < 400; ++trial) {
    std::vector<std::uint8_t> bytes = good;
    if (trial % 4 == 0) {
      bytes.resize(random() % bytes.size());
    } else {
      for (int flips = 1 + int(random() % 8); flips > 0; --flips)
        bytes[random() % std::min<std::size_t>(bytes.size(), trial % 4 == 1 ? 64 : bytes.size())] ^=
            std::uint8_t(1u << (random() % 8));
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
