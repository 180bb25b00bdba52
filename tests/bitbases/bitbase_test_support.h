// What the bitbase tests share: a log file that records what loading reports, files of given
// bytes, and a clean slate of loaded bitbases around each test.
#pragma once

#include <cstdint>
#include <fstream>
#include <iterator>
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
    std::ifstream in(path_, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
  }

 private:
  TemporaryDirectory directory_;
  std::string path_;
};

inline int MappingsOf(const std::string& path) {
  std::ifstream maps("/proc/self/maps");
  int count = 0;
  for (std::string line; std::getline(maps, line);) count += line.find(path) != std::string::npos;
  return count;
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
