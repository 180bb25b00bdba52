#include "shell/os_dependent.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <utility>

#include "shell/startup.h"
#include "support/temporary_directory.h"

TEST(DirectoryOf, TakesTheTextBeforeTheLastSlash) {
  for (const auto& [path, directory] :
       {std::pair{"/opt/brask/bin/brask", "/opt/brask/bin"}, {"/opt/x", "/opt"}, {"./brask", "."},
        {"build/brask", "build"}, {"x", "."}, {"/x", "."}, {"", "."}})
    EXPECT_EQ(DirectoryOf(path), directory) << path;
  // The first call fixes the directory of the executable.
  const std::string first = ExecutableDirectory("/opt/x");
  EXPECT_EQ(ExecutableDirectory("/elsewhere/y"), first);
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
  if (isatty(STDOUT_FILENO)) GTEST_SKIP() << "standard output is a terminal";
  EXPECT_EQ(TerminalRows(), 24u);
  EXPECT_EQ(TerminalColumns(), 80u);
}

TEST(CommandLineArguments, DropsTheProgramNameAndEmptyArguments) {
  const char* argv[] = {"./brask", "-xboard", "", "--hash", "64M", "", nullptr};
  EXPECT_EQ(CommandLineArguments(6, argv),
            (std::vector<std::string>{"-xboard", "--hash", "64M"}));
  EXPECT_TRUE(CommandLineArguments(1, argv).empty());
  EXPECT_TRUE(CommandLineArguments(0, argv).empty());
}
