// A display of a test's own.
#pragma once

#include <poll.h>

#include <cstdlib>
#include <optional>
#include <stdexcept>
#include <string>

#include "support/process.h"

namespace veltgeneral::test {

// An X server without a screen of glass, named in DISPLAY while it lives.
class VirtualDisplay {
 public:
  explicit VirtualDisplay(const std::string& screen = "1280x1024x24") {
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error("pipe");
    server_.emplace(
        std::vector<std::string>{"Xvfb", "-displayfd", std::to_string(ends[1]), "-screen", "0",
                                 screen, "-dpi", "96", "-nolisten", "tcp", "-noreset"},
        Process::Options{.inherited = ends[1]});
    ::close(ends[1]);
    // The server writes the number of its display as soon as it takes connections.
    std::string number;
    pollfd ready{ends[0], POLLIN, 0};
    char letter = 0;
    while (::poll(&ready, 1, 20'000) > 0 && ::read(ends[0], &letter, 1) == 1 && letter != '\n')
      number += letter;
    ::close(ends[0]);
    if (number.empty()) throw std::runtime_error("Xvfb does not start");
    ::setenv("DISPLAY", (":" + number).c_str(), 1);
  }
  ~VirtualDisplay() { ::unsetenv("DISPLAY"); }

  void end(int signal = SIGTERM) { server_->end(signal); }

 private:
  std::optional<Process> server_;
};

}  // namespace veltgeneral::test
