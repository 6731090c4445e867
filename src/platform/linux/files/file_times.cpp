// A file's times. Linux itself lets nobody set when a file was created.
#include <sys/stat.h>
#include <sys/xattr.h>

#include "platform/files.h"
#include "platform/linux/files/dos_attributes.h"

namespace veltgeneral::platform {
namespace {

constexpr std::int64_t kSecondsFrom1601 = 11644473600;  // to 1970
constexpr std::int64_t kUnitsASecond = 10'000'000;

void setCreationTime(int descriptor, std::int64_t second) {
  DosAttributes attributes = readDosAttributes(descriptor);
  const auto time = static_cast<std::uint64_t>((second + kSecondsFrom1601) * kUnitsASecond);
  if (!attributes.setCreationTime(time)) return;
  const std::string& value = attributes.value();
  fsetxattr(descriptor, kDosAttributes, value.data(), value.size(), XATTR_REPLACE);
}

}  // namespace

void FileHandle::setTimes(std::int64_t second) {
  const timespec time{.tv_sec = second, .tv_nsec = 0};
  const timespec accessAndChange[] = {time, time};
  if (futimens(descriptor_, accessAndChange) == 0) setCreationTime(descriptor_, second);
}

}  // namespace veltgeneral::platform
