#include "bitbases/memory_mapped_file.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include "shell/checked_assert.h"

namespace BraskUtils {

ReadOnlyMemoryMappedFile::ReadOnlyMemoryMappedFile(const std::string& path) {
  Map(path, false, 0);
}

ReadOnlyMemoryMappedFile::ReadOnlyMemoryMappedFile(const std::string& path,
                                                   std::size_t expected_size) {
  Map(path, true, expected_size);
}

// The descriptor stays open with the mapping and is closed in the destructor.
void ReadOnlyMemoryMappedFile::Map(const std::string& path, bool check_size,
                                   std::size_t expected_size) {
  descriptor_ = ::open(path.c_str(), O_RDONLY);
  if (descriptor_ < 0) throw IOException();
  struct stat status {};
  if (::fstat(descriptor_, &status) != 0 ||
      (check_size && std::size_t(status.st_size) != expected_size)) {
    ::close(descriptor_);
    throw IOException();
  }
  size_ = std::size_t(status.st_size);
  void* mapped = ::mmap(nullptr, size_, PROT_READ, MAP_SHARED, descriptor_, 0);
  if (mapped == MAP_FAILED) {
    ::close(descriptor_);
    throw IOException();
  }
  data_ = static_cast<const std::uint8_t*>(mapped);
}

ReadOnlyMemoryMappedFile::~ReadOnlyMemoryMappedFile() {
  ::munmap(const_cast<std::uint8_t*>(data_), size_);
  ::close(descriptor_);
}

MemoryMappedFile::MemoryMappedFile(const std::string& path, std::size_t size) : size_(size) {
  CHECKED_ASSERT(size > 0, "no error description available");
  int descriptor = ::open(path.c_str(), O_RDWR | O_CREAT, 0644);
  if (descriptor < 0) throw IOException();
  struct stat status {};
  bool ok = ::fstat(descriptor, &status) == 0;
  if (ok && std::size_t(status.st_size) < size) {
    const char zero = 0;
    ok = ::lseek(descriptor, off_t(size - 1), SEEK_SET) >= 0 && ::write(descriptor, &zero, 1) == 1;
  }
  void* mapped = ok ? ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED, descriptor, 0)
                    : MAP_FAILED;
  ::close(descriptor);  // the mapping keeps the file
  if (mapped == MAP_FAILED) throw IOException();
  data_ = static_cast<std::uint8_t*>(mapped);
}

MemoryMappedFile::~MemoryMappedFile() {
  ::msync(data_, size_, MS_SYNC);
  ::munmap(data_, size_);
}

}  // namespace BraskUtils
