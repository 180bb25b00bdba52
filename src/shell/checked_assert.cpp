#include "shell/checked_assert.h"

#include <cstdlib>

#include "shell/tee_stream.h"

void CheckedAssertFailed(const char* condition, const char* file, int line, const char* message) {
  Output << "CHECKED_ASSERT failed:\n" << condition << "\nfile: " << file << ", line: "
         << std::int32_t(line) << "\n" << message << "\n\n";
  Output.Flush();
  std::abort();
}
