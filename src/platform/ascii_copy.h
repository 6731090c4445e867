// Text between bytes and UTF-16 units as long as it is ASCII, many characters at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "veltgeneral/text.h"

namespace veltgeneral::platform {

// Characters that are copied or left together.
inline constexpr std::size_t kAsciiBlock = 32;

// Both copy whole blocks up to the first that has a character above 127, and return how many
// characters that is. `out` has room for all of them.
std::size_t widenAscii(std::span<const std::uint8_t> bytes, char16_t* out) noexcept;
std::size_t narrowAscii(TextView text, std::uint8_t* out) noexcept;

// One way to do both. All give the same answers.
struct AsciiCopies {
  std::size_t (*widen)(std::span<const std::uint8_t> bytes, char16_t* out) noexcept;
  std::size_t (*narrow)(TextView text, std::uint8_t* out) noexcept;
};
// Those that this processor can go, the fastest first, the portable one last.
std::span<const AsciiCopies> asciiCopies() noexcept;

}  // namespace veltgeneral::platform
