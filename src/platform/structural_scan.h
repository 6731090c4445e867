// Finding the few bytes that give a text its structure.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace veltgeneral::platform {

// Bytes written beyond the last position; see below.
inline constexpr std::size_t kScanSlack = 64;

// Writes the positions of the bytes that are `one`, `two` or `three`, in order, and returns their
// number. `positions` has room for `bytes.size()` + kScanSlack elements; what lies behind the
// answer is overwritten. At most 2^32 - 1 bytes.
std::size_t findBytes(std::span<const std::uint8_t> bytes, char one, char two, char three,
                      std::uint32_t* positions);

// The ways that this processor can go, the fastest first, the portable one last. All give the same
// answers.
std::span<decltype(&findBytes) const> byteFinders() noexcept;

}  // namespace veltgeneral::platform
