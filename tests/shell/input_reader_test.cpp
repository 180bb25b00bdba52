#include "shell/input_reader.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <string>

namespace {

class InputReaderTest : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_EQ(pipe(ends_), 0); }
  void TearDown() override {
    CloseWriteEnd();
    close(ends_[0]);
  }
  void Send(const std::string& text) {
    ASSERT_EQ(write(ends_[1], text.data(), text.size()), ssize_t(text.size()));
  }
  void CloseWriteEnd() {
    if (ends_[1] >= 0) close(ends_[1]);
    ends_[1] = -1;
  }
  int ReadEnd() const { return ends_[0]; }

 private:
  int ends_[2] = {-1, -1};
};

TEST_F(InputReaderTest, LinesSentTogetherAllComeBackInOrder) {
  InputReader reader(ReadEnd());
  EXPECT_FALSE(reader.InputAvailable());
  Send("xboard\nprotover 2\r\n\nnew\n");
  for (const char* expected : {"xboard", "protover 2", "", "new"}) {
    EXPECT_TRUE(reader.InputAvailable());
    EXPECT_EQ(reader.ReadLine(), expected);
  }
  EXPECT_FALSE(reader.InputAvailable());
}

TEST_F(InputReaderTest, PartialLineIsAvailableAndCompletedLater) {
  InputReader reader(ReadEnd());
  Send("usermo");
  EXPECT_TRUE(reader.InputAvailable());
  Send("ve e4\nnext");
  EXPECT_EQ(reader.ReadLine(), "usermove e4");
  EXPECT_TRUE(reader.InputAvailable());  // "next" is buffered though it has no newline yet
  Send("\n");
  EXPECT_EQ(reader.ReadLine(), "next");
}

TEST_F(InputReaderTest, LastLineWithoutNewlineThenEndOfInput) {
  InputReader reader(ReadEnd());
  Send("first\nlast\r");
  CloseWriteEnd();
  EXPECT_EQ(reader.ReadLine(), "first");
  EXPECT_EQ(reader.ReadLine(), "last");
  EXPECT_TRUE(reader.InputAvailable());  // the end counts as readable, so nobody waits on it
  EXPECT_EQ(reader.ReadLine(), std::nullopt);
  EXPECT_EQ(reader.ReadLine(), std::nullopt);
}

TEST_F(InputReaderTest, InputClosedAtStartOrUnreadableGivesNoLine) {
  CloseWriteEnd();
  for (int descriptor : {ReadEnd(), -1}) {
    InputReader reader(descriptor);
    EXPECT_TRUE(reader.InputAvailable());
    EXPECT_EQ(reader.ReadLine(), std::nullopt);
  }
}

TEST_F(InputReaderTest, BurstLargerThanOneReadLosesNothing) {
  InputReader reader(ReadEnd());
  std::string burst;
  for (int i = 0; i < 3000; ++i) burst += "line " + std::to_string(i) + "\n";
  burst += std::string(10000, 'x') + "\n";
  ASSERT_LT(burst.size(), 60000u);  // fits into the pipe without a reader
  Send(burst);
  CloseWriteEnd();
  for (int i = 0; i < 3000; ++i) ASSERT_EQ(reader.ReadLine(), "line " + std::to_string(i));
  EXPECT_EQ(reader.ReadLine(), std::string(10000, 'x'));
  EXPECT_EQ(reader.ReadLine(), std::nullopt);
}

}  // namespace
