// Values of any kind as JSON and as text to read.
//
// Texts are strings, integers, singles and doubles numbers, booleans booleans; currency and
// decimals are exact decimal strings, dates ISO 8601 strings, bytes base64 strings; empty, missing
// and null are null. A list is an array, a table an array of its rows, an unallocated array an
// empty one. A record is an object of its fields; so is an ErrInfo; any other object says its class
// alone.
#pragma once

#include <nlohmann/json.hpp>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "veltgeneral/component.h"

namespace veltgeneral::tool {

using Json = nlohmann::ordered_json;

Json toJson(const Variant& value);

// `{"name": value, ...}` of an ErrInfo or a record; null for any other value.
Json fieldsOf(const Variant& value);

// A text as it is; everything else as its JSON, strings without quotes.
std::string toReadable(const Json& value);

void printJson(std::ostream& out, const Json& value);

// Columns lined up, two blanks between; the last one ends where it ends.
void printColumns(std::ostream& out, const std::vector<std::vector<std::string>>& rows);

}  // namespace veltgeneral::tool
