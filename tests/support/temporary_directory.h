// A fresh directory under the system's temporary directory, removed with all its contents at the
// end of the test. Optionally the working directory for the test's lifetime.
#pragma once

#include <filesystem>
#include <string>

class TemporaryDirectory {
 public:
  TemporaryDirectory();
  ~TemporaryDirectory();
  TemporaryDirectory(const TemporaryDirectory&) = delete;
  TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

  const std::filesystem::path& Path() const { return path_; }
  std::string File(const std::string& name) const { return (path_ / name).string(); }

 private:
  std::filesystem::path path_;
};

// Makes a directory the working directory until the end of the scope.
class WorkingDirectory {
 public:
  explicit WorkingDirectory(const std::filesystem::path& path);
  ~WorkingDirectory();
  WorkingDirectory(const WorkingDirectory&) = delete;
  WorkingDirectory& operator=(const WorkingDirectory&) = delete;

 private:
  std::filesystem::path previous_;
};

std::string ReadWholeFile(const std::string& name);
void WriteWholeFile(const std::string& name, const std::string& text);
