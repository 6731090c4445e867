// Late-bound calls for doors whose arguments lie anywhere in memory.
#pragma once

#include <span>
#include <string_view>

#include "veltgeneral/component.h"

namespace veltgeneral {

// The row of `type` for a name in ASCII, chosen as `resolve` does. Throws RuntimeError 438.
const Member& findMember(const Class& type, std::string_view name, CallKind kind);

// As the public `invoke`; a null pointer is an argument left out.
Variant invokeAt(Object& object, const Member& member, std::span<Variant* const> positional,
                 std::span<const NamedArgument> named = {});

}  // namespace veltgeneral
