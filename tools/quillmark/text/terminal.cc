#include "text/terminal.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

namespace quillmark::tool {
namespace {

std::string Environment(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? "" : value;
}

}  // namespace

bool IsTerminal(int descriptor) { return ::isatty(descriptor) != 0; }

std::size_t TerminalColumns(int descriptor) {
  winsize size{};
  if (!IsTerminal(descriptor) || ::ioctl(descriptor, TIOCGWINSZ, &size) != 0) return 0;
  return size.ws_col;
}

TerminalLook OutputLook() {
  const std::string terminal = Environment("TERM");
  const bool bold =
      IsTerminal(STDOUT_FILENO) && Environment("NO_COLOR").empty() && !terminal.empty() && terminal != "dumb";
  return {TerminalColumns(STDOUT_FILENO), bold};
}

}  // namespace quillmark::tool
