#include "veltgeneral/object.h"

namespace veltgeneral {

Object::~Object() = default;

}  // namespace veltgeneral
