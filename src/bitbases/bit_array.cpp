#include "bitbases/bit_array.h"

#include <memory>
#include <new>
#include <stdexcept>
#include <utility>
#include <vector>

#include "bitbases/bitmap_stream_check.h"
#include "bitbases/memory_mapped_file.h"
#include "bitbases/portable_io.h"

namespace BraskBitbases {

namespace {

constexpr const char* OUT_OF_MEMORY = "Out of memory";

// An entry beyond the array's end shows a file of another size class or a damaged one.
Roaring ReadBitmap(const std::string& path, std::uint32_t bits) {
  std::unique_ptr<BraskUtils::ReadOnlyMemoryMappedFile> file;
  try {
    file = std::make_unique<BraskUtils::ReadOnlyMemoryMappedFile>(path);
  } catch (const BraskUtils::ReadOnlyMemoryMappedFile::IOException&) {
    throw BitArray_IOException("Error: Failed to map file '" + path + "' to memory!");
  }
  if (!IsWellFormedBitmapStream(file->GetData(), file->GetSize()))
    throw BitArray_IOException("Error: File '" + path + "' holds no bit array");
  const char* bytes = reinterpret_cast<const char*>(file->GetData());
  Roaring bitmap;
  try {
    bitmap = Roaring::readSafe(bytes, file->GetSize());
  } catch (const std::runtime_error&) {
    throw BitArray_IOException("Error: File '" + path + "' holds no bit array");
  }
  if (!bitmap.isEmpty() && bitmap.maximum() >= bits)
    throw BitArray_IOException("Error: File '" + path + "' holds a bit array of another size");
  return bitmap;
}

}  // namespace

BitArray::BitArray(std::uint32_t bits) : bits_(bits) {}

BitArray::BitArray(const std::string& path, std::uint32_t bits, std::size_t memory_limit)
    : bits_(bits) {
  try {
    vector_ = ReadBitmap(path, bits);
    Compress();
  } catch (const std::bad_alloc&) {
    throw BitArray_IOException(OUT_OF_MEMORY);
  }
  if (memory_limit != 0 && MemoryUsage() > memory_limit)
    throw BitArray_MemoryLimitReached("Memory limit exceeded");
}

void BitArray::Set2(std::uint32_t index, int value) {
  for (std::uint32_t bit = 0; bit < 2; ++bit) {
    if ((value >> bit) & 1)
      vector_.add(index + bit);
    else
      vector_.remove(index + bit);
  }
}

void BitArray::SetRange(std::uint32_t first, std::uint32_t last, bool bit) {
  if (first > last) std::swap(first, last);
  if (bit)
    roaring_bitmap_add_range_closed(&vector_.roaring, first, last);
  else
    roaring_bitmap_remove_range_closed(&vector_.roaring, first, last);
}

void BitArray::Compress() {
  vector_.runOptimize();
  vector_.shrinkToFit();
}

void BitArray::Save(const std::string& path) {
  std::vector<char> buffer;
  try {
    Compress();
    buffer.resize(vector_.getSizeInBytes());
    buffer.resize(vector_.write(buffer.data()));
  } catch (const std::bad_alloc&) {
    throw BitArray_IOException(OUT_OF_MEMORY);
  }
  try {
    BraskPortableIO::WriteFile(path, reinterpret_cast<const std::uint8_t*>(buffer.data()),
                               buffer.size());
  } catch (const BraskPortableIO::IOException& error) {
    throw BitArray_IOException(error.Text());
  }
}

}  // namespace BraskBitbases
