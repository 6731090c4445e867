#include "values.h"

#include <algorithm>
#include <cmath>

#include "base64.h"
#include "exact_number.h"
#include "iso_date.h"
#include "number_text.h"

namespace veltgeneral::tool {
namespace {

Json arrayJson(const TextArray& array) {
  Json out = Json::array();
  if (array.dimensions() == 0) return out;
  const Bounds fields = array.bounds(1);
  if (array.dimensions() == 1) {
    for (std::int64_t i = fields.lower; i <= fields.upper; ++i) {
      out.push_back(toUtf8(array.at(static_cast<std::int32_t>(i))));
    }
    return out;
  }
  const Bounds rows = array.bounds(2);
  for (std::int64_t row = rows.lower; row <= rows.upper; ++row) {
    Json& cells = out.emplace_back(Json::array());
    for (std::int64_t field = fields.lower; field <= fields.upper; ++field) {
      cells.push_back(
          toUtf8(array.at(static_cast<std::int32_t>(field), static_cast<std::int32_t>(row))));
    }
  }
  return out;
}

// JSON has no infinities and no non-numbers.
template <class Number>
Json realJson(Number value) {
  if (!std::isfinite(value)) return shortestText(value);
  return Json::parse(shortestText(value));  // a single keeps its own few digits
}

Json objectJson(const ObjectRef& object) {
  if (!object) return nullptr;
  if (Json fields = fieldsOf(object); !fields.is_null()) return fields;
  const Class* type = classOf(*object);
  return {{"class", type == nullptr ? std::string_view() : type->name}};
}

struct ToJson {
  Json operator()(Empty) const { return nullptr; }
  Json operator()(Missing) const { return nullptr; }
  Json operator()(Null) const { return nullptr; }
  Json operator()(std::int16_t value) const { return value; }
  Json operator()(std::int32_t value) const { return value; }
  Json operator()(float value) const { return realJson(value); }
  Json operator()(double value) const { return realJson(value); }
  Json operator()(Currency value) const { return plainText(value); }
  Json operator()(const Decimal& value) const { return plainText(value); }
  Json operator()(Date value) const { return isoText(value); }
  Json operator()(bool value) const { return value; }
  Json operator()(const Text& value) const { return toUtf8(value); }
  Json operator()(const Bytes& value) const { return toBase64(value); }
  Json operator()(const TextArray& value) const { return arrayJson(value); }
  Json operator()(const ObjectRef& value) const { return objectJson(value); }
};

// Characters, not bytes.
std::size_t widthOf(std::string_view utf8) {
  return static_cast<std::size_t>(
      std::ranges::count_if(utf8, [](char c) { return (c & 0xC0) != 0x80; }));
}

}  // namespace

Json toJson(const Variant& value) { return std::visit(ToJson(), value); }

Json fieldsOf(const Variant& value) {
  const ObjectRef* reference = std::get_if<ObjectRef>(&value);
  if (reference == nullptr || !*reference) return nullptr;
  Object& object = **reference;
  Json out = Json::object();
  const auto add = [&](const std::string& name) {
    out[name] = toJson(object.call(fromUtf8(name), CallKind::propertyGet, {}));
  };
  const Class* type = classOf(object);
  if (type == nullptr) {
    for (const Text& name : fieldNames(object)) add(toUtf8(name));
  } else if (type->name == "ErrInfo") {
    for (const Member& member : type->members) {
      if (member.kind == CallKind::propertyGet) add(std::string(member.name));
    }
  } else {
    return nullptr;
  }
  return out;
}

std::string toReadable(const Json& value) {
  if (value.is_string()) return value.get<std::string>();
  return value.is_null() ? std::string() : value.dump();
}

void printJson(std::ostream& out, const Json& value) { out << value.dump() << '\n'; }

void printColumns(std::ostream& out, const std::vector<std::vector<std::string>>& rows) {
  std::vector<std::size_t> widths;
  for (const auto& row : rows) {
    widths.resize(std::max(widths.size(), row.size()));
    for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], widthOf(row[i]));
  }
  for (const auto& row : rows) {
    for (std::size_t i = 0; i < row.size(); ++i) {
      out << row[i];
      if (i + 1 < row.size()) out << std::string(widths[i] - widthOf(row[i]) + 2, ' ');
    }
    out << '\n';
  }
}

}  // namespace veltgeneral::tool
