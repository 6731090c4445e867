// TextArrayCells: how a sort works inside a TextArray, cell by cell in storage order. Cells may be
// exchanged, never copied: two cells never show the same characters.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "automation/text_array_cell.h"
#include "veltgeneral/text_array.h"

namespace veltgeneral {

class TextArrayCells {
 public:
  using Cell = TextArray::Cell;  // 0 is the empty text

  explicit TextArrayCells(TextArray& array) noexcept : array_(&array) {}

  std::span<Cell> all() const noexcept { return {array_->cells_.get(), array_->size_}; }
  TextView view(Cell cell) const noexcept { return array_->view(cell); }
  // The position in `all()` of an index of a list, or of a table. Throws RuntimeError 9.
  std::size_t position(std::int32_t index) const { return array_->index(index); }
  std::size_t position(std::int32_t field, std::int32_t row) const {
    return array_->index(field, row);
  }

 private:
  TextArray* array_;
};

}  // namespace veltgeneral
