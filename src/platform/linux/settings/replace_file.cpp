#include "platform/linux/settings/replace_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <random>
#include <vector>

#include "platform/linux/files/descriptor.h"

namespace veltgeneral::platform {
namespace {

constexpr mode_t kAnyWrite = S_IWUSR | S_IWGRP | S_IWOTH;

std::error_code hostError(int number) { return {number, std::generic_category()}; }

std::string folderOf(const std::string& path) {
  const auto slash = path.rfind('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : path.substr(0, slash);
}

// The file that a chain of symbolic links names, whether it is there or not; nothing, and errno
// set, where that cannot be found out: a link must not be taken for a file.
std::optional<std::string> withoutLinks(std::string path) {
  std::array<char, 4096> target;
  for (int depth = 0; depth < 40; ++depth) {
    const ssize_t length = ::readlink(path.c_str(), target.data(), target.size());
    if (length < 0) return errno == EINVAL || errno == ENOENT ? std::optional(path) : std::nullopt;
    const std::string_view next(target.data(), static_cast<std::size_t>(length));
    path = next.starts_with('/') ? std::string(next) : folderOf(path) + "/" + std::string(next);
  }
  errno = ELOOP;
  return std::nullopt;
}

// A file that disappears with the object unless it was renamed away.
class Beside {
 public:
  Beside(std::string path, mode_t mode)
      : path_(std::move(path)),
        fd_(openFile(path_, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, mode)) {}
  Beside(const Beside&) = delete;
  Beside& operator=(const Beside&) = delete;
  ~Beside() {
    if (fd_ && !renamed_) ::unlink(path_.c_str());
  }

  explicit operator bool() const noexcept { return static_cast<bool>(fd_); }
  int fd() const noexcept { return fd_.get(); }

  bool renameTo(const std::string& target, unsigned flags) {
    renamed_ = ::renameat2(AT_FDCWD, path_.c_str(), AT_FDCWD, target.c_str(), flags) == 0;
    return renamed_;
  }
  const std::string& path() const noexcept { return path_; }

 private:
  std::string path_;
  Descriptor fd_;
  bool renamed_ = false;
};

// Whether an attribute that could not be read or set is none of this process's to keep.
bool isOutOfReach(int error) {
  return error == ENODATA || error == EACCES || error == EPERM || error == ENOTSUP;
}

// Nothing, and errno set, where it cannot be read.
std::optional<std::vector<char>> attributeOf(int fd, const char* name) {
  std::vector<char> value;
  for (;;) {
    const ssize_t size = ::fgetxattr(fd, name, nullptr, 0);
    if (size < 0) return std::nullopt;
    value.resize(static_cast<std::size_t>(size));
    const ssize_t got = ::fgetxattr(fd, name, value.data(), value.size());
    if (got < 0 && errno == ERANGE) continue;  // it has grown
    if (got < 0) return std::nullopt;
    value.resize(std::min(value.size(), static_cast<std::size_t>(got)));
    return value;
  }
}

// False, and errno set, where an attribute would be lost that this process could have set.
bool copyAttributes(int from, int to) {
  const ssize_t length = ::flistxattr(from, nullptr, 0);
  if (length <= 0) return length == 0 || errno == ENOTSUP;
  std::vector<char> names(static_cast<std::size_t>(length));
  const ssize_t listed = ::flistxattr(from, names.data(), names.size());
  if (listed < 0) return false;
  const std::string_view all(names.data(), static_cast<std::size_t>(listed));
  for (std::size_t at = 0; at < all.size(); at += std::char_traits<char>::length(&all[at]) + 1) {
    const auto value = attributeOf(from, &all[at]);
    const bool kept = value && ::fsetxattr(to, &all[at], value->data(), value->size(), 0) == 0;
    if (!kept && !isOutOfReach(errno)) return false;
  }
  return true;
}

bool keepOwnerAndMode(const struct stat& before, int to) {
  struct stat now {};
  if (::fstat(to, &now) != 0) return false;
  if ((now.st_uid != before.st_uid || now.st_gid != before.st_gid) &&
      ::fchown(to, before.st_uid, before.st_gid) != 0)
    return false;
  const mode_t mode = before.st_mode & 07777;
  return mode == (now.st_mode & 07777) || ::fchmod(to, mode) == 0;
}

bool resize(int fd, std::size_t size) {
  return retried([&] { return ::ftruncate(fd, static_cast<off_t>(size)); }) == 0;
}

bool put(int fd, std::string_view content) {
  return ::lseek(fd, 0, SEEK_SET) == 0 && writeWhole(fd, content) && resize(fd, content.size());
}

// The one way left where the folder is closed to us. Space is asked for first: a full disk must not
// leave a file that is half old and half new.
std::error_code overwrite(int fd, std::string_view before, std::string_view content) {
  const auto size = static_cast<off_t>(content.size());
  const bool room = content.size() <= before.size() ||
                    retried([&] { return ::fallocate(fd, 0, 0, size); }) == 0 ||
                    errno == EOPNOTSUPP;
  if (room && put(fd, content)) return {};
  const int why = errno;
  [[maybe_unused]] const bool asItWas =  // as far as the disk still takes it
      room ? put(fd, before) : resize(fd, before.size());
  return hostError(why);
}

std::error_code replace(const std::string& target, int old, const struct stat& status,
                        std::string_view before, std::string_view content) {
  // Whoever holds the old file's lock is alone with this name, so one that is there was left by a
  // process that is gone.
  const std::string name = folderOf(target) + "/." + std::to_string(status.st_ino) + ".veltgeneral";
  ::unlink(name.c_str());
  Beside beside(name, 0600);
  if (!beside) {
    if (errno == EACCES || errno == EPERM || errno == EEXIST)
      return overwrite(old, before, content);
    return hostError(errno);
  }
  if (!writeWhole(beside.fd(), content)) return hostError(errno);
  if (!keepOwnerAndMode(status, beside.fd())) return overwrite(old, before, content);
  if (!copyAttributes(old, beside.fd())) return hostError(errno);
  if (beside.renameTo(target, 0)) return {};
  if (errno == EACCES || errno == EPERM) return overwrite(old, before, content);
  return hostError(errno);
}

// Creation by a second name: it fails where another process was faster, and a process killed before
// it leaves nothing at all.
int linkNameless(const std::string& target, mode_t mode, std::string_view content) {
  const Descriptor fd = openFile(folderOf(target), O_TMPFILE | O_WRONLY, mode);
  if (!fd) return errno;
  if (!writeWhole(fd.get(), content)) return errno;
  const std::string self = "/proc/self/fd/" + std::to_string(fd.get());
  return ::linkat(AT_FDCWD, self.c_str(), AT_FDCWD, target.c_str(), AT_SYMLINK_FOLLOW) == 0 ? 0
                                                                                            : errno;
}

// For file systems without nameless files.
int linkNamed(const std::string& target, mode_t mode, std::string_view content) {
  Beside beside(folderOf(target) + "/." + std::to_string(std::random_device{}()) + ".veltgeneral",
                mode);
  if (!beside || !writeWhole(beside.fd(), content)) return errno;
  if (beside.renameTo(target, RENAME_NOREPLACE)) return 0;
  if (errno != EINVAL && errno != ENOSYS) return errno;
  return ::link(beside.path().c_str(), target.c_str()) == 0 ? 0 : errno;
}

int create(const std::string& target, mode_t mode, std::string_view content) {
  const int result = linkNameless(target, mode, content);
  const bool unsupported = result == EOPNOTSUPP || result == EISDIR || result == EINVAL ||
                           result == ENOENT || result == EXDEV;
  return unsupported ? linkNamed(target, mode, content) : result;
}

bool sameFile(const struct stat& one, const struct stat& other) {
  return one.st_dev == other.st_dev && one.st_ino == other.st_ino;
}

}  // namespace

std::error_code changeFile(const std::string& path, mode_t newFileMode, const Edit& edit) {
  const auto named = withoutLinks(path);
  if (!named) return hostError(errno);
  const std::string& target = *named;
  struct stat folder {};
  if (::stat(folderOf(target).c_str(), &folder) != 0) return hostError(errno);
  if ((folder.st_mode & kAnyWrite) == 0) return hostError(EACCES);
  for (;;) {
    const Descriptor file = openFile(target, O_RDWR | O_NOCTTY | O_NONBLOCK);
    if (!file && errno != ENOENT) return hostError(errno);
    if (!file) {
      const auto content = edit({});
      if (!content) return {};
      const int result = create(target, newFileMode, *content);
      if (result == EEXIST) continue;
      return result == 0 ? std::error_code{} : hostError(result);
    }
    const FileLock lock(file.get());
    struct stat ours {};
    struct stat there {};
    if (!lock.holds() || ::fstat(file.get(), &ours) != 0) return hostError(errno);
    // Another process may have put a new file here while this one waited.
    const bool gone = ::stat(target.c_str(), &there) != 0;
    if (gone && errno != ENOENT) return hostError(errno);
    if (gone || !sameFile(ours, there)) continue;
    if (!S_ISREG(ours.st_mode)) return hostError(EINVAL);
    if ((ours.st_mode & kAnyWrite) == 0) return hostError(EACCES);
    std::string before;
    if (!readWhole(file.get(), static_cast<std::size_t>(ours.st_size), before))
      return hostError(errno);
    const auto after = edit(before);
    return after ? replace(target, file.get(), ours, before, *after) : std::error_code{};
  }
}

}  // namespace veltgeneral::platform
