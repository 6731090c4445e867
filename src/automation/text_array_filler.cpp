#include "automation/text_array_filler.h"

#include <utility>

namespace veltgeneral {

TextArrayFiller::TextArrayFiller(TextArray& list, std::int32_t first) noexcept : list_(list) {
  if (list.dimensions_ != 1) return;
  const auto [lower, upper] = list.bounds_[0];
  if (first < lower || first > upper) return;
  next_ = list.index(first);
  end_ = list.size_;
}

std::span<char16_t> TextArrayFiller::claim(std::size_t units) {
  settle();
  list_.compactWhereWorth();
  char16_t* const room = list_.claim(units);
  room_ = room;
  roomCell_ = list_.cellFor(room, 1) - 1;
  unshown_ = units;
  return {room, units};
}

void TextArrayFiller::settle() noexcept { list_.garbage_ += std::exchange(unshown_, 0); }

}  // namespace veltgeneral
