// A library that stands between a program and the C library: it counts the calls that can fail and
// lets a chosen one fail.
//
// Only calls of the thread that called `begin` count, whatever library makes them; allocations by
// `operator new` count among them. Between `begin` and `end` the calendar's clock stands still, so
// that two runs write the same bytes.
#pragma once

#include <functional>
#include <span>
#include <string>

namespace veltgeneral::faults {

// How a call can fail, other than by an errno: it does only half of what it was asked for.
inline constexpr int kPart = -1;

struct Call {
  const char* name;
  std::span<const int> errors;  // values of errno, or kPart
};

// The call named `name` that comes as number `turn` (from 1) among those of its name.
struct Fault {
  std::string name;
  int turn = 0;
  int error = 0;
};

// `made` hears of every call just after it was made, on the same thread; what it does counts not.
void begin(const Fault& fault, std::function<void(const Call&)> made);
// True where the chosen call came.
bool end() noexcept;

}  // namespace veltgeneral::faults
