// The process's pseudo-random numbers: a predictable sequence, never for secrets.
#pragma once

namespace veltgeneral {

// The next number, from 0 up to but not including 1. The sequence is that of the linear
// congruential generator x <- x * 16598013 + 12820163 modulo 2^24 from 327680, divided by 2^24: a
// fresh process begins with 0.7055475. Threads share it, and no number is handed out twice.
double nextRandom() noexcept;

}  // namespace veltgeneral
