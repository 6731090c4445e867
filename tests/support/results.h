// What tests ask of results.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <tuple>

#include "veltgeneral/err_info.h"
#include "veltgeneral/runtime_error.h"

namespace veltgeneral::test {

// Every field of a result, comparable and printable.
inline auto fields(const ErrInfo& r) {
  return std::tuple(r.numberInfo(), toUtf8(r.descriptionInfo()), r.typeInfo(),
                    toUtf8(r.locationInfo()), toUtf8(r.classInfo()), toUtf8(r.processInfo()),
                    toUtf8(std::get<Text>(r.stepInfo())));
}

using Fields = decltype(fields(ErrInfo()));

inline Fields failure(std::int32_t number, const char* message, const char* location,
                      const char* className) {
  return {number, message, std::int16_t{1}, location, className, "VELTGENERAL", ""};
}

// With the standard message of the number.
inline Fields failure(std::int32_t number, const char* location, const char* className) {
  return failure(number, toUtf8(standardMessage(number)).c_str(), location, className);
}

inline Fields done(const char* location, const char* className) {
  return {
      0, "Operazione eseguita correttamente", std::int16_t{3}, location, className, "VELTGENERAL",
      ""};
}

// Of the members that name the module where others name the class: a success without a message, or
// a failure.
inline Fields ofModule(std::int32_t number, const std::string& message, const char* location) {
  return {number, message, std::int16_t(number == 0 ? 3 : 1), location, "VELTGENERAL", "", ""};
}

inline Fields fresh() { return fields(ErrInfo()); }

inline Fields cleared() {
  ErrInfo result;
  result.clear();
  return fields(result);
}

}  // namespace veltgeneral::test
