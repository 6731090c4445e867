// A file descriptor with an owner, and whole reads and writes over it.
#pragma once

#include <sys/types.h>

#include <cerrno>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

namespace veltgeneral::platform {

// One system call, again when a signal interrupted it.
template <class Call>
auto retried(Call&& call) {
  auto result = call();
  while (result == -1 && errno == EINTR) result = call();
  return result;
}

class Descriptor {
 public:
  Descriptor() = default;
  explicit Descriptor(int fd) noexcept : fd_(fd) {}
  Descriptor(Descriptor&& other) noexcept : fd_(std::exchange(other.fd_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(fd_, other.fd_);
    return *this;
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor();

  explicit operator bool() const noexcept { return fd_ >= 0; }
  int get() const noexcept { return fd_; }

 private:
  int fd_ = -1;
};

// As open(2), for this program alone. errno tells why there is none, where there is none.
Descriptor openFile(const std::string& path, int flags, mode_t mode = 0) noexcept;

// Waits for the kernel's lock on the file that a descriptor has open, against every other process
// and thread. It goes with the object, or with the process: nothing of it can stay behind.
class FileLock {
 public:
  // errno tells why it does not hold, where it does not.
  explicit FileLock(int fd) noexcept;
  FileLock(const FileLock&) = delete;
  FileLock& operator=(const FileLock&) = delete;
  ~FileLock();

  bool holds() const noexcept { return holds_; }

 private:
  int fd_;
  bool holds_;
};

// Both leave errno set where they answer false. `readWhole` reads from the start; `expected` is a
// guess at the size that saves a step where it is right.
bool readWhole(int fd, std::size_t expected, std::string& content);
bool writeWhole(int fd, std::string_view content) noexcept;

}  // namespace veltgeneral::platform
