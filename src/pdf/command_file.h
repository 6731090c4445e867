// CommandFile: the lines of a command file, as often as they are wanted.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "drawing/handles.h"

namespace veltgeneral::pdf {

class CommandFile {
 public:
  // Throws drawing::Error where the host path is no regular file that can be read.
  explicit CommandFile(const std::string& path);

  // The next line without its end (LF or CR LF), valid until the next call; false at the end.
  // Throws drawing::Error where the file cannot be read on.
  bool next(std::string_view& line);
  int lineNumber() const { return lineNumber_; }  // of the last line, from 1
  // Back to before the first line.
  void rewind();

 private:
  drawing::Handle<std::FILE, std::fclose> file_;
  drawing::Handle<char, std::free> buffer_;
  std::size_t capacity_ = 0;
  int lineNumber_ = 0;
};

}  // namespace veltgeneral::pdf
