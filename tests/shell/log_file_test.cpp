#include "shell/log_file.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <set>

#include "shell/os_dependent.h"
#include "shell/tee_stream.h"
#include "support/temporary_directory.h"

TEST(LogFile, NamesHaveAtLeastThreeDigits) {
  EXPECT_EQ(NumberedLogName(0), "logfile.000");
  EXPECT_EQ(NumberedLogName(7), "logfile.007");
  EXPECT_EQ(NumberedLogName(42), "logfile.042");
  EXPECT_EQ(NumberedLogName(999), "logfile.999");
  EXPECT_EQ(NumberedLogName(1000), "logfile.1000");
  EXPECT_EQ(NumberedLogName(99999), "logfile.99999");
}

TEST(LogFile, FirstFreeNameIsTaken) {
  const std::set<std::string> taken = {"logfile.000", "logfile.001", "logfile.003"};
  const auto exists = [&](const std::string& name) { return taken.count(name) > 0; };
  EXPECT_EQ(FirstFreeLogName(exists), "logfile.002");
  EXPECT_EQ(FirstFreeLogName([](const std::string&) { return false; }), "logfile.000");
  const auto below_1000 = [](const std::string& name) { return name.size() == 11; };
  EXPECT_EQ(FirstFreeLogName(below_1000), "logfile.1000");
}

TEST(LogFile, WhenEveryNumberIsTakenTheMaxFileIsUsed) {
  int asked = 0;
  const auto all_taken = [&](const std::string&) { return ++asked > 0; };
  EXPECT_EQ(FirstFreeLogName(all_taken), "logfile.max");
  EXPECT_EQ(asked, 100000);
  EXPECT_EQ(FirstFreeLogName(all_taken, 3), "logfile.max");
}

TEST(LogFile, OpensTheNextNumberInTheWorkingDirectory) {
  TemporaryDirectory directory;
  WorkingDirectory inside(directory.Path());
  WriteWholeFile("logfile.000", "earlier run");
  WriteWholeFile("logfile.001", "earlier run");
  std::filesystem::create_directory("logfile.002");  // opens for reading, so it counts as taken
  OpenNumberedLog();
  EXPECT_EQ(Output.LogFileName(), "logfile.003");
  Output.CloseLog();
  EXPECT_EQ(ReadWholeFile("logfile.000"), "earlier run");
  EXPECT_TRUE(FileExists("logfile.003"));
}

namespace {

bool CanCreateFileIn(const std::filesystem::path& directory) {
  const std::string probe = (directory / "probe").string();
  FILE* file = std::fopen(probe.c_str(), "w");
  if (file == nullptr) return false;
  std::fclose(file);
  std::filesystem::remove(probe);
  return true;
}

}  // namespace

TEST(LogFile, ReadOnlyDirectoryMeansNoLog) {
  TemporaryDirectory directory;
  std::filesystem::permissions(directory.Path(), std::filesystem::perms::owner_read |
                                                     std::filesystem::perms::owner_exec);
  // Root writes into any ordinary directory; /proc refuses new files even to root.
  std::filesystem::path read_only = directory.Path();
  if (CanCreateFileIn(read_only)) read_only = "/proc";
  if (!std::filesystem::is_directory(read_only) || CanCreateFileIn(read_only)) {
    GTEST_SKIP() << "no read-only directory for this user";
  }
  WorkingDirectory inside(read_only);
  OpenNumberedLog();
  EXPECT_FALSE(Output.LogIsOpen());
  EXPECT_EQ(Output.LogFileName(), "");
}
