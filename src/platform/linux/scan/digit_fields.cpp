#include "platform/digit_fields.h"

#include <algorithm>
#include <cstring>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace veltgeneral::platform {
namespace {

#ifdef __SSE2__

__m128i load(const void* eight) { return _mm_loadu_si128(static_cast<const __m128i*>(eight)); }
__m128i range(const std::array<std::uint16_t, 8>& eight) {
  return _mm_load_si128(static_cast<const __m128i*>(static_cast<const void*>(eight.data())));
}
void store(void* out, __m128i eight) { _mm_storeu_si128(static_cast<__m128i*>(out), eight); }

// What lies outside: each lane by how much it is too great, 0 in all where all is well. Numbers
// without sign, so what is too small is far too great.
__m128i outside(__m128i text, const FieldRanges& ranges) {
  const __m128i digits = _mm_sub_epi16(text, _mm_set1_epi16(u'0'));
  const __m128i noDigits = _mm_subs_epu16(digits, _mm_set1_epi16(9));
  const __m128i fields = _mm_madd_epi16(digits, _mm_set1_epi32(1 << 16 | 10));
  const __m128i beyond =
      _mm_subs_epu16(_mm_sub_epi16(fields, range(ranges.least)), range(ranges.span));
  return _mm_or_si128(noDigits, beyond);
}

__m128i field(const char16_t* two) {
  int units = 0;
  std::memcpy(&units, two, sizeof units);
  return _mm_cvtsi32_si128(units);
}

__m128i joined(__m128i one, __m128i two, __m128i three, __m128i four) {
  return _mm_unpacklo_epi64(_mm_unpacklo_epi32(one, two), _mm_unpacklo_epi32(three, four));
}

bool allZero(__m128i lanes) {
  return _mm_movemask_epi8(_mm_cmpeq_epi8(lanes, _mm_setzero_si128())) == 0xFFFF;
}

#endif

}  // namespace

namespace portably {

bool fieldsWithin(const char16_t* eight, const FieldRanges& ranges) noexcept {
  for (std::size_t i = 0; i < 8; i += 2) {
    const auto tens = static_cast<std::uint16_t>(eight[i] - u'0');
    const auto units = static_cast<std::uint16_t>(eight[i + 1] - u'0');
    if (tens > 9 || units > 9) return false;
    const auto above = static_cast<std::uint16_t>(tens * 10 + units - ranges.least[i]);
    if (above > ranges.span[i]) return false;
  }
  return true;
}

bool fieldsWithin(const char16_t* one, const FieldRanges& oneRanges, const char16_t* two,
                  const FieldRanges& twoRanges) noexcept {
  return portably::fieldsWithin(one, oneRanges) && portably::fieldsWithin(two, twoRanges);
}

bool fieldsWithin(const char16_t* four, const char16_t* nextFour,
                  const FieldRanges& ranges) noexcept {
  std::array<char16_t, 8> eight;
  std::copy_n(nextFour, 4, std::copy_n(four, 4, eight.begin()));
  return portably::fieldsWithin(eight.data(), ranges);
}

bool gatherFields(const char16_t* text, const FieldRanges& dayRanges,
                  const FieldRanges& dayAndTimeRanges, char16_t* gathered) noexcept {
  char16_t* out = std::copy_n(text, 4, gathered);
  for (std::size_t at = 5; at < 19; at += 3) out = std::copy_n(text + at, 2, out);
  return portably::fieldsWithin(gathered, dayRanges) &&
         portably::fieldsWithin(gathered + 6, dayAndTimeRanges);
}

}  // namespace portably

#ifdef __SSE2__

bool fieldsWithin(const char16_t* eight, const FieldRanges& ranges) noexcept {
  return allZero(outside(load(eight), ranges));
}

bool fieldsWithin(const char16_t* one, const FieldRanges& oneRanges, const char16_t* two,
                  const FieldRanges& twoRanges) noexcept {
  return allZero(_mm_or_si128(outside(load(one), oneRanges), outside(load(two), twoRanges)));
}

bool fieldsWithin(const char16_t* four, const char16_t* nextFour,
                  const FieldRanges& ranges) noexcept {
  const __m128i both = _mm_unpacklo_epi64(
      _mm_loadl_epi64(static_cast<const __m128i*>(static_cast<const void*>(four))),
      _mm_loadl_epi64(static_cast<const __m128i*>(static_cast<const void*>(nextFour))));
  return allZero(outside(both, ranges));
}

bool gatherFields(const char16_t* text, const FieldRanges& dayRanges,
                  const FieldRanges& dayAndTimeRanges, char16_t* gathered) noexcept {
  const __m128i day = field(text + 8);
  const __m128i year = _mm_loadl_epi64(static_cast<const __m128i*>(static_cast<const void*>(text)));
  const __m128i date = _mm_unpacklo_epi64(year, _mm_unpacklo_epi32(field(text + 5), day));
  const __m128i rest = joined(day, field(text + 11), field(text + 14), field(text + 17));
  // The day twice, in the same place.
  store(gathered + 6, rest);
  store(gathered, date);
  return allZero(_mm_or_si128(outside(date, dayRanges), outside(rest, dayAndTimeRanges)));
}

#else

bool fieldsWithin(const char16_t* eight, const FieldRanges& ranges) noexcept {
  return portably::fieldsWithin(eight, ranges);
}

bool fieldsWithin(const char16_t* one, const FieldRanges& oneRanges, const char16_t* two,
                  const FieldRanges& twoRanges) noexcept {
  return portably::fieldsWithin(one, oneRanges, two, twoRanges);
}

bool fieldsWithin(const char16_t* four, const char16_t* nextFour,
                  const FieldRanges& ranges) noexcept {
  return portably::fieldsWithin(four, nextFour, ranges);
}

bool gatherFields(const char16_t* text, const FieldRanges& dayRanges,
                  const FieldRanges& dayAndTimeRanges, char16_t* gathered) noexcept {
  return portably::gatherFields(text, dayRanges, dayAndTimeRanges, gathered);
}

#endif

}  // namespace veltgeneral::platform
