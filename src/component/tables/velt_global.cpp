#include "veltgeneral/velt_global.h"

#include "component/component_object.h"
#include "component/tables/tables.h"

namespace veltgeneral {

template <>
Class describeClass<VeltGlobal>() {
  return {
      "VeltGlobal", "The enumerations of all classes", {}, &makeObject<VeltGlobal>, enumerations()};
}

}  // namespace veltgeneral
