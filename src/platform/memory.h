// Memory that is about to be filled once, from end to end.
#pragma once

#include <cstddef>

namespace veltgeneral::platform {

// Asks for huge pages below a block that has not been touched yet: filling fresh memory then costs
// a tenth. Does nothing for a block too small to gain; never fails.
void preferHugePages(void* begin, std::size_t bytes) noexcept;

}  // namespace veltgeneral::platform
