#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <vector>

#include "bitbases/memory_mapped_file.h"
#include "bitbases/portable_io.h"
#include "support/temporary_directory.h"

using BraskUtils::MemoryMappedFile;
using BraskUtils::ReadOnlyMemoryMappedFile;

namespace {
int OpenDescriptors() {
  return int(std::distance(std::filesystem::directory_iterator("/proc/self/fd"),
                           std::filesystem::directory_iterator()));
}
}  // namespace

TEST(MemoryMappedFile, ReadOnlyMappingChecksTheFile) {
  TemporaryDirectory dir;
  int before = OpenDescriptors();
  EXPECT_THROW(ReadOnlyMemoryMappedFile(dir.File("missing"), 10),
               ReadOnlyMemoryMappedFile::IOException);
  std::ofstream(dir.File("empty")).close();
  EXPECT_THROW(ReadOnlyMemoryMappedFile{dir.File("empty")}, ReadOnlyMemoryMappedFile::IOException);
  std::vector<std::uint8_t> bytes = {1, 2, 3, 250};
  BraskPortableIO::WriteFile(dir.File("four"), bytes.data(), bytes.size());
  EXPECT_THROW(ReadOnlyMemoryMappedFile(dir.File("four"), 5),
               ReadOnlyMemoryMappedFile::IOException);
  EXPECT_EQ(OpenDescriptors(), before);
  {
    ReadOnlyMemoryMappedFile mapped(dir.File("four"), 4);
    ASSERT_EQ(mapped.GetSize(), 4u);
    EXPECT_EQ(mapped.GetData()[3], 250);
  }
  EXPECT_EQ(OpenDescriptors(), before);
}

TEST(MemoryMappedFile, WritableMappingCreatesExtendsAndKeepsTails) {
  TemporaryDirectory dir;
  {
    MemoryMappedFile created(dir.File("new"), 5000);
    EXPECT_EQ(created.GetData()[4999], 0);
    created.GetData()[10] = 42;
  }
  EXPECT_EQ(std::filesystem::file_size(dir.File("new")), 5000u);
  std::vector<std::uint8_t> bytes;
  BraskPortableIO::ReadFile(dir.File("new"), bytes);
  ASSERT_EQ(bytes.size(), 5000u);
  EXPECT_EQ(bytes[10], 42);  // on disk once the destructor has returned

  { MemoryMappedFile shorter(dir.File("new"), 100); }
  BraskPortableIO::ReadFile(dir.File("new"), bytes);
  EXPECT_EQ(bytes.size(), 5000u);
}

TEST(PortableIO, FailuresCarryTheirText) {
  std::uint8_t byte = 1;
  try {
    BraskPortableIO::WriteFile("/nonexistent-directory/x", &byte, 1);
    FAIL();
  } catch (const BraskPortableIO::IOException& e) {
    EXPECT_STREQ(e.what(), "Could not open file");
  }
  std::vector<std::uint8_t> bytes;
  EXPECT_THROW(BraskPortableIO::ReadFile("/nonexistent-directory/x", bytes),
               BraskPortableIO::IOException);
}
