#include "shell/os_dependent.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>

#include "shell/self_check.h"
#include "shell/tee_stream.h"
#include "support/temporary_directory.h"

TEST(DirectoryOf, TakesTheTextBeforeTheLastSlash) {
  EXPECT_EQ(DirectoryOf("/opt/x"), "/opt");
  EXPECT_EQ(DirectoryOf("/opt/brask/bin/brask"), "/opt/brask/bin");
  EXPECT_EQ(DirectoryOf("./brask"), ".");
  EXPECT_EQ(DirectoryOf("build/brask"), "build");
  EXPECT_EQ(DirectoryOf("x"), ".");
  EXPECT_EQ(DirectoryOf("/x"), ".");
  EXPECT_EQ(DirectoryOf(""), ".");
}

TEST(ExecutableDirectory, TheFirstCallFixesIt) {
  const std::string first = ExecutableDirectory("/opt/x");
  EXPECT_EQ(ExecutableDirectory("/elsewhere/y"), first);
  EXPECT_EQ(ExecutableDirectory(), first);
}

TEST(FileExists, MeansReadable) {
  TemporaryDirectory directory;
  const std::string name = directory.File("present");
  EXPECT_FALSE(FileExists(name));
  WriteWholeFile(name, "x");
  EXPECT_TRUE(FileExists(name));
  std::filesystem::permissions(name, std::filesystem::perms::none);
  // Root reads everything, so only others can see the unreadable file as missing.
  if (geteuid() != 0) {
    EXPECT_FALSE(FileExists(name));
  }
}

TEST(Terminal, SizeIsUsableEvenWithoutATerminal) {
  EXPECT_GE(TerminalRows(), 2u);
  EXPECT_GE(TerminalColumns(), 2u);
  if (!isatty(STDOUT_FILENO)) {
    EXPECT_EQ(TerminalRows(), 24u);
    EXPECT_EQ(TerminalColumns(), 80u);
  }
}

TEST(SelfCheck, CoordinateArithmeticHolds) {
  EXPECT_TRUE(CoordinateArithmeticAgrees());
  CheckPlatformArithmetic();  // returns, so the process goes on
}

TEST(EnterRawMode, ReportsOnceInTheLog) {
  // On a terminal it would change the line discipline of the developer's own shell.
  if (isatty(STDIN_FILENO)) GTEST_SKIP() << "standard input is a terminal";
  TemporaryDirectory directory;
  const std::string log = directory.File("log");
  ASSERT_TRUE(Output.OpenLog(log));
  EnterRawMode();
  EnterRawMode();
  Output.CloseLog();
  const std::string text = ReadWholeFile(log);
  const std::string report =
      "Stdin has been set to raw mode (OS: Unix compatible). (not sent to xboard)\n";
  EXPECT_EQ(text.substr(text.find("\n\n") + 2), report);
}
