#include "bitbases/nalimov_reader.h"

#include <gtest/gtest.h>

#include <random>

#include "bitbases/bitbase_test_support.h"
#include "bitbases/datacomp_file.h"
#include "bitbases/huffman_code.h"
#include "bitbases/tablebases.h"
#include "support/terminal_capture.h"

using namespace NalimovTablebases;

namespace {

constexpr int KQK = 5;
constexpr int KNK = 2;
constexpr std::size_t CACHE = 1 << 16;

// Stand-in table content with runs (for matches that overlap their own output), scattered
// values (for literals) and a few "no result" bytes.
std::vector<std::uint8_t> SyntheticTable(std::uint64_t entries, unsigned seed) {
  std::vector<std::uint8_t> bytes(entries);
  std::mt19937 random(seed);
  for (std::uint64_t i = 0; i < entries;) {
    const std::uint8_t value = std::uint8_t(random() % 40 + 90);
    const std::uint64_t run = random() % 4 == 0 ? random() % 300 : 1;
    for (std::uint64_t k = 0; k <= run && i < entries; ++k) bytes[i++] = value;
  }
  return bytes;
}

int ExpectedValue(std::uint8_t byte) {
  const int c = std::int8_t(byte);
  return c == 0 ? 0 : c > 0 ? c + ENTRY_VALUE_OFFSET : c - ENTRY_VALUE_OFFSET;
}

// kqk and knk for both sides; [t][side] with t 0 for kqk.
struct TableSet {
  std::vector<std::uint8_t> content[2][2];

  TableSet() {
    for (int f = 0; f < 4; ++f)
      content[f / 2][f % 2] = SyntheticTable(EntriesOf(Id(f / 2), f % 2), 17 + f);
  }
  static int Id(int t) { return t == 0 ? KQK : KNK; }

  // form: the file name, B standing for the table and E for the side's extension ("B.E.emd").
  void Write(const TemporaryDirectory& dir, const std::string& form,
             const DatacompOptions* options) const {
    for (int f = 0; f < 4; ++f) {
      std::string file = form;
      file.replace(file.find('E'), 1, f % 2 ? "nbb" : "nbw");
      file.replace(file.find('B'), 1, Descriptors[Id(f / 2)].name);
      const auto& bytes = content[f / 2][f % 2];
      WriteBytes(dir.File(file), options ? CompressTablebase(bytes, *options) : bytes);
    }
  }

  // Reads entries in a scattered order, twice, and counts the mismatches. A large stride spares
  // the tests that make each read miss the cache.
  int Mismatches(Reader& reader, bool expect_results, std::uint64_t stride = 1) const {
    int mismatches = 0;
    for (int pass = 0; pass < 2; ++pass)
      for (int f = 0; f < 4; ++f) {
        const auto& bytes = content[f / 2][f % 2];
        for (std::uint64_t k = 0; k < bytes.size(); k += stride) {
          const std::uint64_t index = (k * 7919 + pass * 131) % bytes.size();
          const int expected = expect_results ? ExpectedValue(bytes[index]) : NO_RESULT;
          mismatches += reader.ReadEntry(Id(f / 2), f % 2, index) != expected;
        }
      }
    return mismatches;
  }
};

std::string Quietly(Reader& reader, const std::string& path, std::size_t cache) {
  TerminalCapture capture;
  reader.Initialize(path, cache);
  return capture.Text();
}

}  // namespace

TEST(NalimovReader, EveryFileFormReadsTheSameEntriesThroughEveryCacheSize) {
  using Shape = DatacompOptions::Code;
  const TableSet tables;
  const DatacompOptions usual, all_symbols{Shape::ALL_SYMBOLS}, literals{Shape::FROM_DATA, false};
  const struct {
    std::string form;
    const DatacompOptions* options;
    bool every_cache = false;
  } cases[] = {
      {"B.E", nullptr, true}, {"B.E.emd", &usual, true}, {"B_E.emd", &usual},
      {"B_E_emd", &usual},    {"BE.emd", &usual},
      // Codes past the 13-bit first level, and literals only.
      {"B.E.emd", &all_symbols}, {"B.E.emd", &literals},
  };
  for (const auto& c : cases) {
    TemporaryDirectory dir;
    tables.Write(dir, c.form, c.options);
    std::vector<std::size_t> caches = {std::size_t{1} << 20};
    if (c.every_cache) caches = {0, 32, 8259, 8260, 3 * 8260, std::size_t{1} << 22};
    for (std::size_t cache : caches) {
      SCOPED_TRACE(c.form + " cache " + std::to_string(cache));
      Reader reader;
      EXPECT_EQ(Quietly(reader, dir.Path(), cache), "");
      EXPECT_EQ(reader.RegisteredFiles(), 4);
      EXPECT_EQ(tables.Mismatches(reader, cache >= BlockCache::ENTRY_BYTES,
                                  cache < (1 << 20) ? 11 : 1),
                0);
    }
  }
}

TEST(NalimovReader, CodesThatConsumeNoBits) {
  // A knk of draws only: every code length 0. A kqk of one repeated byte: a single symbol.
  TemporaryDirectory dir;
  const std::vector<std::uint8_t> draws(EntriesOf(KNK, 0), 0), repeated(EntriesOf(KQK, 1), 100);
  WriteBytes(dir.File("knk.nbw.emd"), CompressTablebase(draws, {DatacompOptions::Code::ALL_ZERO}));
  WriteBytes(dir.File("kqk.nbb.emd"),
             CompressTablebase(repeated, {DatacompOptions::Code::SINGLE_SYMBOL}));
  Reader reader;
  reader.Initialize(dir.Path().string(), CACHE);
  EXPECT_EQ(reader.ReadEntry(KNK, 0, draws.size() - 1), 0);
  EXPECT_EQ(reader.ReadEntry(KQK, 1, 12345), 100 + ENTRY_VALUE_OFFSET);
  EXPECT_EQ(reader.ReadEntry(KQK, 1, repeated.size() - 1), 100 + ENTRY_VALUE_OFFSET);
}

TEST(NalimovReader, HuffmanCodesBuildOnlyWhenComplete) {
  const std::pair<std::vector<std::uint8_t>, bool> cases[] = {
      {{0, 0, 0, 0}, true},     {{0, 0, 1, 0}, true},  {{0, 0, 2, 0}, false},
      {{1, 2, 0}, false},       {{1, 1, 1}, false},    {{1, 32}, false},
      {{1, 2, 3, 5, 5, 5, 5}, true},
  };
  for (const auto& [lengths, complete] : cases) {
    HuffmanCode code;
    EXPECT_EQ(code.Build(lengths.data(), int(lengths.size()), 3), complete) << lengths.size();
  }
  // Direct lengths: width 3, a length 0 and a run of 15 more zeros, for a list of 10.
  std::uint8_t past_end[] = {0b00001100, 0b01111000}, lengths[10];
  BitReader run(past_end, sizeof past_end);
  EXPECT_FALSE(ReadCodeLengths(run, lengths, 10));
}

TEST(NalimovReader, InitializationFailuresAndTheirTexts) {
  TemporaryDirectory empty, dir;
  TableSet().Write(dir, "B.E", nullptr);
  Reader reader;
  EXPECT_EQ(FailureOf<NalimovException>([&] { reader.Initialize(empty.Path(), CACHE); }),
            "Could not open tablebases. Is the path correct?");
  EXPECT_EQ(FailureOf<NalimovException>([&] { reader.Initialize(dir.Path(), 31); }),
            "Increase the cache size, because it is too small.");
  // The path list is split at three separators and empty elements are harmless.
  EXPECT_EQ(reader.Initialize(empty.Path().string() + ",;" + dir.Path().string() + ":", 0), 3);
  EXPECT_EQ(reader.RegisteredFiles(), 4);
  EXPECT_EQ(reader.ReadEntry(KQK, 0, 0), NO_RESULT);  // no cache, no blocks

  using namespace BraskTablebases;
  EXPECT_EQ(InitTablebases(dir.Path().string(), CACHE), 3);
  EXPECT_TRUE(GetTablebaseStatus().loaded);
  EXPECT_EQ(FailureOf<TB_Exception>([&] { InitTablebases(empty.Path(), CACHE); }),
            "Could not initialize Nalimov tablebases.\nReason: Could not open tablebases. "
            "Is the path correct?");
  EXPECT_FALSE(GetTablebaseStatus().loaded);  // the earlier registrations are forgotten
  EXPECT_EQ(GetTablebaseStatus().files, 0);
  EXPECT_EQ(CheckedCacheSize(1 << 20), 1u << 20);
  EXPECT_EQ(CheckedCacheSize(-1), 0x7FFFFFFFu);
  EXPECT_EQ(CheckedCacheSize(std::int64_t{1} << 33), 0x7FFFFFFFu);
  EXPECT_EQ(DescribeProbe(1, -32767), "result=-32767");
  EXPECT_EQ(DescribeProbe(2, 0), "not found");
  EXPECT_EQ(DescribeProbe(0, 0), "disabled (not loaded)");
  EXPECT_EQ(DescribeProbe(3, 0), "queued (this should never happen!)");
}

TEST(NalimovReader, BrokenFilesAreReportedAndLeftOut) {
  const TableSet tables;
  const std::vector<std::uint8_t>& plain = tables.content[0][0];
  const std::vector<std::uint8_t> good = CompressTablebase(plain);
  const std::uint32_t header_size = Datacomp::ReadBigEndian32(&good[64]);
  auto changed = [&](std::size_t at) {
    std::vector<std::uint8_t> bytes = good;
    bytes[at] ^= 1;
    return bytes;
  };
  std::vector<std::uint8_t> longer = plain, shorter(plain.begin(), plain.end() - 1);
  longer.push_back(0);
  const std::string broken = " - file broken\n";
  const struct {
    std::string file;
    std::vector<std::uint8_t> bytes;
    std::string message;
  } cases[] = {
      {"kqk.nbw", longer, "kqk.nbw corrupted 25629 0 25630\n"},
      {"kqk.nbw.emd", changed(3), broken},                // banner
      {"kqk.nbw.emd", changed(header_size - 1), broken},  // check value
      {"kqk.nbw.emd", changed(79), broken},               // format mark
      {"kqk.nbw.emd", {good.begin(), good.begin() + header_size - 10}, broken},
      {"kqk.nbw.emd", {good.begin(), good.begin() + 40}, broken},
      {"kqk.nbw.emd", CompressTablebase(shorter), "kqk.nbw.emd corrupted 25629 0 25628\n"},
      {"kqk.nbw.emd", CompressTablebase(plain, {DatacompOptions::Code::FROM_DATA, true, 12}),
       "kqk.nbw.emd: Unsupported block size 4096\n"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.message);
    TemporaryDirectory dir;
    WriteBytes(dir.File(c.file), c.bytes);
    WriteBytes(dir.File("knk.nbw"), tables.content[1][0]);
    Reader reader;
    const std::string output = Quietly(reader, dir.Path().string(), CACHE);
    EXPECT_NE(output.find("*** "), std::string::npos);
    EXPECT_NE(output.find(c.message), std::string::npos) << output;
    EXPECT_FALSE(reader.IsRegistered(KQK, 0));
    EXPECT_EQ(reader.ReadEntry(KQK, 0, 0), NO_RESULT);
    EXPECT_TRUE(reader.IsRegistered(KNK, 0));
  }

  // Blocks cut short are only seen on reading: from then on the part is absent.
  std::vector<std::uint8_t> cut = good;
  cut.resize(cut.size() - 50);
  TemporaryDirectory dir;
  WriteBytes(dir.File("kqk.nbw.emd"), cut);
  Reader reader;
  reader.Initialize(dir.Path().string(), CACHE);
  ASSERT_TRUE(reader.IsRegistered(KQK, 0));
  EXPECT_EQ(reader.ReadEntry(KQK, 0, 0), ExpectedValue(plain[0]));
  EXPECT_EQ(reader.ReadEntry(KQK, 0, EntriesOf(KQK, 0) - 1), NO_RESULT);
  EXPECT_FALSE(reader.IsRegistered(KQK, 0));
  EXPECT_EQ(reader.ReadEntry(KQK, 0, 0), NO_RESULT);
}

// Damaged files: every read stays inside the file (the sanitizers watch this test) and gives an
// entry a table could hold or "no result", the same again on a second read unless the damage has
// meanwhile made the part absent; a damaged header is refused or read the same way.
TEST(NalimovReaderFuzz, DamagedFilesGivePlausibleEntriesOrNone) {
  const TableSet tables;
  const std::vector<std::uint8_t> good = CompressTablebase(tables.content[0][0]);
  const std::uint32_t header_size = Datacomp::ReadBigEndian32(&good[64]);
  std::mt19937 random(5);
  int refused = 0, exact = 0;
  for (int trial = 0; trial < 70; ++trial) {
    std::vector<std::uint8_t> bad = good;
    const bool header = trial >= 10;
    for (int k = 0; k < (header ? 1 : 20); ++k)
      bad[header ? random() % header_size
                 : header_size + random() % (bad.size() - header_size)] = std::uint8_t(random());
    TemporaryDirectory dir;
    WriteBytes(dir.File("kqk.nbw.emd"), bad);
    Reader reader;
    try {
      Quietly(reader, dir.Path().string(), 2 * 8260);
    } catch (const NalimovException&) {
      ++refused;
      continue;
    }
    for (std::uint64_t i = 0; i < EntriesOf(KQK, 0); i += header ? 997 : 97) {
      const int first = reader.ReadEntry(KQK, 0, i), second = reader.ReadEntry(KQK, 0, i);
      const bool plausible =
          first == NO_RESULT || first == 0 || std::abs(first) >= ENTRY_VALUE_OFFSET - 128;
      ASSERT_TRUE(plausible) << "trial " << trial << " entry " << i << ": " << first;
      EXPECT_TRUE(second == first || second == NO_RESULT) << trial << " " << i;
      exact += first == ExpectedValue(tables.content[0][0][i]);
    }
  }
  EXPECT_GT(exact, 0);  // undamaged blocks still read true
  EXPECT_LT(refused, 60);
}
