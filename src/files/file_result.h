// What FileUtility's members say of themselves.
#pragma once

#include "core/trap.h"

namespace veltgeneral {

inline constexpr TextView kFileUtility = u"FileUtility";

inline ErrInfo fileDone(TextView location) {
  return resultOf(eiSUCCESFULL, u"Operazione eseguita correttamente", eiINFORMATIONTYPE, location,
                  kFileUtility);
}

// A refusal of the library's own, not of the host.
inline ErrInfo fileAborted(TextView location, TextView description) {
  return resultOf(eiABORTED, description, eiERRORTYPE, location, kFileUtility);
}

}  // namespace veltgeneral
