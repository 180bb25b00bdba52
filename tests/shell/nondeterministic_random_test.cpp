#include "shell/nondeterministic_random.h"

#include <gtest/gtest.h>

#include "shell/tee_stream.h"
#include "support/temporary_directory.h"

namespace {

constexpr const char* NOTE =
    "Note: NonDeterministicRand_16bit seems to be used more often than originally intended. "
    "This could be a problem, because its implementation is bad. (not sent to xboard)\n";

}  // namespace

TEST(NonDeterministicRandom, TheClassicStepAndANoteOnTheEleventhCallAlone) {
  TemporaryDirectory directory;
  const std::string log = directory.File("log");
  ASSERT_TRUE(Output.OpenLog(log));
  NonDeterministicRandom classic(1);
  // The first numbers of the C standard's sample rand().
  for (int expected : {16838, 5758, 10113}) EXPECT_EQ(classic.Next(), expected);
  NonDeterministicRandom generator(0xFFFF);
  for (int call = 1; call <= 40; ++call) {
    const std::int32_t value = generator.Next();
    EXPECT_TRUE(value >= 0 && value <= 32767);
    const std::string text = ReadWholeFile(log);
    EXPECT_EQ(text.find(NOTE) != std::string::npos, call >= 11) << call;
    EXPECT_EQ(text.find(NOTE), text.rfind(NOTE));
  }
  Output.CloseLog();
}
