// Registry values on the command line: types by name, data as text and JSON.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/registry.h"
#include "values.h"

namespace veltgeneral::tool {

// "text", "dword"; "type 17" for a number without a name.
std::string typeName(platform::RegistryType type);
// The names that --type takes, "|" between.
std::string typeNames();

// The value that `data` says: one text, a number in decimal or "0x" hexadecimal, hexadecimal bytes;
// texts take any count. Throws UsageError.
platform::RegistryValue parseValue(std::string_view type, const std::vector<std::string>& data);

// A text, a number, an array of texts, or hexadecimal bytes as a text.
Json dataJson(const platform::RegistryValue& value);
// The same to read: a text of the list on each line.
std::string dataText(const platform::RegistryValue& value);

}  // namespace veltgeneral::tool
