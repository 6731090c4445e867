// How long texts can be.
#pragma once

#include <cstddef>
#include <cstdint>

namespace veltgeneral {

// The greatest length that any text of an application can have.
inline constexpr std::uint64_t kGreatestText = std::uint64_t{1} << 30;

// Members that count characters in 16 bits fail with an overflow beyond this.
inline constexpr std::size_t kGreatestCounted = 32767;

}  // namespace veltgeneral
