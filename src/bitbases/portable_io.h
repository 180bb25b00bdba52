// Whole files to and from byte buffers, with failures as exceptions that carry a text.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "shell/brask_exception.h"

namespace BraskPortableIO {

class IOException : public BraskException {
 public:
  using BraskException::BraskException;
};

void WriteFile(const std::string& path, const std::uint8_t* bytes, std::size_t count);
void ReadFile(const std::string& path, std::vector<std::uint8_t>& bytes_out);

}  // namespace BraskPortableIO
