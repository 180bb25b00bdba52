#include "shell/log_file.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <set>

#include "shell/os_dependent.h"
#include "shell/tee_stream.h"
#include "support/temporary_directory.h"

// A directory where no log can be made is tried by the start-up transcript test.
TEST(LogFile, NamesHaveAtLeastThreeDigits) {
  EXPECT_EQ(NumberedLogName(7), "logfile.007");
  EXPECT_EQ(NumberedLogName(999), "logfile.999");
  EXPECT_EQ(NumberedLogName(1000), "logfile.1000");
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
