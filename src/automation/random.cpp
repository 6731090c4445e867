#include "automation/random.h"

#include <atomic>
#include <cstdint>

namespace veltgeneral {
namespace {

constexpr std::uint32_t kMask = (1u << 24) - 1;

std::atomic<std::uint32_t> state{327680};

constexpr std::uint32_t following(std::uint32_t x) noexcept {
  return (x * 16598013u + 12820163u) & kMask;
}

}  // namespace

double nextRandom() noexcept {
  std::uint32_t before = state.load(std::memory_order_relaxed);
  while (!state.compare_exchange_weak(before, following(before), std::memory_order_relaxed)) {
  }
  return following(before) / static_cast<double>(kMask + 1);
}

}  // namespace veltgeneral
