// Keeps SIGPIPE from the host while this thread writes to a peer that may have gone.
//
// The signal of a failed write goes to the writing thread; it is held back and, where our own write
// caused it, taken away again. The host's handler and mask are left as they were.
#pragma once

#include <pthread.h>

#include <csignal>
#include <ctime>

namespace veltgeneral::platform {

class QuietPipe {
 public:
  QuietPipe() noexcept {
    sigset_t pending;
    ::sigpending(&pending);
    wasPending_ = ::sigismember(&pending, SIGPIPE) == 1;
    ::sigemptyset(&pipe_);
    ::sigaddset(&pipe_, SIGPIPE);
    ::pthread_sigmask(SIG_BLOCK, &pipe_, &before_);
  }
  QuietPipe(const QuietPipe&) = delete;
  QuietPipe& operator=(const QuietPipe&) = delete;
  ~QuietPipe() {
    constexpr timespec kNoWait{};
    if (!wasPending_) ::sigtimedwait(&pipe_, nullptr, &kNoWait);
    ::pthread_sigmask(SIG_SETMASK, &before_, nullptr);
  }

 private:
  sigset_t pipe_;
  sigset_t before_;
  bool wasPending_ = false;
};

}  // namespace veltgeneral::platform
