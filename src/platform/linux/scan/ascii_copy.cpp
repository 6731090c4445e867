#include "platform/ascii_copy.h"

#ifdef __x86_64__
#include <immintrin.h>
#endif

namespace veltgeneral::platform {
namespace {

// Plain loops over a block, which the compiler turns into a few vector instructions each.
template <class From, class To>
std::size_t copyPortably(From from, To* to) noexcept {
  using Unit = typename From::value_type;
  std::size_t done = 0;
  for (; from.size() - done >= kAsciiBlock; done += kAsciiBlock) {
    Unit all = 0;
    for (std::size_t i = 0; i < kAsciiBlock; ++i) all = static_cast<Unit>(all | from[done + i]);
    if (all > 0x7F) break;
    for (std::size_t i = 0; i < kAsciiBlock; ++i) to[done + i] = static_cast<To>(from[done + i]);
  }
  return done;
}

#ifdef __x86_64__

[[gnu::target("avx2")]] std::size_t widenWide(std::span<const std::uint8_t> bytes,
                                              char16_t* to) noexcept {
  const std::uint8_t* const from = bytes.data();
  std::size_t done = 0;
  for (; bytes.size() - done >= kAsciiBlock; done += kAsciiBlock) {
    const __m256i block = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(from + done));
    if (_mm256_movemask_epi8(block) != 0) break;
    auto* const out = reinterpret_cast<__m256i*>(to + done);
    _mm256_storeu_si256(out, _mm256_cvtepu8_epi16(_mm256_castsi256_si128(block)));
    _mm256_storeu_si256(out + 1, _mm256_cvtepu8_epi16(_mm256_extracti128_si256(block, 1)));
  }
  return done;
}

[[gnu::target("avx2")]] std::size_t narrowWide(TextView text, std::uint8_t* to) noexcept {
  const char16_t* const from = text.data();
  const __m256i others = _mm256_set1_epi16(static_cast<short>(0xFF80));
  std::size_t done = 0;
  for (; text.size() - done >= kAsciiBlock; done += kAsciiBlock) {
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

#endif

constexpr AsciiCopies kWays[] = {
#ifdef __x86_64__
    {widenWide, narrowWide},
#endif
    {copyPortably<std::span<const std::uint8_t>, char16_t>, copyPortably<TextView, std::uint8_t>},
};

const AsciiCopies& best() {
  static const AsciiCopies kBest = asciiCopies().front();
  return kBest;
}

}  // namespace

std::span<const AsciiCopies> asciiCopies() noexcept {
  const std::span all(kWays);
#ifdef __x86_64__
  if (!__builtin_cpu_supports("avx2")) return all.last(1);
#endif
  return all;
}

std::size_t widenAscii(std::span<const std::uint8_t> bytes, char16_t* out) noexcept {
  return best().widen(bytes, out);
}

std::size_t narrowAscii(TextView text, std::uint8_t* out) noexcept {
  return best().narrow(text, out);
}

}  // namespace veltgeneral::platform
