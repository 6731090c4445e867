// A disk without room, as a program sees it.
#pragma once

#include <sys/resource.h>

#include <csignal>

namespace veltgeneral::test {

// While it lives, no file that this process writes grows beyond `most` bytes.
class FileLimit {
 public:
  explicit FileLimit(rlim_t most) {
    ::getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit limit{most, before_.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &limit);
  }
  FileLimit(const FileLimit&) = delete;
  FileLimit& operator=(const FileLimit&) = delete;
  ~FileLimit() {
    ::setrlimit(RLIMIT_FSIZE, &before_);
    ::signal(SIGXFSZ, signal_);
  }

 private:
  rlimit before_{};
  const sighandler_t signal_ = ::signal(SIGXFSZ, SIG_IGN);
};

}  // namespace veltgeneral::test
