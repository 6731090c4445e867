#include "core/trap.h"

#include <new>
#include <stdexcept>

namespace veltgeneral {

RuntimeError currentError() {
  try {
    throw;
  } catch (const RuntimeError& error) {
    return error;
  } catch (const std::bad_alloc&) {
    return RuntimeError(RunTime::outOfMemory);
  } catch (const std::length_error&) {
    return RuntimeError(RunTime::outOfMemory);  // a text or list greater than any memory
  } catch (...) {
    return RuntimeError(RunTime::internalError);
  }
}

ErrInfo resultOf(std::int32_t number, TextView description, typeInfoCostant severity,
                 TextView location, TextView className) {
  return ErrInfo(number, description, severity, location, Text(className), Text(kModuleName));
}

ErrInfo clearedResult() {
  ErrInfo result;
  result.clear();
  return result;
}

}  // namespace veltgeneral
