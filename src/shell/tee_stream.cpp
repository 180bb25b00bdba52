#include "shell/tee_stream.h"

#include <ctime>
#include <iostream>

// Constant-initialized, so that it works even for code that runs before main, such as the
// construction of other globals.
constinit TeeStream Output;

// Each side formats numbers with its own stream, so that widths set on standard output for the
// help columns never reach the log.
template <typename T>
TeeStream& TeeStream::Write(const T& value) {
  if (to_terminal) std::cout << value;
  if (file && to_log) *file << value;
  return *this;
}

TeeStream& TeeStream::operator<<(const char* text) { return Write(text); }
TeeStream& TeeStream::operator<<(const std::string& text) { return Write(text); }
TeeStream& TeeStream::operator<<(std::string_view text) { return Write(text); }
TeeStream& TeeStream::operator<<(char c) { return Write(c); }
TeeStream& TeeStream::operator<<(std::int16_t value) { return Write(value); }
TeeStream& TeeStream::operator<<(std::int32_t value) { return Write(value); }
TeeStream& TeeStream::operator<<(std::uint32_t value) { return Write(value); }
TeeStream& TeeStream::operator<<(unsigned long value) { return Write(value); }
TeeStream& TeeStream::operator<<(unsigned long long value) { return Write(value); }
TeeStream& TeeStream::operator<<(long value) { return Write(value); }
TeeStream& TeeStream::operator<<(long long value) { return Write(value); }
TeeStream& TeeStream::operator<<(double value) { return Write(value); }

void TeeStream::Flush() {
  std::cout.flush();
  if (file && to_log) file->flush();
}

bool TeeStream::SetTerminal(bool on) {
  bool before = to_terminal;
  to_terminal = on;
  return before;
}

bool TeeStream::SetLog(bool on) {
  bool before = to_log;
  to_log = on;
  return before;
}

bool TeeStream::OpenLog(const std::string& name) {
  if (name.empty()) {
    CloseLog();
    return true;
  }
  if (file) CloseLog();
  try {
    auto stream = std::make_unique<std::ofstream>();
    stream->exceptions(std::ios::failbit | std::ios::badbit);
    stream->open(name, std::ios::out | std::ios::trunc);
    std::time_t now = std::time(nullptr);
    *stream << "Brask logfile created at: " << std::ctime(&now) << '\n';
    stream->flush();
    // Later write failures leave the stream failed and are ignored, never thrown.
    stream->exceptions(std::ios::goodbit);
    file = std::move(stream);
    filename = name;
  } catch (const std::exception&) {
    return false;
  }
  return true;
}

void TeeStream::CloseLog() {
  file.reset();
  filename.clear();
}

void TeeStream::ReportLogOnly(std::string_view text) {
  bool terminal = SetTerminal(false);
  *this << text << " (" << NOT_SENT_TO_XBOARD << ")\n";
  SetTerminal(terminal);
  Flush();
}
