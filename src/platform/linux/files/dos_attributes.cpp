#include "platform/linux/files/dos_attributes.h"

#include <sys/xattr.h>

#include <array>
#include <cerrno>
#include <charconv>
#include <cstring>
#include <string_view>

#include "platform/linux/host_error.h"

namespace veltgeneral::platform {
namespace {

constexpr std::size_t kUsual = 256;
constexpr std::size_t kGreatest = 65536;  // of any extended attribute

// Of the mask in a binary record.
enum Field : std::uint32_t {
  kExtendedSize = 2,
  kSize = 4,
  kAllocatedSize = 8,
  kCreationTime = 16,
};

// `get` fills a buffer as getxattr does. errno is 0 where it succeeded.
template <class Get>
DosAttributes readWith(Get&& get) {
  std::string bytes(kUsual, '\0');
  errno = 0;
  ssize_t got = get(bytes);
  if (got < 0 && errno == ERANGE) {
    bytes.resize(kGreatest);
    errno = 0;
    got = get(bytes);
  }
  bytes.resize(got > 0 ? static_cast<std::size_t>(got) : 0);
  return DosAttributes(std::move(bytes));
}

bool meansNone(int error) {
  return error == ENODATA || error == ENOTSUP || error == EACCES || error == EPERM ||
         error == ENOENT;
}

}  // namespace

DosAttributes readDosAttributes(const std::string& path) {
  DosAttributes read = readWith([&](std::string& bytes) {
    return getxattr(path.c_str(), kDosAttributes, bytes.data(), bytes.size());
  });
  if (errno != 0 && !meansNone(errno)) failWith(errno, path);
  return read;
}

DosAttributes readDosAttributes(int descriptor) {
  return readWith([&](std::string& bytes) {
    return fgetxattr(descriptor, kDosAttributes, bytes.data(), bytes.size());
  });
}

std::uint32_t DosAttributes::bits() const {
  if (const std::size_t at = bitsPlace(); at != 0) return word(at);
  const std::string_view text = std::string_view(bytes_).substr(0, bytes_.find('\0'));
  std::uint32_t value = 0;
  if (text.starts_with("0x") || text.starts_with("0X")) {
    std::from_chars(text.data() + 2, text.data() + text.size(), value, 16);
  }
  return value;
}

void DosAttributes::setBits(std::uint32_t bits, std::uint32_t mask) {
  if (const std::size_t at = bitsPlace(); at != 0) {
    const std::uint32_t changed = (word(at) & ~mask) | (bits & mask);
    std::memcpy(bytes_.data() + at, &changed, sizeof changed);
    return;
  }
  bytes_.clear();
  if ((bits & mask) == 0) return;
  std::array<char, 16> text{'0', 'x'};
  const auto end = std::to_chars(text.data() + 2, text.data() + text.size(), bits & mask, 16).ptr;
  bytes_.assign(text.data(), end);
}

bool DosAttributes::setCreationTime(std::uint64_t time) {
  const std::size_t at = creationTimePlace();
  if (at == 0 || at + sizeof time > bytes_.size()) return false;
  std::memcpy(bytes_.data() + at, &time, sizeof time);
  return true;
}

// Where the version lies in a binary record, 0 when it is none.
std::size_t DosAttributes::recordPlace() const {
  const std::size_t nul = bytes_.find('\0');
  if (nul == std::string::npos) return 0;
  const std::size_t at = (nul + 2) & ~std::size_t{1};
  if (at + 4 > bytes_.size()) return 0;
  return bytes_[at] != 0 && bytes_[at + 2] == bytes_[at] ? at : 0;
}

std::size_t DosAttributes::bitsPlace() const {
  const std::size_t record = recordPlace();
  if (record == 0) return 0;
  std::size_t at = (record + 4 + 3) & ~std::size_t{3};
  if (bytes_[record] != 1) at += 4;
  return at + 4 <= bytes_.size() ? at : 0;
}

// Where its mask says that it lies right behind the attributes; records that hold sizes before it
// differ from version to version and are left alone. Version 4 has another time before it.
std::size_t DosAttributes::creationTimePlace() const {
  const std::size_t bits = bitsPlace();
  if (bits == 0) return 0;
  const char version = bytes_[recordPlace()];
  const std::uint32_t mask = version < 3 ? 0 : word(bits - 4);
  constexpr std::uint32_t kSizes = kExtendedSize | kSize | kAllocatedSize;
  if ((mask & (kCreationTime | kSizes)) != kCreationTime) return 0;
  return bits + 4 + (version == 4 ? 8 : 0);
}

std::uint32_t DosAttributes::word(std::size_t at) const {
  std::uint32_t value = 0;
  std::memcpy(&value, bytes_.data() + at, sizeof value);
  return value;
}

}  // namespace veltgeneral::platform
