// A fresh directory for one test, removed with everything in it at the end.
#pragma once

#include <atomic>
#include <filesystem>
#include <string>

#include <unistd.h>

class TempDirectory {
 public:
  TempDirectory() {
    static std::atomic<int> counter{0};
    path_ = std::filesystem::temp_directory_path() /
            ("brask-test-" + std::to_string(::getpid()) + "-" + std::to_string(counter++));
    std::filesystem::create_directories(path_);
  }
  ~TempDirectory() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TempDirectory(const TempDirectory&) = delete;
  TempDirectory& operator=(const TempDirectory&) = delete;

  std::string Path() const { return path_.string(); }
  std::string File(const std::string& name) const { return (path_ / name).string(); }

 private:
  std::filesystem::path path_;
};
