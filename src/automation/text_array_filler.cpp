#include "automation/text_array_filler.h"

#include <utility>

#include "automation/text_array_cell.h"

namespace veltgeneral {

std::span<char16_t> TextArrayFiller::claim(std::size_t units) {
  settle();
  list_.compactWhereWorth();
  char16_t* const room = list_.claim(units);
  unshown_ = units;
  return {room, units};
}

void TextArrayFiller::show(std::int32_t index, TextView piece) {
  TextArray::Cell& cell = list_.cells_[list_.index(index)];
  list_.garbage_ += list_.view(cell).size();
  cell = list_.cellFor(piece.data(), piece.size());
  unshown_ -= piece.size();
}

void TextArrayFiller::settle() noexcept { list_.garbage_ += std::exchange(unshown_, 0); }

}  // namespace veltgeneral
