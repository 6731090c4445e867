// TextArray: an array of texts with explicit bounds in one or two dimensions.
//
// A two-dimensional array is a table addressed as (field, row) and stored field first, so the cells
// of a row lie together. Characters live in slabs that the array owns; a cell is 8 bytes that say
// where. So loading a table writes each character once, moving or exchanging cells moves no
// character, and reading a cell copies nothing.
//
// An unallocated array has no bounds and no cells: every access to it is run-time error 9, as is an
// index outside the bounds.
#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <span>
#include <vector>

#include "veltgeneral/export.h"
#include "veltgeneral/text.h"

namespace veltgeneral {

// Both ends belong to the dimension; `upper` = `lower` - 1 is not a valid extent.
struct Bounds {
  std::int32_t lower = 1;
  std::int32_t upper = 1;
  friend bool operator==(const Bounds&, const Bounds&) = default;
};

class VELTGENERAL_API TextArray {
 public:
  TextArray() noexcept;
  // Cells start empty. Throws RuntimeError 9 when a dimension has no element, 7 when memory ends.
  explicit TextArray(Bounds list);
  TextArray(Bounds fields, Bounds rows);
  // A list with index 1 for the first of `texts`; unallocated when there is none.
  static TextArray of(std::span<const Text> texts);
  static TextArray of(std::initializer_list<TextView> texts);

  TextArray(const TextArray& other);
  TextArray(TextArray&& other) noexcept;
  TextArray& operator=(const TextArray& other);
  TextArray& operator=(TextArray&& other) noexcept;
  ~TextArray();

  // 0 when unallocated, else 1 or 2.
  int dimensions() const noexcept { return dimensions_; }
  // The bounds of dimension 1 or 2. Throws RuntimeError 9 for a dimension that is not there.
  Bounds bounds(int dimension = 1) const;
  // All cells, over both dimensions.
  std::size_t size() const noexcept { return size_; }
  // At least the characters of all cells together.
  std::size_t characters() const noexcept;

  // The text of a cell; valid until the array next changes. Throws RuntimeError 9 for an index
  // outside the bounds or the wrong number of indices.
  TextView at(std::int32_t index) const;
  TextView at(std::int32_t field, std::int32_t row) const;
  // Stores a copy of `text`, which may be a view into this array. Views taken before end.
  void set(std::int32_t index, TextView text);
  void set(std::int32_t field, std::int32_t row, TextView text);
  // Exchanges two cells of a list; no character moves.
  void swap(std::int32_t one, std::int32_t other);

  // Gives a list new bounds; the elements that both have keep their texts. An unallocated array
  // becomes a list of empty texts. Throws RuntimeError 9 on a table or on bounds without element.
  void resizePreserved(Bounds list);
  // Back to the unallocated state.
  void clear() noexcept;

  // Equal dimensions, bounds and texts.
  friend VELTGENERAL_API bool operator==(const TextArray& one, const TextArray& other);

 private:
  friend class TextArrayBuilder;  // loaders: automation/text_array_builder.h
  friend class TextArrayCells;    // sorts: automation/text_array_cells.h
  friend class TextArrayFiller;   // records: automation/text_array_filler.h

  // Slab and offset in 40 bits, length in 24: see text_array_cell.h.
  using Cell = std::uint64_t;
  struct Free {
    void operator()(void* memory) const noexcept;
  };
  struct Slab {
    std::unique_ptr<char16_t[], Free> text;
    std::size_t capacity = 0;
    std::size_t used = 0;
  };

  TextView view(Cell cell) const noexcept;
  std::size_t index(std::int32_t field) const;
  std::size_t index(std::int32_t field, std::int32_t row) const;
  void allocateCells(std::size_t count);
  void resizeCells(std::size_t count);
  void store(std::size_t cell, TextView text);
  Cell append(TextView text);
  void reserveSlab(std::size_t units);
  char16_t* claim(std::size_t units);
  Cell cellFor(const char16_t* text, std::size_t units) const noexcept;
  void compactWhereWorth();

  std::unique_ptr<Cell[], Free> cells_;
  std::size_t size_ = 0;
  std::vector<Slab> slabs_;
  std::size_t garbage_ = 0;  // units in slabs that no cell shows any more
  Bounds bounds_[2];
  int dimensions_ = 0;
};

}  // namespace veltgeneral
