#include "automation/text_array_builder.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "veltgeneral/runtime_error.h"

namespace veltgeneral {

void TextArrayBuilder::grow(std::size_t expected) {
  const std::size_t rows = std::max({expected, capacity_ + capacity_ / 2, std::size_t{16}});
  if (rows > std::numeric_limits<std::size_t>::max() / sizeof(Cell) / width_) {
    throw RuntimeError(RunTime::outOfMemory);
  }
  auto before = std::move(array_.cells_);
  array_.allocateCells(rows * width_);
  if (before) std::copy_n(before.get(), rows_ * width_, array_.cells_.get());
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
