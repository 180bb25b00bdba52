#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "bitbases/nalimov_reader.h"
#include "bitbases/tablebases.h"
#include "support/datacomp_writer.h"
#include "support/temporary_directory.h"

using namespace NalimovTablebases;

namespace {

constexpr int KQK = 5;
constexpr int KNK = 2;

// Stand-in table content with runs (for matches that overlap their own output), scattered
// values (for literals) and a few "no result" bytes.
std::vector<std::uint8_t> SyntheticTable(std::uint64_t entries, unsigned seed) {
  std::vector<std::uint8_t> bytes(entries);
  std::mt19937 random(seed);
  for (std::uint64_t i = 0; i < entries;) {
    std::uint8_t value = std::uint8_t(random() % 40 + 90);
    std::uint64_t run = random() % 4 == 0 ? random() % 300 : 1;
    for (std::uint64_t k = 0; k <= run && i < entries; ++k) bytes[i++] = value;
  }
  return bytes;
}

int ExpectedValue(std::uint8_t byte) {
  int c = std::int8_t(byte);
  return c == 0 ? 0 : c > 0 ? c + ENTRY_VALUE_OFFSET : c - ENTRY_VALUE_OFFSET;
}

// Writes kqk and knk for both sides, plain or compressed under the given name suffix.
struct TableSet {
  std::vector<std::uint8_t> content[2][2];  // [kqk, knk][side]

  TableSet() {
    for (int t = 0; t < 2; ++t)
      for (int side = 0; side < 2; ++side)
        content[t][side] = SyntheticTable(EntriesOf(t == 0 ? KQK : KNK, side), 17 + 2 * t + side);
  }

  void Write(const TemporaryDirectory& dir, const std::string& compressed_suffix = "",
             const DatacompOptions& options = {}) const {
    for (int t = 0; t < 2; ++t)
      for (int side = 0; side < 2; ++side) {
        int id = t == 0 ? KQK : KNK;
        std::string base = std::string(Descriptors[id].name);
        std::string ext = side == 0 ? "nbw" : "nbb";
        if (compressed_suffix.empty()) {
          WriteBytes(dir.File(base + "." + ext), content[t][side]);
        } else {
          std::string name = compressed_suffix == ".emd"    ? base + "." + ext + ".emd"
                             : compressed_suffix == "_.emd" ? base + "_" + ext + ".emd"
                             : compressed_suffix == "__emd" ? base + "_" + ext + "_emd"
                                                            : base + ext + ".emd";
          WriteBytes(dir.File(name), CompressTablebase(content[t][side], options));
        }
      }
  }

  // Reads entries in a scattered order, twice, and counts the mismatches. With a small stride
  // every entry is read; a large one spares the tests that make each read miss the cache.
  int Mismatches(Reader& reader, bool expect_results, std::uint64_t stride = 1) const {
    int mismatches = 0;
    for (int pass = 0; pass < 2; ++pass)
      for (int t = 0; t < 2; ++t)
        for (int side = 0; side < 2; ++side) {
          int id = t == 0 ? KQK : KNK;
          const auto& bytes = content[t][side];
          for (std::uint64_t k = 0; k < bytes.size(); k += stride) {
            std::uint64_t index = (k * 7919 + pass * 131) % bytes.size();
            int expected = expect_results ? ExpectedValue(bytes[index]) : NO_RESULT;
            mismatches += reader.ReadEntry(id, side, index) != expected;
          }
        }
    return mismatches;
  }
};

std::string CaptureInitialize(Reader& reader, const std::string& path, std::size_t cache) {
  testing::internal::CaptureStdout();
  try {
    reader.Initialize(path, cache);
  } catch (...) {
    testing::internal::GetCapturedStdout();
    throw;
  }
  return testing::internal::GetCapturedStdout();
}

}  // namespace

TEST(NalimovReader, PlainAndCompressedFilesGiveTheSameEntriesThroughEveryCacheSize) {
  TableSet tables;
  TemporaryDirectory plain, compressed;
  tables.Write(plain);
  tables.Write(compressed, ".emd");
  for (std::size_t cache : {std::size_t{0}, std::size_t{32}, std::size_t{8259}, std::size_t{8260},
                            std::size_t{3 * 8260}, std::size_t{1} << 22}) {
    bool has_entries = cache >= BlockCache::ENTRY_BYTES;
    for (const TemporaryDirectory* dir : {&plain, &compressed}) {
      Reader reader;
      EXPECT_EQ(reader.Initialize(dir->Path(), cache), 3);
      EXPECT_EQ(reader.RegisteredFiles(), 4);
      EXPECT_EQ(tables.Mismatches(reader, has_entries, cache < (1 << 20) ? 11 : 1), 0)
          << "cache " << cache;
    }
  }
}

TEST(NalimovReader, EveryNameFormAndEveryCodeShapeDecodes) {
  TableSet tables;
  for (std::string suffix : {"_.emd", "__emd", "short"}) {
    TemporaryDirectory dir;
    tables.Write(dir, suffix);
    Reader reader;
    CaptureInitialize(reader, dir.Path().string(), 1 << 20);
    EXPECT_EQ(reader.RegisteredFiles(), 4) << suffix;
    EXPECT_EQ(tables.Mismatches(reader, true), 0) << suffix;
  }
  // Codes past the 13-bit first level, literals only, and the lengths in the file are coded.
  for (DatacompOptions options : {DatacompOptions{DatacompOptions::Code::ALL_SYMBOLS},
                                  DatacompOptions{DatacompOptions::Code::FROM_DATA, false}}) {
    TemporaryDirectory dir;
    tables.Write(dir, ".emd", options);
    Reader reader;
    reader.Initialize(dir.Path().string(), 1 << 16);
    EXPECT_EQ(tables.Mismatches(reader, true), 0);
  }
}

TEST(NalimovReader, CodesThatConsumeNoBits) {
  // A knk of draws only: every code length 0. A kqk of one repeated byte: a single symbol.
  TemporaryDirectory dir;
  std::vector<std::uint8_t> draws(EntriesOf(KNK, 0), 0);
  std::vector<std::uint8_t> repeated(EntriesOf(KQK, 1), 100);
  WriteBytes(dir.File("knk.nbw.emd"), CompressTablebase(draws, {DatacompOptions::Code::ALL_ZERO}));
  WriteBytes(dir.File("kqk.nbb.emd"),
             CompressTablebase(repeated, {DatacompOptions::Code::SINGLE_SYMBOL}));
  Reader reader;
  reader.Initialize(dir.Path().string(), 1 << 16);
  EXPECT_EQ(reader.ReadEntry(KNK, 0, 0), 0);
  EXPECT_EQ(reader.ReadEntry(KNK, 0, draws.size() - 1), 0);
  EXPECT_EQ(reader.ReadEntry(KQK, 1, 12345), 100 + ENTRY_VALUE_OFFSET);
  EXPECT_EQ(reader.ReadEntry(KQK, 1, repeated.size() - 1), 100 + ENTRY_VALUE_OFFSET);
}

TEST(NalimovReader, MatchesMakeTheFileSmall) {
  // Long runs only compress through matches that copy from a byte or two behind.
  std::vector<std::uint8_t> runs(EntriesOf(KQK, 0));
  for (std::size_t i = 0; i < runs.size(); ++i) runs[i] = std::uint8_t((i / 1000) % 2 ? 7 : i % 2);
  std::vector<std::uint8_t> file = CompressTablebase(runs);
  EXPECT_LT(file.size(), runs.size() / 20);
  TemporaryDirectory dir;
  WriteBytes(dir.File("kqk.nbw.emd"), file);
  Reader reader;
  reader.Initialize(dir.Path().string(), 1 << 16);
  int mismatches = 0;
  for (std::size_t i = 0; i < runs.size(); ++i)
    mismatches += reader.ReadEntry(KQK, 0, i) != ExpectedValue(runs[i]);
  EXPECT_EQ(mismatches, 0);
}

TEST(NalimovReader, InitializationFailures) {
  TemporaryDirectory empty;
  Reader reader;
  try {
    reader.Initialize(empty.Path(), 1 << 16);
    FAIL();
  } catch (const NalimovException& e) {
    EXPECT_STREQ(e.what(), "Could not open tablebases. Is the path correct?");
  }

  TableSet tables;
  TemporaryDirectory dir;
  tables.Write(dir);
  try {
    reader.Initialize(dir.Path().string(), 31);
    FAIL();
  } catch (const NalimovException& e) {
    EXPECT_STREQ(e.what(), "Increase the cache size, because it is too small.");
  }
  // The path list is split at three separators and empty elements are harmless.
  EXPECT_EQ(reader.Initialize(empty.Path().string() + ",;" + dir.Path().string() + ":", 0), 3);
  EXPECT_EQ(reader.RegisteredFiles(), 4);
  EXPECT_EQ(reader.ReadEntry(KQK, 0, 0), NO_RESULT);  // no cache, no blocks
}

TEST(NalimovReader, WrapperReportsAndForgetsEarlierRegistrations) {
  TableSet tables;
  TemporaryDirectory dir, empty;
  tables.Write(dir);
  EXPECT_EQ(BraskTablebases::InitTablebases(dir.Path().string(), 1 << 16), 3);
  EXPECT_TRUE(BraskTablebases::GetTablebaseStatus().loaded);
  try {
    BraskTablebases::InitTablebases(empty.Path(), 1 << 16);
    FAIL();
  } catch (const BraskTablebases::TB_Exception& e) {
    EXPECT_STREQ(e.what(),
                 "Could not initialize Nalimov tablebases.\nReason: Could not open tablebases. "
                 "Is the path correct?");
  }
  BraskTablebases::TablebaseStatus status = BraskTablebases::GetTablebaseStatus();
  EXPECT_FALSE(status.loaded);
  EXPECT_EQ(status.files, 0);
  EXPECT_EQ(BraskTablebases::CheckedCacheSize(1 << 20), 1u << 20);
  EXPECT_EQ(BraskTablebases::CheckedCacheSize(-1), 0x7FFFFFFFu);
  EXPECT_EQ(BraskTablebases::CheckedCacheSize(std::int64_t{1} << 33), 0x7FFFFFFFu);
  EXPECT_EQ(BraskTablebases::DescribeProbe(1, -32767), "result=-32767");
  EXPECT_EQ(BraskTablebases::DescribeProbe(2, 0), "not found");
  EXPECT_EQ(BraskTablebases::DescribeProbe(0, 0), "disabled (not loaded)");
  EXPECT_EQ(BraskTablebases::DescribeProbe(3, 0), "queued (this should never happen!)");
}

TEST(NalimovReader, BrokenFilesAreReportedAndLeftOut) {
  TableSet tables;
  const auto& kqk_white = tables.content[0][0];
  std::vector<std::uint8_t> good = CompressTablebase(kqk_white);
  DatacompLayout layout = ReadLayout(good);

  struct Case {
    std::string file;
    std::vector<std::uint8_t> bytes;
    std::string message;
  };
  std::vector<Case> cases;
  std::vector<std::uint8_t> longer = kqk_white;
  longer.push_back(0);
  cases.push_back({"kqk.nbw", longer, "kqk.nbw corrupted 25629 0 25630\n"});
  std::vector<std::uint8_t> banner = good;
  banner[3] = 'X';
  cases.push_back({"kqk.nbw.emd", banner, " - file broken\n"});
  std::vector<std::uint8_t> check = good;
  check[layout.header_size - 1] ^= 1;
  cases.push_back({"kqk.nbw.emd", check, " - file broken\n"});
  std::vector<std::uint8_t> mark = good;
  mark[79] ^= 1;
  cases.push_back({"kqk.nbw.emd", mark, " - file broken\n"});
  std::vector<std::uint8_t> cut_header(good.begin(), good.begin() + layout.header_size - 10);
  cases.push_back({"kqk.nbw.emd", cut_header, " - file broken\n"});
  std::vector<std::uint8_t> tiny(good.begin(), good.begin() + 40);
  cases.push_back({"kqk.nbw.emd", tiny, " - file broken\n"});
  std::vector<std::uint8_t> shorter(kqk_white.begin(), kqk_white.end() - 1);
  cases.push_back({"kqk.nbw.emd", CompressTablebase(shorter), "kqk.nbw.emd corrupted 25629 0 25628\n"});
  cases.push_back({"kqk.nbw.emd", CompressTablebase(kqk_white, {DatacompOptions::Code::FROM_DATA,
                                                                true, 12}),
                   "kqk.nbw.emd: Unsupported block size 4096\n"});

  for (const Case& c : cases) {
    TemporaryDirectory dir;
    WriteBytes(dir.File(c.file), c.bytes);
    WriteBytes(dir.File("knk.nbw"), tables.content[1][0]);
    Reader reader;
    std::string output = CaptureInitialize(reader, dir.Path().string(), 1 << 16);
    EXPECT_NE(output.find("*** "), std::string::npos) << c.message;
    EXPECT_NE(output.find(c.message), std::string::npos) << output;
    EXPECT_FALSE(reader.IsRegistered(KQK, 0)) << c.message;
    EXPECT_EQ(reader.ReadEntry(KQK, 0, 0), NO_RESULT);
    EXPECT_TRUE(reader.IsRegistered(KNK, 0));
  }
}

TEST(NalimovReader, TruncatedBlocksMakeThePartAbsent) {
  TableSet tables;
  std::vector<std::uint8_t> file = CompressTablebase(tables.content[0][0]);
  file.resize(file.size() - 50);
  TemporaryDirectory dir;
  WriteBytes(dir.File("kqk.nbw.emd"), file);
  Reader reader;
  reader.Initialize(dir.Path().string(), 1 << 16);
  ASSERT_TRUE(reader.IsRegistered(KQK, 0));
  EXPECT_EQ(reader.ReadEntry(KQK, 0, 0), ExpectedValue(tables.content[0][0][0]));
  EXPECT_EQ(reader.ReadEntry(KQK, 0, EntriesOf(KQK, 0) - 1), NO_RESULT);
  EXPECT_FALSE(reader.IsRegistered(KQK, 0));
  EXPECT_EQ(reader.ReadEntry(KQK, 0, 0), NO_RESULT);
}

// Any entry a byte of a table can give, or "no result" where the damage was seen.
bool PlausibleEntry(int value) {
  return value == NO_RESULT || value == 0 || std::abs(value) >= ENTRY_VALUE_OFFSET - 128;
}

// Damaged files: every read stays inside the file (the sanitizers watch this test) and gives an
// entry a table could hold or "no result", the same again on a second read unless the damage has
// meanwhile made the part absent; a damaged header is refused or read the same way.
TEST(NalimovReaderFuzz, DamagedFilesGivePlausibleEntriesOrNone) {
  TableSet tables;
  const std::vector<std::uint8_t> good = CompressTablebase(tables.content[0][0]);
  const DatacompLayout layout = ReadLayout(good);
  std::mt19937 random(5);
  int refused = 0, exact = 0;
  for (int trial = 0; trial < 70; ++trial) {
    std::vector<std::uint8_t> bad = good;
    const bool header = trial >= 10;
    for (int k = 0; k < (header ? 1 : 20); ++k) {
      const std::size_t body = bad.size() - layout.header_size;
      bad[header ? random() % layout.header_size : layout.header_size + random() % body] =
          std::uint8_t(random());
    }
    TemporaryDirectory dir;
    WriteBytes(dir.File("kqk.nbw.emd"), bad);
    Reader reader;
    try {
      CaptureInitialize(reader, dir.Path().string(), 2 * 8260);
    } catch (const NalimovException&) {
      ++refused;
      continue;
    }
    for (std::uint64_t i = 0; i < EntriesOf(KQK, 0); i += header ? 997 : 97) {
      const int first = reader.ReadEntry(KQK, 0, i), second = reader.ReadEntry(KQK, 0, i);
      ASSERT_TRUE(PlausibleEntry(first)) << "trial " << trial << " entry " << i << ": " << first;
      EXPECT_TRUE(second == first || second == NO_RESULT) << trial << " " << i;
      exact += first == ExpectedValue(tables.content[0][0][i]);
    }
  }
  EXPECT_GT(exact, 0);  // undamaged blocks still read true
  EXPECT_LT(refused, 60);
}
