#include "drawing/error.h"

#include <system_error>

namespace veltgeneral::drawing {

Error Error::ofSystem(int number) {
  Error error(std::generic_category().message(number));
  error.systemError_ = number;
  return error;
}

}  // namespace veltgeneral::drawing
