#include "convert/report.h"

namespace veltgeneral {

ErrInfo doneAt(TextView location) {
  return {0, u"", eiINFORMATIONTYPE, location, Text(kModuleName)};
}

ErrInfo failedAt(TextView location, std::int32_t number, TextView description) {
  ErrInfo result(number, description, eiERRORTYPE, location, Text(kModuleName));
  result.writeLog();
  return result;
}

}  // namespace veltgeneral
