// The single-byte code page in force, as settings files need it: most of them are written in it.
#pragma once

#include <array>
#include <cstdint>

namespace veltgeneral::platform {

struct NarrowPage {
  std::array<char16_t, 256> characters;  // one for every byte
  std::uint8_t (*byte)(char16_t);        // "?" for a character outside the page
};

}  // namespace veltgeneral::platform
