#include "files/sort_keys.h"

#include <algorithm>

#include "automation/case_fold.h"

namespace veltgeneral {
namespace {

// The first units of `key` from `from` on as one number, each `bits` wide; zeros behind its end.
std::uint64_t packUnits(TextView key, std::size_t from, unsigned bits) {
  const std::size_t count = 64 / bits;
  std::uint64_t packed = 0;
  for (std::size_t i = from; i < from + count; ++i) {
    packed = (packed << bits) | (i < key.size() ? key[i] : 0U);
  }
  return packed;
}

}  // namespace

SortKeys::SortKeys(const TextArrayCells& array, std::span<const TextArrayCells::Cell> cells,
                   KeySlice slice) {
  begins_.reserve(cells.size() + 1);
  begins_.push_back(0);
  for (const TextArrayCells::Cell cell : cells) {
    const TextView text = array.view(cell);
    const TextView key = text.substr(std::min(slice.first, text.size()), slice.length);
    if (slice.fold) {
      std::ranges::transform(key, std::back_inserter(units_), toUpper);
    } else {
      units_.insert(units_.end(), key.begin(), key.end());
    }
    begins_.push_back(units_.size());
  }
  pack();
}

void SortKeys::pack() {
  const bool narrow = std::ranges::all_of(units_, [](char16_t unit) { return unit < 0x100; });
  const unsigned bits = narrow ? 8 : 16;
  const std::size_t count = begins_.size() - 1;
  packed_.reserve(count);
  for (std::size_t i = 0; i < count; ++i) {
    const auto id = static_cast<std::uint32_t>(i);
    packed_.push_back({packUnits(key(id), 0, bits), packUnits(key(id), 64 / bits, bits), id});
  }
}

int SortKeys::compareWhole(std::uint32_t one, std::uint32_t other) const noexcept {
  // Packing ends keys with zeros, which are characters too: only the texts themselves tell.
  return key(one).compare(key(other));
}

}  // namespace veltgeneral
