#include "platform/terminal.h"

#include <sys/ioctl.h>
#include <unistd.h>

namespace veltgeneral::platform {

std::optional<int> terminalColumns() {
  if (::isatty(STDERR_FILENO) == 0) return std::nullopt;
  winsize size{};
  constexpr int kUsual = 80;  // of a terminal that does not say
  if (::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0) return kUsual;
  return size.ws_col;
}

}  // namespace veltgeneral::platform
