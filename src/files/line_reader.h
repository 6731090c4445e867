// Reading a file by whole lines, many at a time, each line end and each character of interest
// already found.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "platform/files.h"
#include "veltgeneral/bytes.h"

namespace veltgeneral {

// One line of a batch. `marks` are the positions of the characters of interest in the batch's bytes
// that lie in the line; the line break belongs to no line.
struct Line {
  std::size_t begin;
  std::size_t end;
  std::span<const std::uint32_t> marks;
  bool hasFlag;  // one of its characters of interest is the second one
};

// A line ends with CR or CR LF, or with the file; a file that ends with a line break has no empty
// line behind it.
class LineReader {
 public:
  // The characters of interest; give CR where there are fewer than two. Lines tell whether they
  // hold `flag`.
  LineReader(platform::FileHandle file, char one, char flag);

  // Reads on until there is at least one whole line; false at the end of the file. Views of the
  // batch before end. Throws RuntimeError.
  bool next();

  // The bytes of the batch's lines, with their line breaks.
  std::span<const std::uint8_t> bytes() const noexcept { return {buffer_.data(), complete_}; }

  // Calls `each` with every line of the batch.
  template <class Each>
  void forEachLine(Each&& each) const;

  // Of the file when it was opened, in bytes.
  std::uint64_t size() const noexcept { return size_; }

 private:
  void fill();
  void scan();

  platform::FileHandle file_;
  std::uint64_t size_;
  char one_;
  char flag_;
  bool atEnd_ = false;
  Bytes buffer_;
  std::size_t filled_ = 0;
  std::size_t complete_ = 0;  // whole lines end here
  std::vector<std::uint32_t, ReadingAllocator<std::uint32_t>> marks_;
  std::size_t markCount_ = 0;
};

template <class Each>
void LineReader::forEachLine(Each&& each) const {
  const std::uint32_t* const marks = marks_.data();
  const std::uint8_t* const bytes = buffer_.data();
  const auto flag = static_cast<std::uint8_t>(flag_);
  std::size_t mark = 0;
  for (std::size_t begin = 0; begin < complete_; ++mark) {
    const std::size_t first = mark;
    bool hasFlag = false;
    for (; mark < markCount_ && bytes[marks[mark]] != '\r'; ++mark) {
      hasFlag |= bytes[marks[mark]] == flag;
    }
    const std::size_t end = mark < markCount_ ? marks[mark] : complete_;
    each(Line{begin, end, {marks + first, mark - first}, hasFlag});
    begin = end + 1;
    if (begin < complete_ && bytes[begin] == '\n') ++begin;
  }
}

}  // namespace veltgeneral
