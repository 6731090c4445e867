// Attributes of the application's world on Linux: read-only is the absence of write permission
// bits; the others live in an extended attribute.
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>

#include <cerrno>
#include <string>

#include "platform/files.h"
#include "platform/linux/files/dos_attributes.h"
#include "platform/linux/host_error.h"

namespace veltgeneral::platform {
namespace {

constexpr std::uint32_t kKeptOutside = kHidden | kSystem | kArchive;
constexpr mode_t kWriteBits = S_IWUSR | S_IWGRP | S_IWOTH;

void store(const std::string& path, std::int32_t bits) {
  DosAttributes attributes = readDosAttributes(path);
  const auto wanted = static_cast<std::uint32_t>(bits);
  if ((attributes.bits() & kKeptOutside) == wanted) return;
  attributes.setBits(wanted, kKeptOutside);
  const std::string& value = attributes.value();
  const int done = value.empty()
                       ? removexattr(path.c_str(), kDosAttributes)
                       : setxattr(path.c_str(), kDosAttributes, value.data(), value.size(), 0);
  // A file system without extended attributes keeps none, and that is no failure.
  if (done != 0 && errno != ENOTSUP && errno != ENODATA) failWith(errno, path);
}

bool leadingDot(const std::string& path) {
  const std::size_t name = path.find_last_of('/') + 1;
  return name < path.size() && path[name] == '.';
}

void changeMode(const std::string& path, mode_t before, mode_t after) {
  if (before != after && chmod(path.c_str(), after) != 0) failWith(errno, path);
}

}  // namespace

FileHandle FileHandle::openForChange(const std::string& path) {
  FileHandle file = open(path, O_WRONLY);
  struct stat info {};
  if (fstat(file.descriptor_, &info) != 0) failWith(errno, path);
  if ((info.st_mode & kWriteBits) == 0) failWith(EACCES, path);
  return file;
}

std::optional<std::int32_t> fileAttributes(const std::string& path) {
  struct stat info {};
  const bool found = stat(path.c_str(), &info) == 0;
  if (!found && errno != ENOENT && errno != ENOTDIR) failWith(errno, path);
  if (!found || !S_ISREG(info.st_mode)) return std::nullopt;
  auto attributes = static_cast<std::int32_t>(readDosAttributes(path).bits() & kKeptOutside);
  if ((info.st_mode & kWriteBits) == 0) attributes |= kReadOnly;
  if (leadingDot(path)) attributes |= kHidden;
  return attributes;
}

void setFileAttributes(const std::string& path, std::int32_t attributes) {
  if ((static_cast<std::uint32_t>(attributes) & ~(kReadOnly | kKeptOutside)) != 0)
    throw RuntimeError(RunTime::invalidCall);
  struct stat info {};
  if (stat(path.c_str(), &info) != 0) failWith(errno, path);
  const mode_t mode = info.st_mode & 07777;
  const mode_t writable = (mode & kWriteBits) != 0 ? mode : mode | S_IWUSR;
  // The extended attribute can only be written while the file can.
  changeMode(path, mode, writable);
  try {
    store(path, attributes & static_cast<std::int32_t>(kKeptOutside));
  } catch (...) {
    // A read-only file stays one. What stopped the first change is what counts.
    if (mode != writable) static_cast<void>(chmod(path.c_str(), mode));
    throw;
  }
  if ((attributes & kReadOnly) != 0) changeMode(path, writable, writable & ~kWriteBits);
}

}  // namespace veltgeneral::platform
