#include "argument_text.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <limits>
#include <nlohmann/json.hpp>

#include "base64.h"
#include "command.h"
#include "exact_number.h"
#include "file_io.h"
#include "iso_date.h"
#include "number_text.h"
#include "veltgeneral/component.h"

namespace veltgeneral::tool {

const char* const kArgumentHelp =
    "Arguments are texts, which the library turns into the kind it needs by the rules of the\n"
    "user's locale. These beginnings say another kind, the same in every locale:\n"
    "  int16:N int32:N single:N double:N        numbers: int16:5, double:2.5\n"
    "  currency:N decimal:N                     exact numbers: currency:19.99\n"
    "  date:YYYY-MM-DD, date:YYYY-MM-DDTHH:MM:SS, date:HH:MM:SS\n"
    "  boolean:true boolean:false\n"
    "  empty: missing: null:                    no value, left out, null\n"
    "  bytes:BASE64 bytes:@FILE                 bytes\n"
    "  json:VALUE json:@FILE                    an array of texts is a list whose first index is\n"
    "                                           1, an array of arrays a table by rows, [] an\n"
    "                                           unallocated array, an object a record or window\n"
    "  @FILE                                    a text: what the file (UTF-8) holds; @- reads\n"
    "                                           standard input\n"
    "  text:TEXT                                a text, whatever it begins with\n"
    "Behind -- an argument may begin with a dash.\n";

namespace {

using Json = nlohmann::ordered_json;

[[noreturn]] void refuse(std::string_view prefix, std::string_view value) {
  throw UsageError("not a value for " + std::string(prefix) + ": '" + std::string(value) + "'");
}

std::string contentOf(std::string_view value) {
  return value.starts_with('@') ? readWhole(std::string(value.substr(1))) : std::string(value);
}

template <class Value>
Variant needed(std::optional<Value> value, std::string_view prefix, std::string_view text) {
  if (!value) refuse(prefix, text);
  return *std::move(value);
}

template <class Number>
Variant numberArgument(std::string_view prefix, std::string_view text) {
  return needed(readNumber<Number>(text), prefix, text);
}

Variant booleanArgument(std::string_view prefix, std::string_view text) {
  if (text != "true" && text != "false") refuse(prefix, text);
  return text == "true";
}

template <class Nothing>
Variant nothingArgument(std::string_view prefix, std::string_view text) {
  if (!text.empty()) refuse(prefix, text);
  return Nothing{};
}

Text cellOf(const Json& value) {
  if (!value.is_string()) throw UsageError("json: arrays hold texts, or rows of texts");
  return fromUtf8(value.get_ref<const std::string&>());
}

// Short rows end with empty cells.
TextArray tableOf(const Json& rows) {
  std::size_t fields = 0;
  for (const Json& row : rows) {
    if (!row.is_array()) throw UsageError("json: a table has only rows");
    fields = std::max(fields, row.size());
  }
  TextArray out({1, static_cast<std::int32_t>(fields)},
                {1, static_cast<std::int32_t>(rows.size())});
  for (std::size_t row = 0; row < rows.size(); ++row) {
    for (std::size_t field = 0; field < rows[row].size(); ++field) {
      out.set(static_cast<std::int32_t>(field + 1), static_cast<std::int32_t>(row + 1),
              cellOf(rows[row][field]));
    }
  }
  return out;
}

TextArray arrayOf(const Json& array) {
  if (!array.empty() && array.front().is_array()) return tableOf(array);
  std::vector<Text> texts;
  std::ranges::transform(array, std::back_inserter(texts), cellOf);
  return TextArray::of(texts);
}

Variant valueOf(const Json& json);

ObjectRef recordOf(const Json& object) {
  ObjectRef record = makeRecord();
  for (const auto& [name, value] : object.items()) {
    Variant field = valueOf(value);
    record->call(fromUtf8(name), CallKind::propertyPut, {&field, 1});
  }
  return record;
}

Variant valueOf(const Json& json) {
  switch (json.type()) {
    case Json::value_t::boolean:
      return json.get<bool>();
    case Json::value_t::string:
      return fromUtf8(json.get_ref<const std::string&>());
    case Json::value_t::array:
      return arrayOf(json);
    case Json::value_t::object:
      return recordOf(json);
    case Json::value_t::number_integer:
    case Json::value_t::number_unsigned:
    case Json::value_t::number_float: {
      const double number = json.get<double>();
      using Limits = std::numeric_limits<std::int32_t>;
      const bool whole =
          !json.is_number_float() && number >= Limits::min() && number <= Limits::max();
      return whole ? Variant(json.get<std::int32_t>()) : Variant(number);
    }
    default:
      return Null{};
  }
}

Variant jsonArgument(std::string_view /*prefix*/, std::string_view text) {
  try {
    return valueOf(Json::parse(contentOf(text)));
  } catch (const Json::exception& error) {
    throw UsageError(std::string("json: ") + error.what());
  }
}

Variant bytesArgument(std::string_view prefix, std::string_view text) {
  if (!text.starts_with('@')) return needed(fromBase64(text), prefix, text);
  const std::string content = contentOf(text);
  return Bytes(content.begin(), content.end());
}

struct Prefix {
  std::string_view name;
  Variant (*parse)(std::string_view prefix, std::string_view value);
};

constexpr std::array kPrefixes{
    Prefix{"text:",
           [](std::string_view, std::string_view value) -> Variant { return fromUtf8(value); }},
    Prefix{"int16:", &numberArgument<std::int16_t>},
    Prefix{"int32:", &numberArgument<std::int32_t>},
    Prefix{"single:", &numberArgument<float>},
    Prefix{"double:", &numberArgument<double>},
    Prefix{"currency:",
           [](std::string_view prefix, std::string_view value) {
             return needed(readCurrency(value), prefix, value);
           }},
    Prefix{"decimal:",
           [](std::string_view prefix, std::string_view value) {
             return needed(readDecimal(value), prefix, value);
           }},
    Prefix{"date:", [](std::string_view prefix,
                       std::string_view value) { return needed(readIso(value), prefix, value); }},
    Prefix{"boolean:", &booleanArgument},
    Prefix{"empty:", &nothingArgument<Empty>},
    Prefix{"missing:", &nothingArgument<Missing>},
    Prefix{"null:", &nothingArgument<Null>},
    Prefix{"bytes:", &bytesArgument},
    Prefix{"json:", &jsonArgument},
};

}  // namespace

Variant parseArgument(std::string_view argument) {
  if (argument.starts_with('@')) return fromUtf8(contentOf(argument));
  const auto prefix = std::ranges::find_if(
      kPrefixes, [&](const Prefix& each) { return argument.starts_with(each.name); });
  if (prefix == kPrefixes.end()) return fromUtf8(argument);
  return prefix->parse(prefix->name, argument.substr(prefix->name.size()));
}

NamedText parseNamed(std::string_view argument) {
  const std::size_t sign = argument.find('=');
  if (sign == 0 || sign == std::string_view::npos) {
    throw UsageError("NAME=VALUE expected instead of '" + std::string(argument) + "'");
  }
  return {std::string(argument.substr(0, sign)), parseArgument(argument.substr(sign + 1))};
}

}  // namespace veltgeneral::tool
