// TextArrayFiller: gives many elements of a list their texts at once. Whole pieces of a file are
// written into the array's memory, and elements are pointed at what lies there.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "veltgeneral/text_array.h"

namespace veltgeneral {

class TextArrayFiller {
 public:
  explicit TextArrayFiller(TextArray& list) noexcept : list_(list) {}
  ~TextArrayFiller() { settle(); }
  TextArrayFiller(const TextArrayFiller&) = delete;
  TextArrayFiller& operator=(const TextArrayFiller&) = delete;

  // Room for `units` characters, fewer than 2^24, until the next claim. Views into the list end.
  std::span<char16_t> claim(std::size_t units);

  // Makes `piece`, which lies in that room and which no other element shows, the text of an
  // element. Throws RuntimeError 9.
  void show(std::int32_t index, TextView piece);

 private:
  void settle() noexcept;

  TextArray& list_;
  std::size_t unshown_ = 0;  // characters of the room
};

}  // namespace veltgeneral
