// Looking at many UTF-16 units at a time: where some of them stand, and adding to all of them.
#pragma once

#include <array>
#include <bitset>
#include <cstddef>
#include <cstdint>
#include <span>

#include "veltgeneral/text.h"

namespace veltgeneral::platform {

// A set of units below 256, as two tables that are looked up by half a byte each: a unit belongs to
// it where its halves have a bit in common. Where more than eight different rows of sixteen are
// wanted the set is larger than asked for.
class UnitSet {
 public:
  explicit UnitSet(const std::bitset<256>& members) noexcept;

  bool has(std::uint8_t unit) const noexcept { return (low_[unit & 15] & high_[unit >> 4]) != 0; }
  const std::array<std::uint8_t, 16>& low() const noexcept { return low_; }
  const std::array<std::uint8_t, 16>& high() const noexcept { return high_; }

 private:
  std::array<std::uint8_t, 16> low_{};
  std::array<std::uint8_t, 16> high_{};
};

// Units that one call looks at.
inline constexpr std::size_t kScanUnits = 1024;
// Elements written beyond the last position; see below.
inline constexpr std::size_t kUnitScanSlack = 8;

using UnitPositions = std::array<std::uint16_t, kScanUnits + kUnitScanSlack>;

// The positions of the members of `set` in `text`, at most kScanUnits units, in order; returns
// their number. A unit above 255 counts as 255, one above 32767 as 0. What lies behind the answer
// is overwritten.
std::size_t findUnits(TextView text, const UnitSet& set, UnitPositions& positions) noexcept;

// Writes the units of `text`, at most kScanUnits, each plus `by`, to `out`, a place for as many
// that does not overlap them. Returns, as findUnits does, the number of those below `first` or
// above `last`, with their positions in `others`.
std::size_t shiftUnits(TextView text, char16_t* out, char16_t by, char16_t first, char16_t last,
                       UnitPositions& others) noexcept;

// One way to do both; all find the same positions.
struct UnitScans {
  decltype(&findUnits) find;
  decltype(&shiftUnits) shift;
};
// Those that this processor can go, the fastest first, the portable one last.
std::span<const UnitScans> unitScans() noexcept;

}  // namespace veltgeneral::platform
