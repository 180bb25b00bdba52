// A check of an invariant that no input may break. It stays in every build; on failure it reports
// through the output channel and aborts the process.
#pragma once

[[noreturn]] void CheckedAssertFailed(const char* condition, const char* file, int line,
                                      const char* message);

// A macro only because the report needs the condition's own text, file and line.
#define CHECKED_ASSERT(condition, message)                                        \
  do {                                                                            \
    if (!(condition)) CheckedAssertFailed(#condition, __FILE__, __LINE__, message); \
  } while (false)
