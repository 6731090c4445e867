#include "platform/structural_scan.h"

#include <bit>

#ifdef __x86_64__
#include <immintrin.h>
#endif

namespace veltgeneral::platform {
namespace {

// From `from` on, behind the `count` positions found before.
std::size_t findRest(std::span<const std::uint8_t> bytes, std::size_t from, char one, char two,
                     char three, std::uint32_t* positions, std::size_t count) {
  const auto a = static_cast<std::uint8_t>(one);
  const auto b = static_cast<std::uint8_t>(two);
  const auto c = static_cast<std::uint8_t>(three);
  for (std::size_t i = from; i < bytes.size(); ++i) {
    const std::uint8_t byte = bytes[i];
    positions[count] = static_cast<std::uint32_t>(i);
    count += static_cast<std::size_t>((byte == a) | (byte == b) | (byte == c));
  }
  return count;
}

std::size_t findPortably(std::span<const std::uint8_t> bytes, char one, char two, char three,
                         std::uint32_t* positions) {
  return findRest(bytes, 0, one, two, three, positions, 0);
}

#ifdef __x86_64__

// Eight positions are written at a time whether they are there or not: a loop that ends at the last
// bit would be mispredicted once a block (Langdale and Lemire, "Parsing gigabytes of JSON per
// second", 2019).
[[gnu::target("avx2,bmi,popcnt"), gnu::always_inline]] inline std::size_t spread(
    std::uint64_t bits, std::size_t base, std::uint32_t* positions, std::size_t count) {
  const auto total = static_cast<std::size_t>(std::popcount(bits));
  std::uint32_t* out = positions + count;
  for (std::size_t done = 0; done < total; done += 8) {
    for (int i = 0; i < 8; ++i) {
      *out++ = static_cast<std::uint32_t>(base + static_cast<std::size_t>(std::countr_zero(bits)));
      bits &= bits - 1;
    }
  }
  return count + total;
}

[[gnu::target("avx2,bmi,popcnt"), gnu::always_inline]] inline std::uint64_t hits(
    const std::uint8_t* at, __m256i one, __m256i two, __m256i three) {
  const __m256i block = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(at));
  const __m256i hit = _mm256_or_si256(
      _mm256_cmpeq_epi8(block, one),
      _mm256_or_si256(_mm256_cmpeq_epi8(block, two), _mm256_cmpeq_epi8(block, three)));
  return static_cast<std::uint32_t>(_mm256_movemask_epi8(hit));
}

[[gnu::target("avx2,bmi,popcnt")]] std::size_t findWide(std::span<const std::uint8_t> bytes,
                                                        char one, char two, char three,
                                                        std::uint32_t* positions) {
  const __m256i first = _mm256_set1_epi8(one);
  const __m256i second = _mm256_set1_epi8(two);
  const __m256i third = _mm256_set1_epi8(three);
  std::size_t count = 0;
  std::size_t i = 0;
  for (; i + 64 <= bytes.size(); i += 64) {
    const std::uint64_t bits =
        hits(&bytes[i], first, second, third) | (hits(&bytes[i + 32], first, second, third) << 32);
    count = spread(bits, i, positions, count);
  }
  return findRest(bytes, i, one, two, three, positions, count);
}

#endif

constexpr decltype(&findBytes) kWays[] = {
#ifdef __x86_64__
    findWide,
#endif
    findPortably,
};

}  // namespace

std::span<decltype(&findBytes) const> byteFinders() noexcept {
  const std::span all(kWays);
#ifdef __x86_64__
  if (!__builtin_cpu_supports("avx2") || !__builtin_cpu_supports("bmi")) return all.last(1);
#endif
  return all;
}

std::size_t findBytes(std::span<const std::uint8_t> bytes, char one, char two, char three,
                      std::uint32_t* positions) {
  static const auto kBest = byteFinders().front();
  return kBest(bytes, one, two, three, positions);
}

}  // namespace veltgeneral::platform
