#include "platform/log_append.h"

#include <fcntl.h>
#include <glob.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <string>

#include "platform/linux/files/descriptor.h"
#include "platform/linux/settings/replace_file.h"

namespace veltgeneral::platform {
namespace {

constexpr mode_t kAnyWrite = S_IWUSR | S_IWGRP | S_IWOTH;
constexpr mode_t kNewFile = S_IRUSR | S_IWUSR | S_IRGRP | S_IWGRP | S_IROTH | S_IWOTH;
constexpr off_t kPage = 4096;  // the smallest there is; larger ones are multiples
constexpr int kFlags = O_NOCTTY | O_NONBLOCK;

// Looked at as bits: a process with all rights could write there, and is not meant to.
bool folderIsWritable(const std::string& path) {
  const auto slash = path.rfind('/');
  const std::string folder = slash == std::string::npos ? "." : path.substr(0, slash + 1);
  struct stat status {};
  return ::stat(folder.c_str(), &status) == 0 && (status.st_mode & kAnyWrite) != 0;
}

// A rotation copies, and then deletes what it copied; a read-only file resists the second step.
void copyAside(const std::string& path) {
  const Descriptor file = openFile(path, O_RDONLY | kFlags);
  struct stat status {};
  std::string content;
  if (!file || ::fstat(file.get(), &status) != 0 ||
      !readWhole(file.get(), static_cast<std::size_t>(status.st_size), content))
    return;
  const auto failed = changeFile(path + ".old", status.st_mode & 0777,
                                 [&](std::string_view) { return std::optional(content); });
  if (failed) return;  // then there is no copy, which is all that it means
}

// True where the caller must look at the path again: it has been rotated, by this process or
// another.
bool rotate(int fd, const std::string& path, std::int64_t limit) {
  const FileLock lock(fd);
  struct stat ours {};
  struct stat named {};
  if (!lock.holds() || ::fstat(fd, &ours) != 0) return false;
  if (::stat(path.c_str(), &named) != 0) return true;
  if (named.st_dev != ours.st_dev || named.st_ino != ours.st_ino) return true;
  if (ours.st_size <= limit) return true;
  const std::string old = path + ".old";
  const bool oldThere = ::lstat(old.c_str(), &named) == 0;
  if (oldThere && (named.st_mode & kAnyWrite) == 0) return false;
  return folderIsWritable(path) && ::rename(path.c_str(), old.c_str()) == 0;
}

Descriptor openForAppend(const std::string& path) {
  Descriptor file = openFile(path, O_WRONLY | O_APPEND | kFlags);
  if (!file && errno == ENOENT && folderIsWritable(path))
    file = openFile(path, O_WRONLY | O_APPEND | O_CREAT | kFlags, kNewFile);
  return file;
}

// A record that the disk took only in part is taken back, if nobody has added behind it.
bool writeRecord(int fd, std::string_view record) {
  const ssize_t put = retried([&] { return ::write(fd, record.data(), record.size()); });
  if (put == static_cast<ssize_t>(record.size())) return true;
  if (put <= 0) return false;
  const FileLock lock(fd);
  const off_t end = ::lseek(fd, 0, SEEK_CUR);
  struct stat status {};
  [[maybe_unused]] const bool takenBack =  // else a torn record is all that can be had
      ::fstat(fd, &status) == 0 && status.st_size == end && ::ftruncate(fd, end - put) == 0;
  return false;
}

// A process that is killed inside a write leaves the pages that it has filled: such a record stops
// where a page of the file does, and gets the line end that it lacks. A write of a living process
// passes the same point, so the size of then has to last over an operation that waits for writes.
void endTornRecord(int fd, off_t size) {
  const FileLock lock(fd);
  struct stat status {};
  if (!lock.holds() || ::futimens(fd, nullptr) != 0 || ::fstat(fd, &status) != 0) return;
  if (status.st_size != size) return;
  const Descriptor again = openFile("/proc/self/fd/" + std::to_string(fd), O_RDONLY | kFlags);
  char last = '\n';
  if (again && ::pread(again.get(), &last, 1, size - 1) == 1 && last != '\n')
    writeRecord(fd, "\r\n");
}

void rotateOnly(const std::string& path, std::int64_t limit) {
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode) || status.st_size <= limit)
    return;
  if ((status.st_mode & kAnyWrite) == 0) {
    copyAside(path);
  } else if (const Descriptor file = openFile(path, O_RDONLY | kFlags); file) {
    rotate(file.get(), path, limit);
  }
}

bool append(const std::string& path, std::int64_t limit, std::string_view record,
            Rotation rotation) {
  // Each round more is another process's rotation; nobody rotates that often.
  for (int round = 0; round < 100; ++round) {
    const Descriptor file = openForAppend(path);
    struct stat status {};
    const bool open = file && ::fstat(file.get(), &status) == 0;
    const bool regular = S_ISREG(status.st_mode);
    if (!open || (regular && (status.st_mode & kAnyWrite) == 0)) {
      rotateOnly(path, limit);
      return false;
    }
    if (regular && status.st_size > limit) {
      if (rotation == Rotation::copies) {
        copyAside(path);
      } else if (rotate(file.get(), path, limit)) {
        continue;
      }
    }
    if (regular && status.st_size > 0 && status.st_size % kPage == 0)
      endTornRecord(file.get(), status.st_size);
    // Another process may rotate from here on: the record then stands in ".old", as it would had
    // this process been a little faster.
    return writeRecord(file.get(), record);
  }
  return false;
}

}  // namespace

bool appendToLog(const std::string& path, std::int64_t limit, std::string_view record,
                 Rotation rotation) noexcept {
  try {
    if (!record.empty()) return append(path, limit, record, rotation);
    rotateOnly(path, limit);
    return false;
  } catch (const std::exception&) {
    return false;  // no memory, no record
  }
}

bool hasListing(const std::string& path) noexcept {
  struct stat status {};
  const auto slash = path.rfind('/');
  if (path.find_first_of("*?", slash == std::string::npos ? 0 : slash) == std::string::npos)
    return ::stat(path.c_str(), &status) == 0;
  glob_t found{};
  const bool any = ::glob(path.c_str(), GLOB_NOSORT, nullptr, &found) == 0;
  ::globfree(&found);
  return any;
}

}  // namespace veltgeneral::platform
