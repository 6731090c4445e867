// The entry points that every automation component has.
#include <vector>

#include "component/c_handles.h"
#include "component/component_object.h"

using namespace veltgeneral;

namespace {

vg_status createFromFactory(const vg_factory* factory, vg_object** object, vg_error** error) {
  return vg_create(factory == nullptr ? nullptr : factory->class_name, object, error);
}

// One a class, in the order of classes().
const std::vector<vg_factory>& factories() {
  static const std::vector<vg_factory> all = [] {
    std::vector<vg_factory> made;
    for (const Class& type : classes()) {
      made.push_back({VG_INTERFACE_VERSION, type.name.data(), &createFromFactory});
    }
    return made;
  }();
  return all;
}

}  // namespace

vg_status DllGetClassObject(const char* class_name, const vg_factory** factory) {
  return guarded([&] {
    const vg_factory*& place = needed(factory);
    const Class* type = findClass(fromUtf8(&needed(class_name)));
    if (type == nullptr) raise(RunTime::cannotCreateObject);
    place = &factories()[static_cast<std::size_t>(type - classes().data())];
  });
}

vg_status DllCanUnloadNow(void) { return ComponentObject::count() == 0 ? 0 : 1; }
