// Stands between a program and the C library: counts the calls that can fail and lets a chosen one
// fail, whatever library makes it. `operator new` counts among them.
//
// Only calls of the thread that made the `Disturbance` count. As long as it lives the calendar's
// clock stands still, so that two runs write the same bytes.
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string_view>
#include <vector>

namespace veltgeneral::faults {

// How a call can fail, other than by an errno: it does only half of what it was asked for.
inline constexpr int kPart = -1;
inline constexpr std::string_view kAllocation = "operator new";

enum class Failing : std::uint8_t { instead, withAllOnes, afterItsWork };

struct Call {
  std::string_view name;
  void* replacement;        // of the C library's function
  std::vector<int> errors;  // values of errno, or kPart
  Failing how = Failing::instead;
  void* original = nullptr;
};

// Every call that can fail.
std::span<const Call> calls();

// One call, as number `turn` (from 1) of its kind.
struct Fault {
  const Call* call = nullptr;
  int turn = 0;
  int error = 0;
};

// Hears of every call just after it was made, on the same thread; what it does counts not.
using Listener = std::function<void(const Call&)>;

class Disturbance {
 public:
  Disturbance(const Fault& fault, Listener listener);
  ~Disturbance();
  Disturbance(const Disturbance&) = delete;
  Disturbance& operator=(const Disturbance&) = delete;
};

// Whether the call of the last disturbance came.
bool faultCame() noexcept;

}  // namespace veltgeneral::faults
