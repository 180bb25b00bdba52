#include "bitbases/nalimov_reader.h"

#include <algorithm>
#include <array>
#include <new>

#include "shell/tee_stream.h"

namespace NalimovTablebases {

namespace {

constexpr std::uint32_t BLOCK_SHIFT = 13;
constexpr std::uint64_t BLOCK_MASK = BlockCache::BLOCK_BYTES - 1;

// Seven entries of kppkp with Black on move that the published file gets wrong.
constexpr int KPPKP_ID = 36;
constexpr std::array<std::uint64_t, 7> KPPKP_FIXED_INDICES = {
    0x362DE44, 0x362BC7C, 0x3639810, 0x3637648, 0x40A2CAB, 0x38D4F29, 0x43C778C};
constexpr int KPPKP_FIXED_VALUE = -32639;

int EntryValue(std::uint8_t byte) {
  int c = std::int8_t(byte);
  return c == 0 ? 0 : c > 0 ? c + ENTRY_VALUE_OFFSET : c - ENTRY_VALUE_OFFSET;
}

// The names a part's file may have: plain, then the compressed forms.
std::array<std::string, 5> CandidateNames(const std::string& directory, int id, int side) {
  std::string stem = directory;
  if (!stem.empty() && stem.back() != '/') stem += '/';
  stem += Descriptors[id].name;
  std::string extension = side == 0 ? "nbw" : "nbb";
  return {stem + "." + extension, stem + "." + extension + ".emd", stem + "_" + extension + ".emd",
          stem + "_" + extension + "_emd", stem + extension + ".emd"};
}

std::vector<std::string> SplitPaths(const std::string& paths) {
  std::vector<std::string> directories;
  std::string current;
  for (char c : paths) {
    if (c == ',' || c == ';' || c == ':') {
      directories.push_back(current);
      current.clear();
    } else {
      current += c;
    }
  }
  directories.push_back(current);
  return directories;
}

void ReportUnreadable(const std::string& name, const char* reason) {
  Output << "*** Unable to read " << name << " - " << reason << "\n";
  Output.Flush();
}

void ReportCorrupted(const std::string& name, std::uint64_t expected, std::uint64_t found) {
  Output << "*** " << name << " corrupted " << static_cast<unsigned long>(expected) << ' '
         << static_cast<unsigned long>(found >> 32) << ' '
         << static_cast<unsigned long>(found & 0xFFFFFFFF) << "\n";
  Output.Flush();
}

bool ReadAt(std::FILE* file, std::uint64_t offset, std::uint8_t* out, std::size_t count) {
  return std::fseek(file, long(offset), SEEK_SET) == 0 &&
         std::fread(out, 1, count, file) == count;
}

}  // namespace

int Reader::Initialize(const std::string& paths, std::size_t cache_bytes) {
  Output.ReportLogOnly("Initializing Nalimov tablebases... '" + paths + "'");
  Forget();

  int largest_id = 0;
  bool any_compressed = false;
  for (const std::string& directory : SplitPaths(paths))
    for (int id = 1; id <= TABLE_COUNT; ++id)
      for (int side = 0; side < (Descriptors[id].IsSymmetric() ? 1 : 2); ++side)
        if (Register(directory, id, side)) {
          largest_id = std::max(largest_id, id);
          any_compressed |= Part(id, side).decoder != nullptr;
        }

  if (any_compressed && decode_buffer_.empty()) {
    try {
      decode_buffer_.resize(Datacomp::DECODE_BUFFER_SIZE);
    } catch (const std::bad_alloc&) {
      Output << "*** Cannot allocate decode block: error code " << 1 << "\n";
      Output.Flush();
      throw NalimovException("Cannot allocate decode block");
    }
  }

  int pieces = largest_id > LAST_FOUR_PIECE_ID    ? 5
               : largest_id > LAST_THREE_PIECE_ID ? 4
               : largest_id > 0                   ? 3
                                                  : 0;
  if (pieces == 0) {
    Output.ReportLogOnly(NO_TABLES_LOG);
    throw NalimovException(NO_TABLES_TEXT);
  }

  bool cache_set;
  try {
    cache_set = cache_.Set(cache_bytes);
  } catch (const std::bad_alloc&) {
    cache_.Set(0);
    cache_set = false;
  }
  if (!cache_set && cache_bytes != 0) {
    Output.ReportLogOnly(SMALL_CACHE_LOG);
    throw NalimovException(SMALL_CACHE_TEXT);
  }
  return pieces;
}

int Reader::RegisteredFiles() const {
  int files = 0;
  for (int id = 1; id <= TABLE_COUNT; ++id)
    files += parts_[id][0].registered + (!Descriptors[id].IsSymmetric() && parts_[id][1].registered);
  return files;
}

void Reader::Forget() {
  cache_.Set(0);
  for (auto& table : parts_)
    for (TablePart& part : table) part = TablePart{};
}

void Reader::CloseFiles() {
  for (auto& table : parts_)
    for (TablePart& part : table) part.file.reset();
}

// A part found twice on the path keeps its first file.
bool Reader::Register(const std::string& directory, int id, int side) {
  TablePart& part = Part(id, side);
  if (part.registered) return false;

  std::string name;
  File file;
  bool compressed = false;
  for (const std::string& candidate : CandidateNames(directory, id, side)) {
    file.reset(std::fopen(candidate.c_str(), "rb"));
    if (file) {
      name = candidate;
      break;
    }
    compressed = true;
  }
  if (!file) return false;

  long length = std::fseek(file.get(), 0, SEEK_END) == 0 ? std::ftell(file.get()) : -1;
  if (length < 0) {
    Output << "*** Seek in " << name << " failed\n";
    Output.Flush();
    return false;
  }
  std::uint64_t expected = EntriesOf(id, side);
  if (!compressed && std::uint64_t(length) != expected) {
    ReportCorrupted(name, expected, std::uint64_t(length));
    return false;
  }
  TablePart candidate;
  if (compressed && !CheckCompressedFile(file.get(), name, std::uint64_t(length), expected, candidate))
    return false;

  PieceCounts counts = CountsOfName(Descriptors[id].name);
  lookup_.Enter(counts, id);
  if (!Descriptors[id].IsSymmetric()) lookup_.Enter(ColourSwapped(counts), -id);
  part.decoder = std::move(candidate.decoder);
  part.file_name = name;
  part.registered = true;
  return true;
}

bool Reader::CheckCompressedFile(std::FILE* file, const std::string& name, std::uint64_t length,
                                 std::uint64_t expected, TablePart& part) {
  std::uint8_t fixed_bytes[Datacomp::FIXED_HEADER_SIZE];
  if (length < Datacomp::FIXED_HEADER_SIZE) {
    ReportUnreadable(name, "file broken");
    return false;
  }
  if (!ReadAt(file, 0, fixed_bytes, sizeof fixed_bytes)) {
    ReportUnreadable(name, "read error");
    return false;
  }
  FixedHeader fixed;
  HeaderStatus status = fixed.Read(fixed_bytes);
  if (status == HeaderStatus::UNSUPPORTED_BLOCK_SIZE) {
    Output << "*** " << name << ": Unsupported block size " << fixed.BlockSize() << "\n";
    Output.Flush();
    return false;
  }
  if (status == HeaderStatus::BROKEN || fixed.header_size > length) {
    ReportUnreadable(name, "file broken");
    return false;
  }

  std::vector<std::uint8_t> header;
  try {
    header.resize(fixed.header_size);
    part.decoder = std::make_unique<DatacompDecoderInfo>();
  } catch (const std::bad_alloc&) {
    ReportUnreadable(name, "out of memory");
    return false;
  }
  if (!ReadAt(file, 0, header.data(), header.size())) {
    ReportUnreadable(name, "read error");
    return false;
  }
  if (part.decoder->Parse(fixed, header) != HeaderStatus::OK) {
    ReportUnreadable(name, "file broken");
    return false;
  }
  if (part.decoder->PlainSize() != expected) {
    ReportCorrupted(name, expected, part.decoder->PlainSize());
    return false;
  }
  return true;
}

int Reader::ReadEntry(int id, int side, std::uint64_t index) {
  if (Descriptors[id].IsSymmetric()) side = 0;
  TablePart& part = Part(id, side);
  if (cache_.Entries() == 0 || !part.registered || index >= EntriesOf(id, side)) return NO_RESULT;
  if (id == KPPKP_ID && side == 1 &&
      std::find(KPPKP_FIXED_INDICES.begin(), KPPKP_FIXED_INDICES.end(), index) !=
          KPPKP_FIXED_INDICES.end())
    return KPPKP_FIXED_VALUE;

  std::uint32_t block = std::uint32_t(index >> BLOCK_SHIFT);
  if (const std::uint8_t* data = cache_.Find(id, side, block)) return EntryValue(data[index & BLOCK_MASK]);

  int entry = cache_.Take();
  std::uint8_t* data = cache_.BlockOf(entry);
  if (!FillBlock(id, side, block, data)) {
    cache_.Release(entry);
    MarkAbsent(part);
    return NO_RESULT;
  }
  cache_.Insert(entry, id, side, block);
  return EntryValue(data[index & BLOCK_MASK]);
}

bool Reader::OpenPart(TablePart& part) {
  if (part.file) return true;
  part.file.reset(std::fopen(part.file_name.c_str(), "rb"));
  if (!part.file) {
    // Most likely out of descriptors: give all back once and try again.
    CloseFiles();
    part.file.reset(std::fopen(part.file_name.c_str(), "rb"));
  }
  return part.file != nullptr;
}

bool Reader::FillBlock(int id, int side, std::uint32_t block, std::uint8_t* out) {
  TablePart& part = Part(id, side);
  if (!OpenPart(part)) return false;
  std::FILE* file = part.file.get();
  const DatacompDecoderInfo* decoder = part.decoder.get();
  if (!decoder) {
    std::uint64_t start = std::uint64_t(block) << BLOCK_SHIFT;
    std::uint64_t needed = std::min<std::uint64_t>(BlockCache::BLOCK_BYTES, EntriesOf(id, side) - start);
    if (std::fseek(file, long(start), SEEK_SET) != 0) return false;
    std::size_t got = std::fread(out, 1, BlockCache::BLOCK_BYTES, file);
    return !std::ferror(file) && got >= needed;
  }
  if (block >= decoder->Blocks()) return false;
  std::uint32_t size = decoder->CompressedSize(block);
  return ReadAt(file, decoder->BlockOffset(block), decode_buffer_.data(), size) &&
         decoder->DecodeBlock(decode_buffer_.data(), size, out, decoder->PlainBlockSize(block));
}

void Reader::MarkAbsent(TablePart& part) {
  Output.ReportLogOnly("*** Unable to read " + part.file_name + " - file broken");
  part.registered = false;
  part.file.reset();
}

}  // namespace NalimovTablebases
