// What an action answers, as tables hold it: the value as the user's locale writes it, or "error
// N".
#pragma once

#include <string>

#include "automation/coerce.h"
#include "veltgeneral/runtime_error.h"

namespace veltgeneral {

template <class Action>
std::string answerOf(Action&& action) {
  try {
    return toUtf8(toText(Variant(action())));
  } catch (const RuntimeError& error) {
    return "error " + std::to_string(error.number());
  }
}

}  // namespace veltgeneral
