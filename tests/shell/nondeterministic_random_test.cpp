#include "shell/nondeterministic_random.h"

#include <gtest/gtest.h>

#include "shell/tee_stream.h"
#include "support/temporary_directory.h"

namespace {

constexpr const char* NOTE =
    "Note: NonDeterministicRand_16bit seems to be used more often than originally intended. "
    "This could be a problem, because its implementation is bad. (not sent to xboard)\n";

int CountOf(const std::string& text, const std::string& part) {
  int count = 0;
  for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++count;
  return count;
}

}  // namespace

TEST(NonDeterministicRandom, IsTheClassicLinearCongruentialStep) {
  NonDeterministicRandom generator(1);
  EXPECT_EQ(generator.Next(), 16838);  // the first number of the C standard's sample rand()
  EXPECT_EQ(generator.Next(), 5758);
  EXPECT_EQ(generator.Next(), 10113);
}

TEST(NonDeterministicRandom, EleventhCallAloneWritesTheNote) {
  TemporaryDirectory directory;
  const std::string log = directory.File("log");
  ASSERT_TRUE(Output.OpenLog(log));
  NonDeterministicRandom generator(0xFFFF);
  for (int call = 1; call <= 10; ++call) {
    const std::int32_t value = generator.Next();
    EXPECT_TRUE(value >= 0 && value <= 32767);
  }
  EXPECT_EQ(CountOf(ReadWholeFile(log), NOTE), 0);
  generator.Next();
  EXPECT_EQ(CountOf(ReadWholeFile(log), NOTE), 1);
  for (int call = 12; call <= 40; ++call) generator.Next();
  Output.CloseLog();
  EXPECT_EQ(CountOf(ReadWholeFile(log), NOTE), 1);
}

