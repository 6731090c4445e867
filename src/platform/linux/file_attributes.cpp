// Attributes of the application's world on Linux: read-only is the absence of write permission
// bits; the others live in the extended attribute "user.DOSATTRIB", as other software keeps them:
// a text such as "0x22", sometimes with a final NUL, or a binary record: that text (often empty)
// and its NUL, a 16-bit version twice, a 32-bit mask of the fields that follow (from version 2 on),
// the 32-bit attributes, and more, the creation time among it; little-endian, each number aligned
// to its size. We write the text; in a binary record the bits are changed where they lie, since
// shortening it would lose the creation time.
#include <sys/stat.h>
#include <sys/xattr.h>

#include <array>
#include <cerrno>
#include <charconv>
#include <cstring>
#include <string>
#include <string_view>

#include "platform/files.h"
#include "platform/linux/host_error.h"

namespace veltgeneral::platform {
namespace {

constexpr const char* kName = "user.DOSATTRIB";
constexpr std::int32_t kKeptOutside = kHidden | kSystem | kArchive;
constexpr mode_t kWriteBits = S_IWUSR | S_IWGRP | S_IWOTH;

// The extended attribute as it lies on the disk.
class StoredAttributes {
 public:
  // Nothing there, no such facility or no right to look are all the same: no attributes.
  explicit StoredAttributes(const std::string& path) : bytes_(256, '\0') {
    ssize_t got = getxattr(path.c_str(), kName, bytes_.data(), bytes_.size());
    if (got < 0 && errno == ERANGE) {
      bytes_.resize(kGreatest);
      got = getxattr(path.c_str(), kName, bytes_.data(), bytes_.size());
    }
    bytes_.resize(got > 0 ? static_cast<std::size_t>(got) : 0);
  }

  std::int32_t bits() const {
    const std::string_view text = std::string_view(bytes_).substr(0, bytes_.find('\0'));
    std::uint32_t value = 0;
    if (const std::size_t at = binaryPlace(); at != 0) {
      value = word(at);
    } else if (text.starts_with("0x") || text.starts_with("0X")) {
      std::from_chars(text.data() + 2, text.data() + text.size(), value, 16);
    }
    return static_cast<std::int32_t>(value & kKeptOutside);
  }

  void store(const std::string& path, std::int32_t bits) {
    if (bits == this->bits()) return;
    int done = 0;
    if (const std::size_t at = binaryPlace(); at != 0) {
      setWord(at, (word(at) & ~static_cast<std::uint32_t>(kKeptOutside)) |
                      static_cast<std::uint32_t>(bits));
      done = setxattr(path.c_str(), kName, bytes_.data(), bytes_.size(), 0);
    } else if (bits == 0) {
      done = removexattr(path.c_str(), kName);
    } else {
      std::array<char, 16> text{'0', 'x'};
      const auto end = std::to_chars(text.data() + 2, text.data() + text.size(), bits, 16).ptr;
      done = setxattr(path.c_str(), kName, text.data(), static_cast<std::size_t>(end - text.data()),
                      0);
    }
    // A file system without extended attributes keeps none, and that is no failure.
    if (done != 0 && errno != ENOTSUP && errno != ENODATA) failWith(errno, path);
  }

 private:
  static constexpr std::size_t kGreatest = 65536;  // of any extended attribute

  // Where the attribute bits lie in a binary record, 0 when it is none.
  std::size_t binaryPlace() const {
    const std::size_t nul = bytes_.find('\0');
    if (nul == std::string::npos) return 0;
    std::size_t at = (nul + 2) & ~std::size_t{1};
    if (at + 4 > bytes_.size()) return 0;
    const auto version = static_cast<unsigned char>(bytes_[at]);
    if (version == 0 || bytes_[at + 2] != bytes_[at]) return 0;
    at = (at + 4 + 3) & ~std::size_t{3};
    if (version > 1) at += 4;
    return at + 4 <= bytes_.size() ? at : 0;
  }

  std::uint32_t word(std::size_t at) const {
    std::uint32_t value = 0;
    std::memcpy(&value, bytes_.data() + at, sizeof value);
    return value;
  }
  void setWord(std::size_t at, std::uint32_t value) {
    std::memcpy(bytes_.data() + at, &value, sizeof value);
  }

  std::string bytes_;
};

bool leadingDot(const std::string& path) {
  const std::size_t name = path.find_last_of('/') + 1;
  return name < path.size() && path[name] == '.';
}

void changeMode(const std::string& path, mode_t before, mode_t after) {
  if (before != after && chmod(path.c_str(), after) != 0) failWith(errno, path);
}

}  // namespace

std::optional<std::int32_t> fileAttributes(const std::string& path) {
  struct stat info {};
  if (stat(path.c_str(), &info) != 0 || !S_ISREG(info.st_mode)) return std::nullopt;
  std::int32_t attributes = StoredAttributes(path).bits();
  if ((info.st_mode & kWriteBits) == 0) attributes |= kReadOnly;
  if (leadingDot(path)) attributes |= kHidden;
  return attributes;
}

void setFileAttributes(const std::string& path, std::int32_t attributes) {
  if ((attributes & ~(kReadOnly | kKeptOutside)) != 0) throw RuntimeError(RunTime::invalidCall);
  struct stat info {};
  if (stat(path.c_str(), &info) != 0) failWith(errno, path);
  const mode_t mode = info.st_mode & 07777;
  const mode_t writable = (mode & kWriteBits) != 0 ? mode : mode | S_IWUSR;
  // The extended attribute can only be written while the file can.
  changeMode(path, mode, writable);
  StoredAttributes(path).store(path, attributes & kKeptOutside);
  if ((attributes & kReadOnly) != 0) changeMode(path, writable, writable & ~kWriteBits);
}

}  // namespace veltgeneral::platform
