#include "files/line_reader.h"

#include <algorithm>
#include <utility>

#include "platform/structural_scan.h"

namespace veltgeneral {
namespace {

// Small enough that a batch is still in the cache when its lines are taken from it.
constexpr std::size_t kBatch = 128 << 10;

}  // namespace

LineReader::LineReader(platform::FileHandle file, char one, char flag)
    : file_(std::move(file)),
      size_(file_.size()),
      one_(one),
      flag_(flag),
      // One byte more than a small file has, so that the first read also finds its end.
      buffer_(std::min<std::uint64_t>(size_ + 1, kBatch)) {}

bool LineReader::next() {
  std::copy(buffer_.begin() + static_cast<std::ptrdiff_t>(complete_),
            buffer_.begin() + static_cast<std::ptrdiff_t>(filled_), buffer_.begin());
  filled_ -= complete_;
  complete_ = 0;
  while (complete_ == 0 && !(atEnd_ && filled_ == 0)) {
    fill();
    scan();
  }
  return complete_ != 0;
}

void LineReader::fill() {
  if (atEnd_) return;
  // A line longer than the buffer: twice the room each time, so the work stays linear.
  if (filled_ == buffer_.size()) buffer_.resize(buffer_.size() * 2);
  const auto room = std::span(buffer_).subspan(filled_);
  const std::size_t got = file_.read(room);
  filled_ += got;
  atEnd_ = got < room.size();
}

void LineReader::scan() {
  marks_.resize(std::max(marks_.size(), buffer_.size() + platform::kScanSlack));
  markCount_ =
      platform::findBytes(std::span(buffer_).first(filled_), one_, flag_, '\r', marks_.data());
  if (atEnd_) {
    complete_ = filled_;
    return;
  }
  while (markCount_ > 0) {
    const std::size_t at = marks_[markCount_ - 1];
    // A CR at the very end may have its LF in the next piece of the file.
    if (buffer_[at] == '\r' && at + 1 < filled_) {
      complete_ = at + (buffer_[at + 1] == '\n' ? 2 : 1);
      return;
    }
    --markCount_;
  }
}

}  // namespace veltgeneral
