// Creation by name.
#include <algorithm>

#include "component/names.h"
#include "component/tables/tables.h"
#include "veltgeneral/runtime_error.h"

namespace veltgeneral {
namespace {

constexpr std::string_view kPrefix = "VeltGeneral.";

template <class... C>
const auto& describeAll(ClassList<C...>) {
  static const std::array<Class, sizeof...(C)> all{describeClass<C>()...};
  return all;
}

}  // namespace

std::span<const Class> classes() noexcept { return describeAll(Classes()); }

const Class* findClass(TextView name) noexcept {
  if (name.size() > kPrefix.size() && sameName(name.substr(0, kPrefix.size()), kPrefix)) {
    name.remove_prefix(kPrefix.size());
  }
  const auto found =
      std::ranges::find_if(classes(), [&](const Class& each) { return sameName(name, each.name); });
  return found == classes().end() ? nullptr : &*found;
}

ObjectRef createObject(TextView name) {
  const Class* type = findClass(name);
  if (type == nullptr) throw RuntimeError(RunTime::cannotCreateObject);
  return type->create();
}

}  // namespace veltgeneral
