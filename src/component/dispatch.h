// Late-bound calls for doors whose arguments lie anywhere in memory.
#pragma once

#include <array>
#include <span>
#include <string_view>

#include "veltgeneral/component.h"

namespace veltgeneral {

// The row of `type` for a name in ASCII, chosen as `resolve` does. Throws RuntimeError 438.
const Member& findMember(const Class& type, std::string_view name, CallKind kind);

// Where the arguments of a call lie, by position; null for one left out.
using ArgumentSlots = std::array<Variant*, Member::kMaxParameters>;

// As the public `invoke`; the first `count` slots are the positional arguments. Those behind them
// are overwritten.
Variant invokeAt(Object& object, const Member& member, ArgumentSlots& slots, std::size_t count,
                 std::span<const NamedArgument> named);

}  // namespace veltgeneral
