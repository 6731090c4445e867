// What the classes need of a disk.
//
// Paths are host paths. Every failure is a RuntimeError: 53 no such file, 76 no such folder,
// 70 access denied, 75 a folder where a file is wanted (or no name at all), 52 a name the host
// cannot have, 61 disk full, 67 too many open files, 57 a device, and whatever else the host
// reports. Nothing stays open after a failure.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>

#include "veltgeneral/text.h"

namespace veltgeneral::platform {

// An open regular file; closed with the object.
class FileHandle {
 public:
  FileHandle(FileHandle&& other) noexcept;
  ~FileHandle();

  // Pipes and devices are refused, and so never waited for.
  static FileHandle openForReading(const std::string& path);
  // Creates the file or empties it.
  static FileHandle openForWriting(const std::string& path);
  // As it is. A file without any write permission bit is refused, whatever the rights of the
  // process.
  static FileHandle openForChange(const std::string& path);

  // In bytes, when it was opened.
  std::uint64_t size() const noexcept { return size_; }
  // Up to `buffer.size()` bytes from the current position; fewer only at the end of the file.
  std::size_t read(std::span<std::uint8_t> buffer);
  std::size_t readAt(std::uint64_t offset, std::span<std::uint8_t> buffer);
  void write(std::span<const std::uint8_t> bytes);
  // Access and change at this second since 1970, UTC; and the creation time, where another program
  // keeps one in the file's extended attribute. What the host does not allow stays as it was.
  void setTimes(std::int64_t second);
  // Reports what the host only tells at the end.
  void close();

 private:
  FileHandle(int descriptor, std::uint64_t size) noexcept : descriptor_(descriptor), size_(size) {}
  static FileHandle open(const std::string& path, int flags);

  int descriptor_;
  std::uint64_t size_;
};

// The length in bytes of a regular file, whoever may read it.
std::uint64_t fileLength(const std::string& path);

// File attributes as applications know them; their sum is a set.
enum FileAttribute : std::int32_t {
  kReadOnly = 1,
  kHidden = 2,
  kSystem = 4,
  kArchive = 32,
};

// The attributes of a regular file; nothing where there is none. Read-only is the absence of
// every write permission bit, whatever the rights of the process. A leading dot is hidden.
std::optional<std::int32_t> fileAttributes(const std::string& path);

// Gives a regular file exactly these attributes; throws RuntimeError 5 for bits that are none of
// them. On a file system that keeps no extended attributes only read-only is kept. A file that was
// read-only is so after a failure.
void setFileAttributes(const std::string& path, std::int32_t attributes);

// Calls `found` with the name of every regular file in `folder`. A folder that is
// not there has none.
void listFiles(const std::string& folder,
               const std::function<void(const std::string& name)>& found);

}  // namespace veltgeneral::platform
