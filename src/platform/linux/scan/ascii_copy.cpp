#include "platform/ascii_copy.h"

#ifdef __x86_64__
#include <immintrin.h>
#endif

namespace veltgeneral::platform {
namespace {

// Plain loops over a block, which the compiler turns into a few vector instructions each.
template <class From, class To>
std::size_t copyPortably(const From* from, std::size_t size, To* to) noexcept {
  std::size_t done = 0;
  for (; size - done >= kAsciiBlock; done += kAsciiBlock) {
    From all = 0;
    for (std::size_t i = 0; i < kAsciiBlock; ++i) all = static_cast<From>(all | from[done + i]);
    if (all > 0x7F) break;
    for (std::size_t i = 0; i < kAsciiBlock; ++i) to[done + i] = static_cast<To>(from[done + i]);
  }
  return done;
}

#ifdef __x86_64__

[[gnu::target("avx2")]] std::size_t widenWide(const std::uint8_t* from, std::size_t size,
                                              char16_t* to) noexcept {
  std::size_t done = 0;
  for (; size - done >= kAsciiBlock; done += kAsciiBlock) {
    const __m256i block = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(from + done));
    if (_mm256_movemask_epi8(block) != 0) break;
    auto* const out = reinterpret_cast<__m256i*>(to + done);
    _mm256_storeu_si256(out, _mm256_cvtepu8_epi16(_mm256_castsi256_si128(block)));
    _mm256_storeu_si256(out + 1, _mm256_cvtepu8_epi16(_mm256_extracti128_si256(block, 1)));
  }
  return done;
}

[[gnu::target("avx2")]] std::size_t narrowWide(const char16_t* from, std::size_t size,
                                               std::uint8_t* to) noexcept {
  const __m256i others = _mm256_set1_epi16(static_cast<short>(0xFF80));
  std::size_t done = 0;
  for (; size - done >= kAsciiBlock; done += kAsciiBlock) {
    const auto* const in = reinterpret_cast<const __m256i*>(from + done);
    const __m256i first = _mm256_loadu_si256(in);
    const __m256i second = _mm256_loadu_si256(in + 1);
    if (_mm256_testz_si256(_mm256_or_si256(first, second), others) == 0) break;
    // Packing works within each half, so the middle quarters have to change places.
    const __m256i packed = _mm256_packus_epi16(first, second);
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(to + done),
                        _mm256_permute4x64_epi64(packed, 0xD8));
  }
  return done;
}

bool hasWide() {
  static const bool kWide = __builtin_cpu_supports("avx2");
  return kWide;
}

#endif

}  // namespace

std::size_t widenAscii(std::span<const std::uint8_t> bytes, char16_t* out) noexcept {
#ifdef __x86_64__
  if (hasWide()) return widenWide(bytes.data(), bytes.size(), out);
#endif
  return copyPortably(bytes.data(), bytes.size(), out);
}

std::size_t narrowAscii(TextView text, std::uint8_t* out) noexcept {
#ifdef __x86_64__
  if (hasWide()) return narrowWide(text.data(), text.size(), out);
#endif
  return copyPortably(text.data(), text.size(), out);
}

}  // namespace veltgeneral::platform
