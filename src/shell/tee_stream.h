// The one output channel of the engine: everything goes to standard output and a copy to the log
// file of the run. Two switches send a text to one side only; a switch is always given back its
// former value, never simply turned on, because writers nest.
#pragma once

#include <cstdint>
#include <fstream>
#include <memory>
#include <string>
#include <string_view>

class TeeStream {
 public:
  TeeStream& operator<<(const char* text);
  TeeStream& operator<<(const std::string& text);
  TeeStream& operator<<(std::string_view text);
  TeeStream& operator<<(char c);
  TeeStream& operator<<(std::int16_t value);
  TeeStream& operator<<(std::int32_t value);
  TeeStream& operator<<(std::uint32_t value);
  TeeStream& operator<<(unsigned long value);
  TeeStream& operator<<(unsigned long long value);
  TeeStream& operator<<(long value);
  TeeStream& operator<<(long long value);
  TeeStream& operator<<(double value);

  void Flush();
  bool SetTerminal(bool on);
  bool SetLog(bool on);
  bool OpenLog(const std::string& name);
  void CloseLog();
  // Writes text and " (not sent to xboard)\n" to the log alone, then flushes.
  void ReportLogOnly(std::string_view text);

  const std::string& LogFileName() const { return filename; }
  bool LogIsOpen() const { return file != nullptr; }

 private:
  template <typename T>
  TeeStream& Write(const T& value);

  std::unique_ptr<std::ofstream> file;
  std::string filename;
  bool to_terminal = true;
  bool to_log = true;
};

extern TeeStream Output;

inline constexpr const char* NOT_SENT_TO_XBOARD = "not sent to xboard";
