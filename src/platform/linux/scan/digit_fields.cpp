#include "platform/digit_fields.h"

#include <algorithm>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace veltgeneral::platform {
namespace {

#ifdef __SSE2__

__m128i load(const void* eight) { return _mm_loadu_si128(static_cast<const __m128i*>(eight)); }

// What lies outside: each lane by how much it is too great, 0 in all where all is well. Numbers
// without sign, so what is too small is far too great.
__m128i outside(__m128i text, const FieldRanges& ranges) {
  const __m128i digits = _mm_sub_epi16(text, _mm_set1_epi16(u'0'));
  const __m128i noDigits = _mm_subs_epu16(digits, _mm_set1_epi16(9));
  const __m128i fields = _mm_madd_epi16(digits, _mm_set1_epi32(1 << 16 | 10));
  const __m128i beyond =
      _mm_subs_epu16(_mm_sub_epi16(fields, load(ranges.least.data())), load(ranges.span.data()));
  return _mm_or_si128(noDigits, beyond);
}

bool allZero(__m128i lanes) {
  return _mm_movemask_epi8(_mm_cmpeq_epi8(lanes, _mm_setzero_si128())) == 0xFFFF;
}

#else

bool within(const char16_t* eight, const FieldRanges& ranges) {
  for (std::size_t i = 0; i < 8; i += 2) {
    const auto tens = static_cast<std::uint16_t>(eight[i] - u'0');
    const auto units = static_cast<std::uint16_t>(eight[i + 1] - u'0');
    if (tens > 9 || units > 9) return false;
    const auto above = static_cast<std::uint16_t>(tens * 10 + units - ranges.least[i]);
    if (above > ranges.span[i]) return false;
  }
  return true;
}

#endif

}  // namespace

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

#else

bool fieldsWithin(const char16_t* eight, const FieldRanges& ranges) noexcept {
  return within(eight, ranges);
}

bool fieldsWithin(const char16_t* one, const FieldRanges& oneRanges, const char16_t* two,
                  const FieldRanges& twoRanges) noexcept {
  return within(one, oneRanges) && within(two, twoRanges);
}

bool fieldsWithin(const char16_t* four, const char16_t* nextFour,
                  const FieldRanges& ranges) noexcept {
  std::array<char16_t, 8> eight;
  std::copy_n(nextFour, 4, std::copy_n(four, 4, eight.begin()));
  return within(eight.data(), ranges);
}

#endif

}  // namespace veltgeneral::platform
