// TextArrayCells: how loaders and sorts work inside a TextArray, cell by cell in storage order.
//
// Nothing is checked here; the caller has the bounds. A loader claims room, writes characters there
// once, and points cells at them. Two cells never show the same characters.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "veltgeneral/text_array.h"

namespace veltgeneral {

class TextArrayCells {
 public:
  using Cell = TextArray::Cell;  // 0 is the empty text

  explicit TextArrayCells(TextArray& array) noexcept : array_(&array) {}

  std::span<Cell> all() const noexcept { return {array_->cells_.get(), array_->size_}; }
  TextView view(Cell cell) const noexcept { return array_->view(cell); }
  // The position in `all()` of an index of a list. Throws RuntimeError 9.
  std::size_t position(std::int32_t index) const { return array_->index(index); }

  // Room for `units` characters in one piece, at the end of the newest slab or in a new one; what
  // is written there lives as long as the array. Claims that follow each other without a new slab
  // follow each other in memory.
  char16_t* claim(std::size_t units) const { return array_->claim(units); }
  // A cell that shows characters of the piece that was claimed last.
  Cell cellFor(const char16_t* text, std::size_t units) const noexcept {
    return array_->cellFor(text, units);
  }

 private:
  TextArray* array_;
};

}  // namespace veltgeneral
