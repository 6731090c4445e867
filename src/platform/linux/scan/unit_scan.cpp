#include "platform/unit_scan.h"

#include <algorithm>
#include <bit>

#ifdef __x86_64__
#include <immintrin.h>
#endif

namespace veltgeneral::platform {
namespace {

constexpr std::uint8_t narrowed(char16_t unit) {
  if (unit > 0x7FFF) return 0;
  return unit > 0xFF ? 0xFF : static_cast<std::uint8_t>(unit);
}

std::size_t findPortably(TextView text, const UnitSet& set, UnitPositions& positions) noexcept {
  std::size_t count = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    positions[count] = static_cast<std::uint16_t>(i);
    count += set.has(narrowed(text[i])) ? 1 : 0;
  }
  return count;
}

// Of the units from `done` on, with positions behind the `count` that are found already.
std::size_t shiftRest(TextView text, char16_t* out, char16_t by, char16_t first, char16_t last,
                      UnitPositions& others, std::size_t done, std::size_t count) noexcept {
  const auto plain = static_cast<char16_t>(last - first);
  for (; done < text.size(); ++done) {
    out[done] = static_cast<char16_t>(text[done] + by);
    others[count] = static_cast<std::uint16_t>(done);
    count += static_cast<char16_t>(text[done] - first) > plain ? 1 : 0;
  }
  return count;
}

std::size_t shiftPortably(TextView text, char16_t* out, char16_t by, char16_t first, char16_t last,
                          UnitPositions& others) noexcept {
  return shiftRest(text, out, by, first, last, others, 0, 0);
}

#ifdef __x86_64__

constexpr std::size_t kWideBlock = 64;

[[gnu::target("avx2,bmi,popcnt")]] inline __m256i at(const char16_t* units) {
  return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(units));
}

[[gnu::target("avx2,bmi,popcnt")]] inline __m256i table(const std::array<std::uint8_t, 16>& bytes) {
  return _mm256_broadcastsi128_si256(
      _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes.data())));
}

// Table lookups by the halves of each byte (Langdale and Lemire, "Parsing gigabytes of JSON per
// second", 2019), after packing 32 units into bytes.
struct Tables {
  __m256i low;
  __m256i high;
  __m256i half;
};

// One byte for each of 32 units, not 0 for a member; the middle quarters have changed places.
[[gnu::target("avx2,bmi,popcnt")]] inline __m256i members(const char16_t* units,
                                                          const Tables& tables) {
  const __m256i packed = _mm256_packus_epi16(at(units), at(units + 16));
  const __m256i low = _mm256_shuffle_epi8(tables.low, _mm256_and_si256(packed, tables.half));
  const __m256i high =
      _mm256_shuffle_epi8(tables.high, _mm256_and_si256(_mm256_srli_epi16(packed, 4), tables.half));
  return _mm256_and_si256(low, high);
}

// A bit for each byte that is 0, the middle quarters back in their places.
[[gnu::target("avx2,bmi,popcnt")]] inline std::uint64_t zeroBits(__m256i packed) {
  const __m256i zeros = _mm256_cmpeq_epi8(packed, _mm256_setzero_si256());
  const __m256i ordered = _mm256_permute4x64_epi64(zeros, 0xD8);
  return static_cast<std::uint32_t>(_mm256_movemask_epi8(ordered));
}

[[gnu::target("avx2,bmi,popcnt")]] inline std::uint64_t orderedBits(__m256i found) {
  return zeroBits(found) ^ 0xFFFFFFFF;
}

// One bit for each of kWideBlock units.
[[gnu::target("avx2,bmi,popcnt")]] inline std::uint64_t wideBits(const char16_t* units,
                                                                 const Tables& tables) {
  const __m256i first = members(units, tables);
  const __m256i second = members(units + 32, tables);
  const __m256i any = _mm256_or_si256(first, second);
  if (_mm256_testz_si256(any, any) != 0) return 0;
  return orderedBits(first) | orderedBits(second) << 32;
}

// Eight at a time whether they are there or not: the end of a loop over bits is mispredicted.
[[gnu::target("avx2,bmi,popcnt")]] inline std::size_t spread(std::uint64_t bits, std::size_t base,
                                                             std::uint16_t* positions) {
  const auto total = static_cast<std::size_t>(std::popcount(bits));
  for (std::size_t done = 0; done < total; done += 8) {
    for (int i = 0; i < 8; ++i) {
      *positions++ =
          static_cast<std::uint16_t>(base + static_cast<std::size_t>(std::countr_zero(bits)));
      bits &= bits - 1;
    }
  }
  return total;
}

[[gnu::target("avx2,bmi,popcnt")]] std::size_t findWide(TextView text, const UnitSet& set,
                                                        UnitPositions& positions) noexcept {
  const Tables tables{table(set.low()), table(set.high()), _mm256_set1_epi8(15)};
  std::size_t count = 0;
  std::size_t i = 0;
  // Two blocks at a time, as most hold no member.
  for (; i + 2 * kWideBlock <= text.size(); i += 2 * kWideBlock) {
    const char16_t* const units = &text[i];
    const __m256i found[] = {members(units, tables), members(units + 32, tables),
                             members(units + 64, tables), members(units + 96, tables)};
    const __m256i any =
        _mm256_or_si256(_mm256_or_si256(found[0], found[1]), _mm256_or_si256(found[2], found[3]));
    if (_mm256_testz_si256(any, any) != 0) continue;
    const std::uint64_t first = orderedBits(found[0]) | orderedBits(found[1]) << 32;
    if (first != 0) count += spread(first, i, &positions[count]);
    const std::uint64_t second = orderedBits(found[2]) | orderedBits(found[3]) << 32;
    if (second != 0) count += spread(second, i + kWideBlock, &positions[count]);
  }
  if (i + kWideBlock <= text.size()) {
    const std::uint64_t bits = wideBits(&text[i], tables);
    if (bits != 0) count += spread(bits, i, &positions[count]);
    i += kWideBlock;
  }
  if (const std::size_t left = text.size() - i; left != 0) {
    std::array<char16_t, kWideBlock> rest{};
    std::copy_n(&text[i], left, rest.begin());
    const std::uint64_t bits = wideBits(rest.data(), tables) & ((std::uint64_t{1} << left) - 1);
    if (bits != 0) count += spread(bits, i, &positions[count]);
  }
  return count;
}

[[gnu::target("avx2,bmi,popcnt")]] std::size_t shiftWide(TextView text, char16_t* out, char16_t by,
                                                         char16_t first, char16_t last,
                                                         UnitPositions& others) noexcept {
  const __m256i start = _mm256_set1_epi16(static_cast<short>(first));
  const __m256i plain = _mm256_set1_epi16(static_cast<short>(last - first));
  const __m256i step = _mm256_set1_epi16(static_cast<short>(by));
  std::size_t count = 0;
  std::size_t done = 0;
  for (; text.size() - done >= kWideBlock; done += kWideBlock) {
    const char16_t* const units = &text[done];
    auto* const place = reinterpret_cast<__m256i*>(out + done);
    __m256i offsets[4];
    for (std::size_t i = 0; i < 4; ++i) {
      const __m256i each = at(units + 16 * i);
      _mm256_storeu_si256(place + i, _mm256_add_epi16(each, step));
      offsets[i] = _mm256_sub_epi16(each, start);
    }
    const __m256i most = _mm256_max_epu16(_mm256_max_epu16(offsets[0], offsets[1]),
                                          _mm256_max_epu16(offsets[2], offsets[3]));
    const __m256i beyond = _mm256_subs_epu16(most, plain);
    if (_mm256_testz_si256(beyond, beyond) != 0) continue;
    // All ones for units within, before packing: that saturates with a sign.
    for (__m256i& each : offsets) each = _mm256_cmpeq_epi16(_mm256_max_epu16(each, plain), plain);
    const std::uint64_t bits = zeroBits(_mm256_packs_epi16(offsets[0], offsets[1])) |
                               zeroBits(_mm256_packs_epi16(offsets[2], offsets[3])) << 32;
    count += spread(bits, done, &others[count]);
  }
  return shiftRest(text, out, by, first, last, others, done, count);
}

#endif

constexpr UnitScans kWays[] = {
#ifdef __x86_64__
    {findWide, shiftWide},
#endif
    {findPortably, shiftPortably},
};

const UnitScans& best() {
  static const UnitScans kBest = unitScans().front();
  return kBest;
}

}  // namespace

UnitSet::UnitSet(const std::bitset<256>& members) noexcept {
  std::array<std::uint16_t, 8> rows{};
  std::size_t used = 0;
  for (std::size_t high = 0; high < 16; ++high) {
    std::uint16_t row = 0;
    for (std::size_t low = 0; low < 16; ++low) {
      if (members[high * 16 + low]) row = static_cast<std::uint16_t>(row | (1u << low));
    }
    if (row == 0) continue;
    auto* const end = rows.begin() + used;
    auto at = static_cast<std::size_t>(std::find(rows.begin(), end, row) - rows.begin());
    if (at == used) at = used < rows.size() ? used++ : rows.size() - 1;
    rows[at] = static_cast<std::uint16_t>(rows[at] | row);
    high_[high] = static_cast<std::uint8_t>(1u << at);
  }
  for (std::size_t at = 0; at < used; ++at) {
    for (std::size_t low = 0; low < 16; ++low) {
      if ((rows[at] >> low & 1) != 0) {
        low_[low] = static_cast<std::uint8_t>(low_[low] | (1u << at));
      }
    }
  }
}

std::span<const UnitScans> unitScans() noexcept {
  const std::span all(kWays);
#ifdef __x86_64__
  if (!__builtin_cpu_supports("avx2") || !__builtin_cpu_supports("bmi")) return all.last(1);
#endif
  return all;
}

std::size_t findUnits(TextView text, const UnitSet& set, UnitPositions& positions) noexcept {
  return best().find(text, set, positions);
}

std::size_t shiftUnits(TextView text, char16_t* out, char16_t by, char16_t first, char16_t last,
                       UnitPositions& others) noexcept {
  return best().shift(text, out, by, first, last, others);
}

}  // namespace veltgeneral::platform
