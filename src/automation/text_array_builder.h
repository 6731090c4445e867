// TextArrayBuilder: loads a TextArray row by row when the number of rows is not known beforehand.
//
// A loader claims room, writes characters there once, and points cells at them. Two cells never
// show the same characters.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>

#include "automation/text_array_cell.h"
#include "veltgeneral/text_array.h"

namespace veltgeneral {

class TextArrayBuilder {
 public:
  using Cell = TextArray::Cell;  // 0 is the empty text

  // Longer texts need a piece claimed for them alone.
  static constexpr std::size_t kGreatestShared = std::size_t{1} << 20;

  explicit TextArrayBuilder(std::size_t cellsPerRow) noexcept : width_(cellsPerRow) {}

  // The cells of one more row, empty; valid until the next row. `expected()`, asked now and then,
  // says how many rows there are likely to be in all: where it holds, few cells are ever copied.
  template <class Expected>
  std::span<Cell> addRow(Expected&& expected) {
    if (rows_ == capacity_) grow(expected());
    const std::span row(array_.cells_.get() + width_ * rows_++, width_);
    std::ranges::fill(row, Cell{0});
    return row;
  }
  std::size_t rows() const noexcept { return rows_; }

  // Prepares room for `units` characters in all.
  void reserve(std::size_t units) { array_.reserveSlab(units); }
  // Room for `units` characters in one piece, which lives as long as the array.
  char16_t* claim(std::size_t units) { return array_.claim(units); }
  // A cell that shows characters of the piece claimed last.
  Cell cellFor(const char16_t* text, std::size_t units) const noexcept {
    return array_.cellFor(text, units);
  }

  // Points the cells of `row` at the pieces of a text, which lies in the piece claimed last,
  // between `cuts`: single characters in it, ascending. `begin`, `end` and the cuts count from one
  // place, and `text` is at `begin`. `row` has at least one cell more than there are cuts.
  void cut(std::span<Cell> row, const char16_t* text, std::size_t begin, std::size_t end,
           std::span<const std::uint32_t> cuts) const noexcept;

  // The list (1..rows) or the table (1..cells a row, 1..rows). The builder is empty afterwards.
  // Throws RuntimeError 9 when there is no row.
  TextArray takeList();
  TextArray takeTable();

 private:
  void grow(std::size_t expected);
  TextArray take(int dimensions);

  TextArray array_;
  std::size_t width_;
  std::size_t rows_ = 0;
  std::size_t capacity_ = 0;
};

}  // namespace veltgeneral
