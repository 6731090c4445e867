#include "platform/files.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <memory>
#include <utility>

#include "platform/linux/files/descriptor.h"
#include "platform/linux/host_error.h"

namespace veltgeneral::platform {
namespace {

// A link whose target is gone or out of reach, or a file that was removed meanwhile.
bool leadsNowhere(int error) {
  return error == ENOENT || error == ENOTDIR || error == ELOOP || error == EACCES;
}

}  // namespace

FileHandle::FileHandle(FileHandle&& other) noexcept
    : descriptor_(std::exchange(other.descriptor_, -1)), size_(other.size_) {}

FileHandle::~FileHandle() {
  if (descriptor_ >= 0) ::close(descriptor_);
}

// Opened without waiting, looked at, and only then used: a pipe would block its opener for good.
FileHandle FileHandle::open(const std::string& path, int flags) {
  const int descriptor = retried(
      [&] { return ::open(path.c_str(), flags | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, 0666); });
  if (descriptor < 0) failWith(errno, path);
  struct stat info {};
  if (fstat(descriptor, &info) != 0) info.st_mode = 0;
  FileHandle handle(descriptor, static_cast<std::uint64_t>(info.st_size));
  if (!S_ISREG(info.st_mode)) failWith(S_ISDIR(info.st_mode) ? EISDIR : EIO, path);
  return handle;
}

FileHandle FileHandle::openForReading(const std::string& path) { return open(path, O_RDONLY); }

FileHandle FileHandle::openForWriting(const std::string& path) {
  return open(path, O_WRONLY | O_CREAT | O_TRUNC);
}

std::size_t FileHandle::read(std::span<std::uint8_t> buffer) {
  std::size_t done = 0;
  while (done < buffer.size()) {
    const auto count =
        retried([&] { return ::read(descriptor_, buffer.data() + done, buffer.size() - done); });
    if (count < 0) failWith(errno, "/");
    if (count == 0) break;
    done += static_cast<std::size_t>(count);
  }
  return done;
}

std::size_t FileHandle::readAt(std::uint64_t offset, std::span<std::uint8_t> buffer) {
  std::size_t done = 0;
  while (done < buffer.size()) {
    const auto count = retried([&] {
      return pread(descriptor_, buffer.data() + done, buffer.size() - done,
                   static_cast<off_t>(offset + done));
    });
    if (count < 0) failWith(errno, "/");
    if (count == 0) break;
    done += static_cast<std::size_t>(count);
  }
  return done;
}

void FileHandle::write(std::span<const std::uint8_t> bytes) {
  while (!bytes.empty()) {
    const auto count = retried([&] { return ::write(descriptor_, bytes.data(), bytes.size()); });
    if (count < 0) failWith(errno, "/");
    bytes = bytes.subspan(static_cast<std::size_t>(count));
  }
}

void FileHandle::close() {
  // Closed whatever the answer; an interrupted close has closed on Linux.
  if (::close(std::exchange(descriptor_, -1)) != 0 && errno != EINTR) failWith(errno, "/");
}

std::uint64_t fileLength(const std::string& path) {
  struct stat info {};
  if (stat(path.c_str(), &info) != 0) failWith(errno, path);
  if (!S_ISREG(info.st_mode)) failWith(S_ISDIR(info.st_mode) ? EISDIR : EIO, path);
  return static_cast<std::uint64_t>(info.st_size);
}

void listFiles(const std::string& folder,
               const std::function<void(const std::string& name)>& found) {
  const std::unique_ptr<DIR, int (*)(DIR*)> directory(opendir(folder.c_str()), &closedir);
  if (!directory) {
    if (errno == ENOENT || errno == ENOTDIR) return;
    failWith(errno, folder);
  }
  const int parent = dirfd(directory.get());
  for (errno = 0; const dirent* entry = readdir(directory.get()); errno = 0) {
    bool regular = entry->d_type == DT_REG;
    if (entry->d_type == DT_UNKNOWN || entry->d_type == DT_LNK) {
      struct stat info {};
      const bool there = fstatat(parent, entry->d_name, &info, 0) == 0;
      if (!there && !leadsNowhere(errno)) failWith(errno, folder);
      regular = there && S_ISREG(info.st_mode);
    }
    if (regular) found(entry->d_name);
  }
  if (errno != 0) failWith(errno, folder);
}

}  // namespace veltgeneral::platform
