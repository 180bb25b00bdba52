#include "shell/checked_assert.h"

#include <gtest/gtest.h>

#include <csignal>
#include <iostream>

#include "shell/tee_stream.h"
#include "support/temporary_directory.h"

namespace {

// The report goes to standard output; the death test reads standard error, so the child sends
// standard output there before it fails.
void FailWithLog(const std::string& log) {
  std::cout.rdbuf(std::cerr.rdbuf());
  Output.OpenLog(log);
  Output << "before\n";
  CHECKED_ASSERT(1 + 1 == 3, "arithmetic is broken");
}

}  // namespace

TEST(CheckedAssertDeathTest, ReportsOnBothChannelsAndAborts) {
  GTEST_FLAG_SET(death_test_style, "fast");
  TemporaryDirectory directory;
  const std::string log = directory.File("logfile.000");
  EXPECT_EXIT(FailWithLog(log), testing::KilledBySignal(SIGABRT),
              "CHECKED_ASSERT failed:\n1 \\+ 1 == 3\nfile: .*checked_assert_test\\.cpp, "
              "line: [0-9]+\narithmetic is broken\n\n");
  const std::string text = ReadWholeFile(log);
  const std::string tail = text.substr(text.find("before\n") + 7);
  EXPECT_EQ(tail.rfind("CHECKED_ASSERT failed:\n1 + 1 == 3\nfile: ", 0), 0u) << text;
  EXPECT_NE(tail.find(", line: "), std::string::npos);
  EXPECT_EQ(tail.substr(tail.size() - 23), "\narithmetic is broken\n\n");
}
