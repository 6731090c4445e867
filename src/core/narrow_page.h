// The code page in force, as the platform's settings files take it.
#pragma once

#include "platform/narrow_page.h"
#include "veltgeneral/export.h"
#include "veltgeneral/text.h"

namespace veltgeneral {

// Lives for good.
VELTGENERAL_API const platform::NarrowPage& narrowPage();

// Only characters that every code page has: such a text passes through as it is.
constexpr bool isAscii(TextView text) noexcept {
  char16_t all = 0;
  for (const char16_t c : text) all = static_cast<char16_t>(all | c);
  return all < 0x80;
}

// What is left of a text that passes through the code page: "?" for what that does not have.
VELTGENERAL_API Text narrowed(Text text);

}  // namespace veltgeneral
