// The output stream to the terminal and the log file, and the numbered log files.
#include "shell/tee_stream.h"

#include <gtest/gtest.h>

#include <iomanip>
#include <iostream>
#include <limits>
#include <set>

#include "shell/log_file.h"
#include "support/temporary_directory.h"
#include "support/terminal_capture.h"

namespace {

std::string AfterBanner(const std::string& log) {
  const std::string text = ReadWholeFile(log);
  return text.substr(text.find("\n\n") + 2);
}

class TeeStreamTest : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(stream_.OpenLog(log_name_)); }

  TemporaryDirectory directory_;
  std::string log_name_ = directory_.File("logfile.000");
  TeeStream stream_;
  TerminalCapture terminal_;
};

// The banner of the log and the numbering of log files are checked by the start-up transcripts.
TEST_F(TeeStreamTest, EveryKindOfValueEachSideFormattedByItsOwnStream) {
  EXPECT_EQ(stream_.LogFileName(), log_name_);
  stream_ << "text " << std::string("string ") << std::string_view("view ") << 'c' << ' '
          << std::int16_t(-16) << ' ' << std::int32_t(-32) << ' ' << std::uint32_t(32) << ' '
          << std::numeric_limits<std::uint64_t>::max() << ' '
          << std::numeric_limits<std::int64_t>::min() << ' ' << 2.5 << '\n';
  std::cout << std::setfill('*') << std::hex;
  std::cout.width(6);
  stream_ << 255 << '|';
  stream_.Flush();
  const std::string values =
      "text string view c -16 -32 32 18446744073709551615 -9223372036854775808 2.5\n";
  EXPECT_EQ(terminal_.Text(), values + "****ff|");
  EXPECT_EQ(AfterBanner(log_name_), values + "255|");
}

// Switches nest and return their former value; a log-only report adds its suffix, is flushed at
// once and gives back the terminal switch it found.
TEST_F(TeeStreamTest, SwitchesAndLogOnlyReports) {
  const bool terminal = stream_.SetTerminal(false);
  EXPECT_TRUE(terminal);
  stream_ << "log ";
  const bool inner = stream_.SetTerminal(false);
  EXPECT_FALSE(inner);
  stream_.ReportLogOnly("inside");
  stream_ << "only ";
  stream_.SetTerminal(inner);
  stream_ << "still\n";  // the inner writer gave back "off", not "on"
  stream_.SetTerminal(terminal);
  const bool log = stream_.SetLog(false);
  EXPECT_TRUE(log);
  stream_ << "screen ";
  EXPECT_FALSE(stream_.SetLog(log));
  stream_ << "both\n";
  stream_.ReportLogOnly("Ignored command");
  EXPECT_EQ(AfterBanner(log_name_),
            "log inside (not sent to xboard)\nonly still\nboth\nIgnored command (not sent to "
            "xboard)\n");
  stream_.Flush();
  EXPECT_EQ(terminal_.Text(), "screen both\n");
  stream_.SetLog(false);
  const int before = terminal_.Flushes();
  stream_.Flush();
  EXPECT_GT(terminal_.Flushes(), before);
}

TEST_F(TeeStreamTest, AnotherLogClosesTheFirstAndOneThatCannotBeMadeLeavesTheTerminal) {
  stream_ << "first\n";
  const std::string second = directory_.File("logfile.001");
  ASSERT_TRUE(stream_.OpenLog(second));
  stream_ << "second\n";
  stream_.Flush();
  EXPECT_EQ(AfterBanner(log_name_), "first\n");
  EXPECT_TRUE(stream_.OpenLog(""));  // an empty name only closes
  EXPECT_FALSE(stream_.LogIsOpen());
  EXPECT_FALSE(stream_.OpenLog(directory_.File("missing/logfile.000")));
  EXPECT_FALSE(stream_.LogIsOpen());
  EXPECT_EQ(stream_.LogFileName(), "");
  stream_ << "third\n";
  stream_.Flush();
  EXPECT_EQ(AfterBanner(second), "second\n");
  EXPECT_EQ(terminal_.Text(), "first\nsecond\nthird\n");
}

TEST(LogFile, TheFirstFreeNumberOfAtLeastThreeDigitsOrTheMaxFile) {
  const std::set<std::string> taken = {"logfile.000", "logfile.001", "logfile.003"};
  EXPECT_EQ(FirstFreeLogName([&](const std::string& name) { return taken.count(name) > 0; }),
            "logfile.002");
  EXPECT_EQ(FirstFreeLogName([](const std::string& name) { return name.size() == 11; }),
            "logfile.1000");
  EXPECT_EQ(FirstFreeLogName([](const std::string&) { return true; }), "logfile.max");
}

}  // namespace
