#include "platform/linux/settings/file_cache.h"

#include <fcntl.h>

#include <ctime>

#include "platform/linux/files/descriptor.h"

namespace veltgeneral::platform {
namespace {

std::int64_t nanoseconds(const timespec& time) noexcept {
  return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

// The time that the kernel would give a change now, less one tick.
std::int64_t beforeThisTick() noexcept {
  timespec now{};
  timespec tick{};
  ::clock_gettime(CLOCK_REALTIME_COARSE, &now);
  ::clock_getres(CLOCK_REALTIME_COARSE, &tick);
  return nanoseconds(now) - nanoseconds(tick);
}

}  // namespace

FileStamp stampOf(const struct stat& status) noexcept {
  return {status.st_dev, status.st_ino, status.st_size, nanoseconds(status.st_mtim),
          nanoseconds(status.st_ctim)};
}

std::unique_ptr<FileReading> readSettled(const std::string& path) {
  const Descriptor file = openFile(path, O_RDONLY | O_NOCTTY | O_NONBLOCK);
  struct stat status {};
  if (!file || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) return nullptr;
  auto reading = std::make_unique<FileReading>();
  // A file overwritten while it is read is read again, unless that goes on and on.
  for (int round = 0; round < 8; ++round) {
    reading->stamp = stampOf(status);
    reading->settled = reading->stamp.changed < beforeThisTick();
    if (!readWhole(file.get(), static_cast<std::size_t>(status.st_size), reading->content))
      return nullptr;
    if (::fstat(file.get(), &status) != 0) return nullptr;
    if (stampOf(status) == reading->stamp) return reading;
  }
  reading->settled = false;
  return reading;
}

}  // namespace veltgeneral::platform
