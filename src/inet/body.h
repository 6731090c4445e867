// The body of an answer as text.
#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/internet.h"
#include "veltgeneral/text.h"

namespace veltgeneral {

// The greatest length of a text, in characters.
inline constexpr std::size_t kGreatestText = std::size_t{1} << 30;

// Replaces `out` by what is left of the body, as far as it can be read and memory lasts, `limit`
// characters at most.
void readBody(platform::Internet& internet, std::int32_t urlHandle, Text& out,
              std::size_t limit = kGreatestText);

}  // namespace veltgeneral
