// What the bitbase tests share: a log file that records what loading reports, files of given
// bytes, exception texts, and a clean slate of loaded bitbases around each test.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "bitbases/probe_generic_bitbases.h"
#include "bitbases/special_bitbases.h"
#include "shell/tee_stream.h"
#include "support/datacomp_writer.h"
#include "support/temporary_directory.h"

// Opens a log of its own in a temporary directory; Text() is everything written to it so far.
class LogRecorder {
 public:
  LogRecorder() : path_(directory_.File("log")) { Output.OpenLog(path_); }
  ~LogRecorder() { Output.CloseLog(); }
  LogRecorder(const LogRecorder&) = delete;
  LogRecorder& operator=(const LogRecorder&) = delete;

  std::string Text() const {
    Output.Flush();
    return ReadWholeFile(path_);
  }

 private:
  TemporaryDirectory directory_;
  std::string path_;
};

inline std::vector<std::uint8_t> ReadBytes(const std::string& path) {
  const std::string text = ReadWholeFile(path);
  return {text.begin(), text.end()};
}

// The text of the Exception that the body throws, or "no failure".
template <typename Exception, typename Body>
std::string FailureOf(const Body& body) {
  try {
    body();
  } catch (const Exception& error) {
    return error.what();
  }
  return "no failure";
}

// Other suites in this binary expect no bitbase to be loaded.
class BitbaseTest : public ::testing::Test {
 protected:
  void SetUp() override { Reset(); }
  void TearDown() override { Reset(); }
  static void Reset() {
    BraskBitbases::ReleaseSpecialBitbases();
    BraskBitbases::ClearHandlerTable();
  }
};
