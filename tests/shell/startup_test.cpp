#include "shell/startup.h"

#include <gtest/gtest.h>

TEST(CommandLineArguments, DropsTheProgramNameAndEmptyArguments) {
  const char* argv[] = {"./brask", "-xboard", "", "--hash", "64M", "", nullptr};
  EXPECT_EQ(CommandLineArguments(6, argv),
            (std::vector<std::string>{"-xboard", "--hash", "64M"}));
  EXPECT_TRUE(CommandLineArguments(1, argv).empty());
  EXPECT_TRUE(CommandLineArguments(0, argv).empty());
}
