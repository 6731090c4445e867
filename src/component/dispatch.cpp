// Late-bound calls: from a name and loose values to a row of a member table.
#include <algorithm>
#include <atomic>
#include <vector>

#include "component/component_object.h"
#include "component/dispatch.h"
#include "component/names.h"
#include "veltgeneral/runtime_error.h"

namespace veltgeneral {
namespace {

std::atomic<std::size_t> liveObjects{0};

[[noreturn]] void fail(RunTime error) { throw RuntimeError(error); }

// The rows of a class, found by name in a table twice their number. Rows of one name follow each
// other in it.
class NameIndex {
 public:
  explicit NameIndex(std::span<const Member> members) : members_(members) {
    while (slots_.size() < 2 * members.size() + 1) slots_.resize(slots_.size() * 2, kFree);
    for (std::size_t i = 0; i < members.size(); ++i) {
      std::size_t at = hash(members[i].name);
      while (slots_[at] != kFree) at = (at + 1) & (slots_.size() - 1);
      slots_[at] = static_cast<std::uint16_t>(i);
    }
  }

  // The best row for `kind` among those of the name: the kind itself, else a method for a get and
  // a get for a method.
  template <class Name>
  const Member& find(const Name& name, CallKind kind) const {
    const Member* other = nullptr;
    if (!name.empty()) {
      for (std::size_t at = hash(name); slots_[at] != kFree; at = (at + 1) & (slots_.size() - 1)) {
        const Member& row = members_[slots_[at]];
        if (!sameName(name, row.name)) continue;
        if (row.kind == kind) return row;
        if (row.kind != CallKind::propertyPut && kind != CallKind::propertyPut) other = &row;
      }
    }
    if (other == nullptr) fail(RunTime::memberNotSupported);
    return *other;
  }

 private:
  static constexpr std::uint16_t kFree = 0xFFFF;

  // Length and four characters tell the members of our classes apart nearly always.
  template <class Name>
  std::size_t hash(const Name& name) const noexcept {
    const std::size_t n = name.size();
    const auto unit = [&](std::size_t i) { return std::size_t{foldAscii(codeUnit(name[i]))}; };
    const std::size_t mixed =
        n + unit(0) * 7 + unit(n / 3) * 61 + unit(2 * n / 3) * 173 + unit(n - 1) * 1031;
    return mixed & (slots_.size() - 1);
  }

  std::span<const Member> members_;
  std::vector<std::uint16_t> slots_ = std::vector<std::uint16_t>(8, kFree);
};

const NameIndex& indexOf(const Class& type) {
  static const std::vector<NameIndex> indices = [] {
    std::vector<NameIndex> all;
    for (const Class& each : classes()) all.emplace_back(each.members);
    return all;
  }();
  return indices[static_cast<std::size_t>(&type - classes().data())];
}

Variant standIn(const Parameter& parameter) {
  if (!parameter.optional) fail(RunTime::argumentNotOptional);
  if (parameter.type.isVariant) return Missing{};
  return parameter.defaultNumber;
}

// Runs the row; what was left out gets its default, or is error 449.
Variant run(ComponentObject& object, const Member& member, ArgumentSlots& slots) {
  const auto parameters = member.parameters;
  std::vector<Variant> defaults;
  for (std::size_t i = 0; i < parameters.size(); ++i) {
    if (slots[i] != nullptr && kindOf(*slots[i]) != Kind::missing) continue;
    if (defaults.empty()) defaults.reserve(parameters.size());
    slots[i] = &defaults.emplace_back(standIn(parameters[i]));
  }
  return member.invoke(object.instance(), slots.data());
}

// Leaves out what the member has beyond the first `count` parameters.
void leaveOutRest(const Member& member, std::size_t count, ArgumentSlots& slots) {
  const std::size_t parameters = member.parameters.size();
  if (count > parameters) fail(RunTime::wrongArgumentCount);
  for (; count < parameters; ++count) slots[count] = nullptr;
}

ArgumentSlots positionalSlots(const Member& member, std::span<Variant> arguments) {
  ArgumentSlots slots;
  if (arguments.size() > slots.size()) fail(RunTime::wrongArgumentCount);
  std::ranges::transform(arguments, slots.begin(), [](Variant& value) { return &value; });
  leaveOutRest(member, arguments.size(), slots);
  return slots;
}

void placeNamed(const Member& member, std::span<const NamedArgument> named, ArgumentSlots& slots) {
  const auto parameters = member.parameters;
  for (const NamedArgument& argument : named) {
    const auto found = std::ranges::find_if(parameters, [&](const Parameter& parameter) {
      return sameName(argument.name, parameter.name);
    });
    if (found == parameters.end()) fail(RunTime::namedArgumentNotFound);
    Variant*& slot = slots[static_cast<std::size_t>(found - parameters.begin())];
    if (slot != nullptr) fail(RunTime::wrongArgumentCount);
    slot = argument.value;
  }
}

ComponentObject& ours(Object& object) {
  auto* component = ComponentObject::from(&object);
  if (component == nullptr) fail(RunTime::noAutomation);
  return *component;
}

}  // namespace

ComponentObject::ComponentObject(const Class& type, void* instance) : instance_(instance) {
  type_ = &type;
  liveObjects.fetch_add(1, std::memory_order_relaxed);
}

ComponentObject::~ComponentObject() { liveObjects.fetch_sub(1, std::memory_order_relaxed); }

std::size_t ComponentObject::count() noexcept {
  return liveObjects.load(std::memory_order_relaxed);
}

Variant ComponentObject::call(TextView name, CallKind kind, std::span<Variant> arguments) {
  const Member& member = indexOf(type()).find(name, kind);
  ArgumentSlots slots = positionalSlots(member, arguments);
  return run(*this, member, slots);
}

const Class* classOf(const Object& object) noexcept { return ComponentObject::typeOf(object); }

const Member& resolve(const Object& object, TextView name, CallKind kind) {
  const Class* type = classOf(object);
  if (type == nullptr) fail(RunTime::noAutomation);
  return indexOf(*type).find(name, kind);
}

Variant invoke(Object& object, const Member& member, std::span<Variant> arguments) {
  ComponentObject& component = ours(object);
  ArgumentSlots slots = positionalSlots(member, arguments);
  return run(component, member, slots);
}

Variant invoke(Object& object, const Member& member, std::span<Variant> positional,
               std::span<const NamedArgument> named) {
  ComponentObject& component = ours(object);
  ArgumentSlots slots = positionalSlots(member, positional);
  placeNamed(member, named, slots);
  return run(component, member, slots);
}

const Member& findMember(const Class& type, std::string_view name, CallKind kind) {
  return indexOf(type).find(name, kind);
}

Variant invokeAt(Object& object, const Member& member, ArgumentSlots& slots, std::size_t count,
                 std::span<const NamedArgument> named) {
  ComponentObject& component = ours(object);
  leaveOutRest(member, count, slots);
  if (!named.empty()) placeNamed(member, named, slots);
  return run(component, member, slots);
}

}  // namespace veltgeneral
