#include "veltgeneral/text_array.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <utility>

#include "automation/text_array_cell.h"
#include "platform/memory.h"
#include "veltgeneral/runtime_error.h"

namespace veltgeneral {
namespace {

constexpr std::size_t kFirstSlab = 256;
constexpr std::size_t kWorthCompacting = 1u << 16;

[[noreturn]] void fail(RunTime error) { throw RuntimeError(error); }

std::size_t extent(Bounds bounds) {
  if (bounds.upper < bounds.lower) fail(RunTime::subscriptOutOfRange);
  return static_cast<std::size_t>(std::int64_t{bounds.upper} - bounds.lower + 1);
}

}  // namespace

void TextArray::Free::operator()(void* memory) const noexcept { std::free(memory); }

TextArray::TextArray() noexcept = default;
TextArray::~TextArray() = default;

TextArray::TextArray(Bounds list) : bounds_{list, {}}, dimensions_(1) {
  allocateCells(extent(list));
}

TextArray::TextArray(Bounds fields, Bounds rows) : bounds_{fields, rows}, dimensions_(2) {
  const std::size_t width = extent(fields);
  const std::size_t height = extent(rows);
  if (height > std::numeric_limits<std::size_t>::max() / sizeof(Cell) / width) {
    fail(RunTime::outOfMemory);
  }
  allocateCells(width * height);
}

TextArray TextArray::of(std::initializer_list<TextView> texts) {
  if (texts.size() == 0) return {};
  TextArray array(Bounds{1, static_cast<std::int32_t>(texts.size())});
  std::int32_t i = 0;
  for (const TextView text : texts) array.set(++i, text);
  return array;
}

TextArray TextArray::of(std::span<const Text> texts) {
  if (texts.empty()) return {};
  TextArray array(Bounds{1, static_cast<std::int32_t>(texts.size())});
  std::int32_t i = 0;
  for (const Text& text : texts) array.set(++i, text);
  return array;
}

TextArray::TextArray(const TextArray& other) : dimensions_(other.dimensions_) {
  std::ranges::copy(other.bounds_, bounds_);
  if (dimensions_ == 0) return;
  allocateCells(other.size_);
  for (std::size_t i = 0; i < size_; ++i) cells_[i] = append(other.view(other.cells_[i]));
}

TextArray::TextArray(TextArray&& other) noexcept
    : cells_(std::move(other.cells_)),
      size_(std::exchange(other.size_, 0)),
      slabs_(std::move(other.slabs_)),
      garbage_(std::exchange(other.garbage_, 0)),
      bounds_{other.bounds_[0], other.bounds_[1]},
      dimensions_(std::exchange(other.dimensions_, 0)) {
  other.slabs_.clear();
}

TextArray& TextArray::operator=(const TextArray& other) {
  if (this != &other) *this = TextArray(other);
  return *this;
}

TextArray& TextArray::operator=(TextArray&& other) noexcept {
  if (this == &other) return *this;
  cells_ = std::move(other.cells_);
  size_ = std::exchange(other.size_, 0);
  slabs_ = std::exchange(other.slabs_, {});
  garbage_ = std::exchange(other.garbage_, 0);
  std::ranges::copy(other.bounds_, bounds_);
  dimensions_ = std::exchange(other.dimensions_, 0);
  return *this;
}

Bounds TextArray::bounds(int dimension) const {
  if (dimension < 1 || dimension > dimensions_) fail(RunTime::subscriptOutOfRange);
  return bounds_[dimension - 1];
}

std::size_t TextArray::characters() const noexcept {
  std::size_t used = 0;
  for (const Slab& slab : slabs_) used += slab.used;
  return used - garbage_;
}

TextView TextArray::at(std::int32_t index) const { return view(cells_[this->index(index)]); }

TextView TextArray::at(std::int32_t field, std::int32_t row) const {
  return view(cells_[index(field, row)]);
}

void TextArray::set(std::int32_t index, TextView text) { store(this->index(index), text); }

void TextArray::set(std::int32_t field, std::int32_t row, TextView text) {
  store(index(field, row), text);
}

void TextArray::swap(std::int32_t one, std::int32_t other) {
  std::swap(cells_[index(one)], cells_[index(other)]);
}

void TextArray::resizePreserved(Bounds list) {
  if (dimensions_ > 1) fail(RunTime::subscriptOutOfRange);
  TextArray grown(list);
  if (dimensions_ == 1) {
    const std::int32_t from = std::max(list.lower, bounds_[0].lower);
    const std::int32_t to = std::min(list.upper, bounds_[0].upper);
    for (std::int64_t i = from; i <= to; ++i) {
      const auto at = static_cast<std::int32_t>(i);
      grown.cells_[grown.index(at)] = std::exchange(cells_[index(at)], 0);
    }
    for (const Cell left : std::span(cells_.get(), size_)) garbage_ += view(left).size();
  }
  cells_ = std::move(grown.cells_);
  size_ = grown.size_;
  bounds_[0] = list;
  dimensions_ = 1;
}

void TextArray::clear() noexcept { *this = TextArray(); }

bool operator==(const TextArray& one, const TextArray& other) {
  if (one.dimensions_ != other.dimensions_) return false;
  if (!std::equal(one.bounds_, one.bounds_ + one.dimensions_, other.bounds_)) return false;
  return std::equal(
      one.cells_.get(), one.cells_.get() + one.size_, other.cells_.get(),
      [&](TextArray::Cell a, TextArray::Cell b) { return one.view(a) == other.view(b); });
}

std::size_t TextArray::index(std::int32_t field) const {
  const std::int64_t offset = std::int64_t{field} - bounds_[0].lower;
  if (dimensions_ != 1 || offset < 0 || field > bounds_[0].upper) {
    fail(RunTime::subscriptOutOfRange);
  }
  return static_cast<std::size_t>(offset);
}

std::size_t TextArray::index(std::int32_t field, std::int32_t row) const {
  const auto [fields, rows] = bounds_;
  if (dimensions_ != 2 || field < fields.lower || field > fields.upper || row < rows.lower ||
      row > rows.upper) {
    fail(RunTime::subscriptOutOfRange);
  }
  const std::int64_t width = std::int64_t{fields.upper} - fields.lower + 1;
  return static_cast<std::size_t>((std::int64_t{row} - rows.lower) * width + field - fields.lower);
}

void TextArray::allocateCells(std::size_t count) {
  // Zeroed by the system where it is large, so that only cells that get a text are ever touched.
  cells_.reset(static_cast<Cell*>(std::calloc(count, sizeof(Cell))));
  if (!cells_) fail(RunTime::outOfMemory);
  platform::preferHugePages(cells_.get(), count * sizeof(Cell));
  size_ = count;
}

// As a loader needs them: the new ones are unset, and pages that it never fills are never touched.
void TextArray::resizeCells(std::size_t count) {
  void* const cells = std::realloc(cells_.get(), count * sizeof(Cell));
  if (cells == nullptr) fail(RunTime::outOfMemory);
  (void)cells_.release();
  cells_.reset(static_cast<Cell*>(cells));
  platform::preferHugePages(cells, count * sizeof(Cell));
}

void TextArray::store(std::size_t cell, TextView text) {
  const TextView before = view(cells_[cell]);
  if (text.size() <= before.size() && before.size() < kOwnSlab) {
    // It fits where the old text lies. The source may be a piece of it, hence memmove.
    auto* place = const_cast<char16_t*>(before.data());
    if (!text.empty()) std::memmove(place, text.data(), text.size() * sizeof(char16_t));
    garbage_ += before.size() - text.size();
    cells_[cell] = text.empty() ? 0 : (cells_[cell] & ~kOwnSlab) | text.size();
    return;
  }
  const std::size_t freed = before.size();
  cells_[cell] = append(text);
  garbage_ += freed;
  compactWhereWorth();
}

TextArray::Cell TextArray::append(TextView text) {
  if (text.empty()) return 0;
  char16_t* place = claim(text.size());
  std::memcpy(place, text.data(), text.size() * sizeof(char16_t));
  return cellFor(place, text.size());
}

void TextArray::reserveSlab(std::size_t units) {
  Slab slab;
  slab.text.reset(static_cast<char16_t*>(std::malloc(units * sizeof(char16_t))));
  if (!slab.text) fail(RunTime::outOfMemory);
  slab.capacity = units;
  platform::preferHugePages(slab.text.get(), units * sizeof(char16_t));
  slabs_.push_back(std::move(slab));
}

char16_t* TextArray::claim(std::size_t units) {
  const bool own = units >= kOwnSlab;
  if (own) {
    reserveSlab(units);
  } else if (slabs_.empty() || slabs_.back().capacity - slabs_.back().used < units) {
    if (slabs_.size() >= kSharedSlabs) fail(RunTime::outOfMemory);
    const std::size_t last = slabs_.empty() ? kFirstSlab / 2 : slabs_.back().capacity;
    reserveSlab(std::max(units, std::min(last * 2, kSlabLimit)));
  }
  Slab& slab = slabs_.back();
  char16_t* place = slab.text.get() + slab.used;
  slab.used += units;
  return place;
}

void TextArray::compactWhereWorth() {
  if (garbage_ >= kWorthCompacting && garbage_ > characters()) *this = TextArray(*this);
}

}  // namespace veltgeneral
