// Variant: one value of any automation kind.
#pragma once

#include <cstdint>
#include <memory>
#include <variant>

#include "veltgeneral/bytes.h"
#include "veltgeneral/export.h"
#include "veltgeneral/text.h"
#include "veltgeneral/text_array.h"

namespace veltgeneral {

class Object;  // object.h

// Not yet given a value.
struct Empty {
  friend bool operator==(Empty, Empty) = default;
};
// An optional argument that the caller left out.
struct Missing {
  friend bool operator==(Missing, Missing) = default;
};
// Known to have no value.
struct Null {
  friend bool operator==(Null, Null) = default;
};

// Days since 30 December 1899; the fraction is the time of day, counted forward also in a
// negative date (-1.5 is noon of 29 December 1899).
struct Date {
  double days = 0;
  friend bool operator==(const Date&, const Date&) = default;
};

// An exact amount in ten-thousandths.
struct Currency {
  std::int64_t scaled = 0;
  friend bool operator==(const Currency&, const Currency&) = default;
};

// sign × (high·2^64 + mid·2^32 + low) / 10^scale, scale 0 to 28.
struct Decimal {
  std::uint32_t low = 0;
  std::uint32_t mid = 0;
  std::uint32_t high = 0;
  std::uint8_t scale = 0;
  bool negative = false;
  friend bool operator==(const Decimal&, const Decimal&) = default;
};

using ObjectRef = std::shared_ptr<Object>;

// The order of the kinds is that of `Kind` and of the tags in veltgeneral_c.h.
using Variant = std::variant<Empty, Missing, Null, std::int16_t, std::int32_t, float, double,
                             Currency, Decimal, Date, bool, Text, Bytes, TextArray, ObjectRef>;

enum class Kind : std::uint8_t {
  empty,
  missing,
  null,
  int16,
  int32,
  single,
  real,
  currency,
  decimal,
  date,
  boolean,
  text,
  bytes,
  textArray,
  object,
};

inline Kind kindOf(const Variant& value) noexcept { return static_cast<Kind>(value.index()); }

// The value as automation writes it: numbers and dates as the user's locale has them, a boolean as
// "True" or "False", an empty value as the empty text. Throws RuntimeError 94 for null, 13 for
// missing, bytes, an array or an object.
VELTGENERAL_API Text toText(const Variant& value);

}  // namespace veltgeneral
