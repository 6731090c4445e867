#include "pdf/command_file.h"

#include <sys/stat.h>

#include <cerrno>

#include "drawing/error.h"

namespace veltgeneral::pdf {

CommandFile::CommandFile(const std::string& path) : file_(std::fopen(path.c_str(), "rbe")) {
  if (!file_) throw drawing::Error::ofSystem(errno);
  struct stat status {};
  if (::fstat(::fileno(file_.get()), &status) != 0) throw drawing::Error::ofSystem(errno);
  // What is read twice cannot be a pipe.
  if (!S_ISREG(status.st_mode)) throw drawing::Error("Not a regular file");
}

bool CommandFile::next(std::string_view& line) {
  char* buffer = buffer_.release();
  errno = 0;
  const ssize_t length = ::getline(&buffer, &capacity_, file_.get());
  buffer_.reset(buffer);
  if (length < 0) {
    if (std::feof(file_.get()) == 0) throw drawing::Error::ofSystem(errno);
    return false;
  }
  ++lineNumber_;
  line = {buffer, static_cast<std::size_t>(length)};
  if (line.ends_with('\n')) line.remove_suffix(1);
  if (line.ends_with('\r')) line.remove_suffix(1);
  return true;
}

void CommandFile::rewind() {
  if (std::fseek(file_.get(), 0, SEEK_SET) != 0) throw drawing::Error::ofSystem(errno);
  lineNumber_ = 0;
}

}  // namespace veltgeneral::pdf
