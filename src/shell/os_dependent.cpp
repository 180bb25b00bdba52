#include "shell/os_dependent.h"

#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <fstream>

#include "shell/checked_assert.h"
#include "shell/input_reader.h"
#include "shell/self_check.h"
#include "shell/tee_stream.h"

namespace {

constexpr std::uint32_t DEFAULT_ROWS = 24;
constexpr std::uint32_t DEFAULT_COLUMNS = 80;

InputReader& StandardInput() {
  static InputReader reader(STDIN_FILENO);
  return reader;
}

winsize TerminalSize() {
  winsize size{};
  if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0) size = winsize{};
  if (size.ws_row == 0) size.ws_row = DEFAULT_ROWS;
  if (size.ws_col == 0) size.ws_col = DEFAULT_COLUMNS;
  return size;
}

}  // namespace

void EnterRawMode() {
  static bool entered = false;
  if (entered) return;
  entered = true;
  // On a pipe both calls fail, which is harmless: there is no line discipline to change.
  termios settings{};
  tcgetattr(STDIN_FILENO, &settings);
  settings.c_lflag &= ~tcflag_t(ICANON);
  tcsetattr(STDIN_FILENO, TCSANOW, &settings);
  // Unbuffering a C stream has no part here: standard input is read only through StandardInput(),
  // which hands out every character the moment read(2) delivers it.
  Output.ReportLogOnly("Stdin has been set to raw mode (OS: Unix compatible).");
}

bool InputAvailable() { return StandardInput().InputAvailable(); }

std::string ReadLine() {
  std::optional<std::string> line = StandardInput().ReadLine();
  if (!line) return "quit";
  const bool terminal = Output.SetTerminal(false);
  Output << "Brask received input: " << *line << "\n";
  Output.SetTerminal(terminal);
  Output.Flush();
  return *line;
}

std::string DirectoryOf(std::string_view path) {
  const std::size_t slash = path.rfind('/');
  if (slash == std::string_view::npos || slash == 0) return ".";
  return std::string(path.substr(0, slash));
}

std::string ExecutableDirectory(std::string_view argv0) {
  static const std::string directory = DirectoryOf(argv0);
  return directory;
}

bool FileExists(const std::string& name) { return std::ifstream(name).is_open(); }

std::uint32_t TerminalRows() { return TerminalSize().ws_row; }
std::uint32_t TerminalColumns() { return TerminalSize().ws_col; }
bool StandardOutputIsTerminal() { return isatty(STDOUT_FILENO) == 1; }

void CheckPlatformArithmetic() {
  const bool ok = CoordinateArithmeticAgrees();
  CHECKED_ASSERT(ok, "bit-twiddling functions in basic failed the checks");
}
