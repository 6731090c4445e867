// Characters that are digits in fields of two, looked at together.
#pragma once

#include <array>
#include <cstdint>

namespace veltgeneral::platform {

// The least value of each of four fields, and how many values follow it.
struct FieldRanges {
  alignas(16) std::array<std::uint16_t, 8> least;  // a field and 0 in turn
  alignas(16) std::array<std::uint16_t, 8> span;   // likewise
};

constexpr FieldRanges fieldRanges(std::array<std::uint16_t, 4> least,
                                  std::array<std::uint16_t, 4> most) {
  FieldRanges ranges{};
  for (std::size_t i = 0; i < least.size(); ++i) {
    ranges.least[2 * i] = least[i];
    ranges.span[2 * i] = static_cast<std::uint16_t>(most[i] - least[i]);
  }
  return ranges;
}

// Whether eight characters are digits, and the four fields of two within their ranges.
bool fieldsWithin(const char16_t* eight, const FieldRanges& ranges) noexcept;
// The same of both eights.
bool fieldsWithin(const char16_t* one, const FieldRanges& oneRanges, const char16_t* two,
                  const FieldRanges& twoRanges) noexcept;
// Of two fours that make an eight.
bool fieldsWithin(const char16_t* four, const char16_t* nextFour,
                  const FieldRanges& ranges) noexcept;

// Of the fields of "YYYY-MM-DDThh:mm:ss", the year being two; what stands between them is not
// looked at. The day belongs to both fours. Writes the 14 characters of the fields to `gathered`,
// whatever they are.
bool gatherFields(const char16_t* text, const FieldRanges& dayRanges,
                  const FieldRanges& dayAndTimeRanges, char16_t* gathered) noexcept;

// The same, one character after the other: the way of processors without vector instructions.
namespace portably {

bool fieldsWithin(const char16_t* eight, const FieldRanges& ranges) noexcept;
bool fieldsWithin(const char16_t* one, const FieldRanges& oneRanges, const char16_t* two,
                  const FieldRanges& twoRanges) noexcept;
bool fieldsWithin(const char16_t* four, const char16_t* nextFour,
                  const FieldRanges& ranges) noexcept;
bool gatherFields(const char16_t* text, const FieldRanges& dayRanges,
                  const FieldRanges& dayAndTimeRanges, char16_t* gathered) noexcept;

}  // namespace portably

}  // namespace veltgeneral::platform
