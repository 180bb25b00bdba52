#include "support/temporary_directory.h"

#include <stdlib.h>

#include <fstream>
#include <sstream>
#include <stdexcept>

TemporaryDirectory::TemporaryDirectory() {
  std::string pattern = (std::filesystem::temp_directory_path() / "brask-test-XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("mkdtemp failed");
  path_ = pattern;
}

TemporaryDirectory::~TemporaryDirectory() {
  std::error_code ignored;
  std::filesystem::permissions(path_, std::filesystem::perms::owner_all,
                               std::filesystem::perm_options::add, ignored);
  std::filesystem::remove_all(path_, ignored);
}

WorkingDirectory::WorkingDirectory(const std::filesystem::path& path)
    : previous_(std::filesystem::current_path()) {
  std::filesystem::current_path(path);
}

WorkingDirectory::~WorkingDirectory() {
  std::error_code ignored;
  std::filesystem::current_path(previous_, ignored);
}

std::string ReadWholeFile(const std::string& name) {
  std::ifstream file(name, std::ios::binary);
  std::ostringstream text;
  text << file.rdbuf();
  return text.str();
}

void WriteWholeFile(const std::string& name, const std::string& text) {
  std::ofstream(name, std::ios::binary) << text;
}
