#include "bitbases/portable_io.h"

#include <fstream>
#include <iterator>

namespace BraskPortableIO {

void WriteFile(const std::string& path, const std::uint8_t* bytes, std::size_t count) {
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  if (!out) throw IOException("Could not open file");
  out.exceptions(std::ios::failbit | std::ios::badbit);
  try {
    out.write(reinterpret_cast<const char*>(bytes), std::streamsize(count));
    out.close();
  } catch (const std::ios::failure&) {
    throw IOException("Error while writing");
  }
}

void ReadFile(const std::string& path, std::vector<std::uint8_t>& bytes_out) {
  std::ifstream in(path, std::ios::binary);
  if (!in) throw IOException("Could not open file");
  bytes_out.clear();
  try {
    in.exceptions(std::ios::badbit);
    bytes_out.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
  } catch (const std::ios::failure& e) {
    throw IOException(std::string("Error while reading: ") + e.what());
  }
}

}  // namespace BraskPortableIO
