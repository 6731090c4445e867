#include "automation/text_array_builder.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "automation/text_array_cell.h"
#include "veltgeneral/runtime_error.h"

namespace veltgeneral {

void TextArrayBuilder::cut(std::span<Cell> row, const char16_t* text, std::size_t begin,
                           std::size_t end, std::span<const std::uint32_t> cuts) const noexcept {
  const Cell place = cellFor(text, 1) - 1 - (Cell{begin} << kLengthBits);
  const auto piece = [place](std::size_t from, std::size_t to) {
    return to == from ? 0 : place + (Cell{from} << kLengthBits) + (to - from);
  };
  if (cuts.empty()) {
    row[0] = piece(begin, end);
    return;
  }
  row[0] = piece(begin, cuts[0]);
  for (std::size_t i = 1; i < cuts.size(); ++i)
    row[i] = piece(cuts[i - 1] + std::size_t{1}, cuts[i]);
  row[cuts.size()] = piece(cuts.back() + std::size_t{1}, end);
}

void TextArrayBuilder::grow(std::size_t expected) {
  const std::size_t rows = std::max({expected, capacity_ + capacity_ / 2, std::size_t{16}});
  if (rows > std::numeric_limits<std::size_t>::max() / sizeof(Cell) / width_) {
    throw RuntimeError(RunTime::outOfMemory);
  }
  array_.resizeCells(rows * width_);
  capacity_ = rows;
}

TextArray TextArrayBuilder::takeList() { return take(1); }

TextArray TextArrayBuilder::takeTable() { return take(2); }

TextArray TextArrayBuilder::take(int dimensions) {
  if (rows_ == 0) throw RuntimeError(RunTime::subscriptOutOfRange);
  if (rows_ > static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max())) {
    throw RuntimeError(RunTime::outOfMemory);
  }
  const Bounds rows{1, static_cast<std::int32_t>(rows_)};
  array_.size_ = rows_ * width_;
  array_.dimensions_ = dimensions;
  array_.bounds_[dimensions - 1] = rows;
  if (dimensions == 2) array_.bounds_[0] = {1, static_cast<std::int32_t>(width_)};
  rows_ = 0;
  capacity_ = 0;
  return std::exchange(array_, TextArray());
}

}  // namespace veltgeneral
