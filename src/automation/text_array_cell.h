// How a TextArray's cell says where its text lies.
//
// 64 bits: 12 bits of slab number, 28 bits of offset in it, 24 bits of length, all in UTF-16 units.
// A text of 2^24 - 1 units and more has a slab to itself: its 40 upper bits are that slab's number
// and its length is the slab's. The empty text is cell 0, which needs no slab.
#pragma once

#include <cstddef>
#include <cstdint>

namespace veltgeneral {

inline constexpr unsigned kLengthBits = 24;
inline constexpr unsigned kOffsetBits = 28;
inline constexpr std::uint64_t kOwnSlab = (1u << kLengthBits) - 1;
inline constexpr std::size_t kSlabLimit = std::size_t{1} << kOffsetBits;
inline constexpr std::size_t kSharedSlabs = std::size_t{1} << (64 - kLengthBits - kOffsetBits);

}  // namespace veltgeneral
