// Replacing a file by text, as every member that writes one does.
#pragma once

#include <array>
#include <cstdint>
#include <functional>

#include "platform/files.h"
#include "veltgeneral/err_info.h"
#include "veltgeneral/text.h"

namespace veltgeneral {

// A file that takes text piece by piece, through the code page.
class TextFile {
 public:
  // Creates the file or empties it. Throws RuntimeError, as the others do.
  explicit TextFile(const std::string& path) : file_(platform::FileHandle::openForWriting(path)) {}

  void write(TextView text);
  // Writes what is left; nothing is written after it.
  void close();

 private:
  static constexpr std::size_t kChunk = 32 << 10;

  void flush();

  platform::FileHandle file_;
  std::array<std::uint8_t, kChunk> bytes_;
  std::size_t filled_ = 0;
};

// FileUtility's writeFile with a text that `produce` writes; the result is that of writeFile.
ErrInfo replaceFile(TextView fileName, std::int32_t attributes,
                    const std::function<void(TextFile&)>& produce);

}  // namespace veltgeneral
