// The entry points that every automation component has.
#include <string>
#include <vector>

#include "component/c_handles.h"
#include "component/component_object.h"
#include "core/narrow_page.h"
#include "platform/library.h"
#include "platform/registry.h"

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

constexpr std::string_view kRegistered = R"(HKEY_LOCAL_MACHINE\SOFTWARE\Classes\VeltGeneral.)";

// A text between quotation marks, as registry files write it.
std::string quoted(std::string_view text) {
  std::string out = "\"";
  for (const char c : text) {
    if (c == '\\' || c == '"') out += '\\';
    out += c;
  }
  return out + '"';
}

// Applies `lines(class name)` for every class in one change of the registry.
template <class Lines>
vg_status changeRegistration(Lines lines) {
  return guarded([&] {
    std::string text = "Windows Registry Editor Version 5.00\r\n";
    for (const Class& type : classes()) {
      text += lines(std::string(kRegistered).append(type.name));
    }
    try {
      platform::importRegistry(text, narrowPage());
    } catch (const platform::RegistryError&) {
      raise(RunTime::pathFileAccess);
    }
  });
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

vg_status DllRegisterServer(void) {
  return changeRegistration([](const std::string& key) {
    return "[" + key + "\\InprocServer32]\r\n@=" + quoted(platform::libraryFile()) + "\r\n";
  });
}

vg_status DllUnregisterServer(void) {
  return changeRegistration([](const std::string& key) { return "[-" + key + "]\r\n"; });
}

vg_status DllCanUnloadNow(void) { return ComponentObject::count() == 0 ? 0 : 1; }
