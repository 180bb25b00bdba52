// Files mapped into memory whole: read-only for the bitbases the engine probes, writable for the
// tables the generator fills. Each object owns its mapping for its whole life.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace BraskUtils {

class ReadOnlyMemoryMappedFile {
 public:
  // The callers add the message: the failing path is theirs to name.
  class IOException {};

  explicit ReadOnlyMemoryMappedFile(const std::string& path);
  ReadOnlyMemoryMappedFile(const std::string& path, std::size_t expected_size);
  ~ReadOnlyMemoryMappedFile();
  ReadOnlyMemoryMappedFile(const ReadOnlyMemoryMappedFile&) = delete;
  ReadOnlyMemoryMappedFile& operator=(const ReadOnlyMemoryMappedFile&) = delete;

  const std::uint8_t* GetData() const { return data_; }
  std::size_t GetSize() const { return size_; }

 private:
  void Map(const std::string& path, bool check_size, std::size_t expected_size);

  const std::uint8_t* data_ = nullptr;
  std::size_t size_ = 0;
  int descriptor_ = -1;
};

class MemoryMappedFile {
 public:
  class IOException {};

  // Creates the file or extends it to size bytes; a longer file keeps its tail.
  MemoryMappedFile(const std::string& path, std::size_t size);
  // Writes the pages back before unmapping.
  ~MemoryMappedFile();
  MemoryMappedFile(const MemoryMappedFile&) = delete;
  MemoryMappedFile& operator=(const MemoryMappedFile&) = delete;

  std::uint8_t* GetData() const { return data_; }
  std::size_t GetSize() const { return size_; }

 private:
  std::uint8_t* data_ = nullptr;
  std::size_t size_ = 0;
};

}  // namespace BraskUtils
