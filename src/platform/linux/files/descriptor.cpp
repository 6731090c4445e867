#include "platform/linux/files/descriptor.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace veltgeneral::platform {

Descriptor::~Descriptor() {
  if (fd_ >= 0) ::close(fd_);
}

Descriptor openFile(const std::string& path, int flags, mode_t mode) noexcept {
  return Descriptor(retried([&] { return ::open(path.c_str(), flags | O_CLOEXEC, mode); }));
}

FileLock::FileLock(int fd) noexcept
    : fd_(fd), holds_(retried([&] { return ::flock(fd, LOCK_EX); }) == 0) {}

FileLock::~FileLock() {
  // Said outright: a descriptor that a fork has copied would keep the lock over our close.
  if (holds_) ::flock(fd_, LOCK_UN);
}

bool readWhole(int fd, std::size_t expected, std::string& content) {
  content.resize(expected);
  std::size_t used = 0;
  for (;;) {
    // A full buffer asks for one more byte's worth only to hear that there is none.
    char probe = 0;
    const bool full = used == content.size();
    const ssize_t got = retried([&] {
      return ::pread(fd, full ? &probe : content.data() + used, full ? 1 : content.size() - used,
                     static_cast<off_t>(used));
    });
    if (got < 0) return false;
    if (got == 0) break;
    if (full) {
      content.push_back(probe);
      ++used;
      content.resize(content.size() * 2 + 4096);
      continue;
    }
    used += static_cast<std::size_t>(got);
  }
  content.resize(used);
  return true;
}

bool writeWhole(int fd, std::string_view content) noexcept {
  while (!content.empty()) {
    const ssize_t put = retried([&] { return ::write(fd, content.data(), content.size()); });
    if (put < 0) return false;
    content.remove_prefix(static_cast<std::size_t>(put));
  }
  return true;
}

}  // namespace veltgeneral::platform
