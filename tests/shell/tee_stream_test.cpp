#include "shell/tee_stream.h"

#include <gtest/gtest.h>

#include <iomanip>
#include <iostream>
#include <limits>
#include <regex>
#include <sstream>

#include "support/temporary_directory.h"
#include "support/terminal_capture.h"

namespace {

class TeeStreamTest : public ::testing::Test {
 protected:
  std::string Log() const { return ReadWholeFile(log_name_); }
  std::string LogAfterBanner() const {
    const std::string text = Log();
    return text.substr(text.find("\n\n") + 2);
  }
  void OpenLog() { ASSERT_TRUE(stream_.OpenLog(log_name_)); }

  TemporaryDirectory directory_;
  std::string log_name_ = directory_.File("logfile.000");
  TeeStream stream_;
  TerminalCapture terminal_;
};

TEST_F(TeeStreamTest, BannerThenEmptyLine) {
  OpenLog();
  EXPECT_TRUE(stream_.LogIsOpen());
  EXPECT_EQ(stream_.LogFileName(), log_name_);
  const std::regex banner("Brask logfile created at: \\w{3} \\w{3} [ \\d]\\d \\d\\d:\\d\\d:\\d\\d "
                          "\\d{4}\n\n");
  EXPECT_TRUE(std::regex_match(Log(), banner)) << Log();
  EXPECT_EQ(terminal_.Text(), "");
}

TEST_F(TeeStreamTest, EveryKindOfValueReachesBothSides) {
  OpenLog();
  stream_ << "text " << std::string("string ") << std::string_view("view ") << 'c' << ' '
          << std::int16_t(-16) << ' ' << std::int32_t(-32) << ' ' << std::uint32_t(32) << ' '
          << std::numeric_limits<std::uint64_t>::max() << ' '
          << std::numeric_limits<std::int64_t>::min() << ' ' << 2.5 << '\n';
  stream_.Flush();
  const std::string expected =
      "text string view c -16 -32 32 18446744073709551615 -9223372036854775808 2.5\n";
  EXPECT_EQ(terminal_.Text(), expected);
  EXPECT_EQ(LogAfterBanner(), expected);
}

TEST_F(TeeStreamTest, EachSideFormatsNumbersWithItsOwnStream) {
  OpenLog();
  std::cout << std::setfill('*') << std::hex;
  std::cout.width(6);
  stream_ << 255 << '|';
  stream_.Flush();
  EXPECT_EQ(terminal_.Text(), "****ff|");
  EXPECT_EQ(LogAfterBanner(), "255|");
}

TEST_F(TeeStreamTest, SwitchesNestAndReturnTheirFormerValue) {
  OpenLog();
  const bool terminal = stream_.SetTerminal(false);
  EXPECT_TRUE(terminal);
  stream_ << "log ";
  const bool inner = stream_.SetTerminal(false);
  EXPECT_FALSE(inner);
  stream_ << "only ";
  stream_.SetTerminal(inner);
  stream_ << "still ";  // the inner writer gave back "off", not "on"
  stream_.SetTerminal(terminal);
  const bool log = stream_.SetLog(false);
  EXPECT_TRUE(log);
  stream_ << "screen ";
  EXPECT_FALSE(stream_.SetLog(log));
  stream_ << "both";
  stream_.Flush();
  EXPECT_EQ(terminal_.Text(), "screen both");
  EXPECT_EQ(LogAfterBanner(), "log only still both");
}

TEST_F(TeeStreamTest, ReportLogOnlyAddsTheSuffixAndKeepsTheTerminalSwitch) {
  OpenLog();
  stream_.ReportLogOnly("Ignored command");
  EXPECT_EQ(LogAfterBanner(), "Ignored command (not sent to xboard)\n");  // flushed at once
  stream_ << "seen\n";
  const bool terminal = stream_.SetTerminal(false);
  stream_.ReportLogOnly("inside");
  stream_ << "hidden\n";  // still off: the report gave back the state it found
  stream_.SetTerminal(terminal);
  stream_.Flush();
  EXPECT_EQ(terminal_.Text(), "seen\n");
  EXPECT_EQ(LogAfterBanner(),
            "Ignored command (not sent to xboard)\nseen\ninside (not sent to xboard)\nhidden\n");
}

TEST_F(TeeStreamTest, FlushReachesStandardOutputWithoutALog) {
  stream_.SetLog(false);
  const int before = terminal_.Flushes();
  stream_.Flush();
  EXPECT_GT(terminal_.Flushes(), before);
}

TEST_F(TeeStreamTest, OpeningAnotherLogClosesTheFirst) {
  OpenLog();
  stream_ << "first\n";
  const std::string second = directory_.File("logfile.001");
  ASSERT_TRUE(stream_.OpenLog(second));
  stream_ << "second\n";
  stream_.Flush();
  EXPECT_EQ(LogAfterBanner(), "first\n");
  EXPECT_EQ(stream_.LogFileName(), second);
  EXPECT_TRUE(stream_.OpenLog(""));  // an empty name only closes
  EXPECT_FALSE(stream_.LogIsOpen());
  EXPECT_EQ(stream_.LogFileName(), "");
  stream_ << "third\n";
  stream_.Flush();
  const std::string text = ReadWholeFile(second);
  EXPECT_EQ(text.substr(text.find("\n\n") + 2), "second\n");
}

TEST_F(TeeStreamTest, ALogThatCannotBeCreatedLeavesTheTerminalWorking) {
  EXPECT_FALSE(stream_.OpenLog(directory_.File("missing/logfile.000")));
  EXPECT_FALSE(stream_.LogIsOpen());
  EXPECT_EQ(stream_.LogFileName(), "");
  stream_ << "goes on\n";
  stream_.Flush();
  EXPECT_EQ(terminal_.Text(), "goes on\n");
}

}  // namespace
