// How a TextArray's cell says where its text lies.
//
// 64 bits: 12 bits of slab number, 28 bits of offset in it, 24 bits of length, all in UTF-16 units.
// A text of 2^24 - 1 units and more has a slab to itself: its 40 upper bits are that slab's number
// and its length is the slab's. The empty text is cell 0, which needs no slab.
#pragma once

#include <cstddef>
#include <cstdint>

#include "veltgeneral/text_array.h"

namespace veltgeneral {

inline constexpr unsigned kLengthBits = 24;
inline constexpr unsigned kOffsetBits = 28;
inline constexpr std::uint64_t kOwnSlab = (1u << kLengthBits) - 1;
inline constexpr std::size_t kSlabLimit = std::size_t{1} << kOffsetBits;
inline constexpr std::size_t kSharedSlabs = std::size_t{1} << (64 - kLengthBits - kOffsetBits);

inline TextView TextArray::view(Cell cell) const noexcept {
  const auto length = static_cast<std::size_t>(cell & kOwnSlab);
  if (length == 0) return {};
  const std::uint64_t place = cell >> kLengthBits;
  if (length == kOwnSlab) {
    const Slab& slab = slabs_[static_cast<std::size_t>(place)];
    return {slab.text.get(), slab.used};
  }
  const Slab& slab = slabs_[static_cast<std::size_t>(place >> kOffsetBits)];
  return {slab.text.get() + (place & (kSlabLimit - 1)), length};
}

inline TextArray::Cell TextArray::cellFor(const char16_t* text, std::size_t units) const noexcept {
  if (units == 0) return 0;
  const Cell slab = slabs_.size() - 1;
  if (units >= kOwnSlab) return (slab << kLengthBits) | kOwnSlab;
  const auto offset = static_cast<Cell>(text - slabs_.back().text.get());
  return (((slab << kOffsetBits) | offset) << kLengthBits) | units;
}

}  // namespace veltgeneral
