// Base64 (RFC 4648, section 4): bytes in texts.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "veltgeneral/variant.h"

namespace veltgeneral::tool {

std::string toBase64(std::span<const std::uint8_t> bytes);
// Nothing for a text that is not base64; the "=" at its end may be missing.
std::optional<Bytes> fromBase64(std::string_view text);

}  // namespace veltgeneral::tool
