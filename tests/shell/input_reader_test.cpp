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

// Lines sent together come back in order, a partial line counts as input and is completed later,
// the last line needs no newline, and the end of input counts as readable, so nobody waits on it.
TEST_F(InputReaderTest, LinesPartialLinesAndTheEnd) {
  InputReader reader(ReadEnd());
  EXPECT_FALSE(reader.InputAvailable());
  Send("xboard\nprotover 2\r\n\n");
  for (const char* expected : {"xboard", "protover 2", ""}) {
    EXPECT_TRUE(reader.InputAvailable());
    EXPECT_EQ(reader.ReadLine(), expected);
  }
  EXPECT_FALSE(reader.InputAvailable());
  Send("usermo");
  EXPECT_TRUE(reader.InputAvailable());
  Send("ve e4\nlast\r");
  EXPECT_EQ(reader.ReadLine(), "usermove e4");
  EXPECT_TRUE(reader.InputAvailable());
  CloseWriteEnd();
  EXPECT_EQ(reader.ReadLine(), "last");
  EXPECT_TRUE(reader.InputAvailable());
  EXPECT_EQ(reader.ReadLine(), std::nullopt);
  EXPECT_EQ(reader.ReadLine(), std::nullopt);
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
  // A descriptor that cannot be read gives no line at once.
  InputReader unreadable(-1);
  EXPECT_TRUE(unreadable.InputAvailable());
  EXPECT_EQ(unreadable.ReadLine(), std::nullopt);
}

}  // namespace
