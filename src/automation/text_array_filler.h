// TextArrayFiller: gives the elements of a list their texts, one after the other and many at once.
// Whole pieces of a file are written into the array's memory, and elements are pointed at what lies
// there.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "automation/text_array_cell.h"
#include "veltgeneral/runtime_error.h"
#include "veltgeneral/text_array.h"

namespace veltgeneral {

class TextArrayFiller {
 public:
  // Begins with the element `first`; an array that has none takes no text.
  TextArrayFiller(TextArray& list, std::int32_t first) noexcept;
  ~TextArrayFiller() { settle(); }
  TextArrayFiller(const TextArrayFiller&) = delete;
  TextArrayFiller& operator=(const TextArrayFiller&) = delete;

  // Room for `units` characters, fewer than 2^24, until the next claim. Views into the list end.
  std::span<char16_t> claim(std::size_t units);

  // Makes `piece`, which lies in that room, has a character and is shown by no other element, the
  // text of the next element. Throws RuntimeError 9 behind the last.
  void show(TextView piece) {
    if (next_ == end_) throw RuntimeError(RunTime::subscriptOutOfRange);
    TextArray::Cell& cell = list_.cells_[next_++];
    unshown_ += list_.view(cell).size() - piece.size();
    cell = roomCell_ + (static_cast<TextArray::Cell>(piece.data() - room_) << kLengthBits) +
           piece.size();
  }

 private:
  void settle() noexcept;

  TextArray& list_;
  std::size_t next_ = 0;
  std::size_t end_ = 0;
  const char16_t* room_ = nullptr;
  TextArray::Cell roomCell_ = 0;  // of no characters at the room's begin
  std::size_t unshown_ = 0;       // characters of the room and of the elements before
};

}  // namespace veltgeneral
