// What tests ask of results.
#pragma once

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <tuple>

#include "veltgeneral/err_info.h"
#include "veltgeneral/runtime_error.h"

namespace veltgeneral {

inline void PrintTo(const ErrInfo& result, std::ostream* out) {
  *out << result.numberInfo() << " '" << toUtf8(result.descriptionInfo()) << "' severity "
       << result.typeInfo() << " at " << toUtf8(result.locationInfo()) << " of "
       << toUtf8(result.classInfo()) << ", process " << toUtf8(result.processInfo());
}

namespace test {

// Every field of a result, comparable and printable.
inline auto fields(const ErrInfo& r) {
  return std::tuple(r.numberInfo(), toUtf8(r.descriptionInfo()), r.typeInfo(),
                    toUtf8(r.locationInfo()), toUtf8(r.classInfo()), toUtf8(r.processInfo()),
                    toUtf8(std::get<Text>(r.stepInfo())));
}

inline auto failure(std::int32_t number, const char* message, const char* location,
                    const char* className) {
  return std::tuple(number, std::string(message), std::int16_t{1}, std::string(location),
                    std::string(className), std::string("VELTGENERAL"), std::string());
}

// With the standard message of the number.
inline auto failure(std::int32_t number, const char* location, const char* className) {
  return failure(number, toUtf8(standardMessage(number)).c_str(), location, className);
}

inline auto done(const char* location, const char* className) {
  return std::tuple(0, std::string("Operazione eseguita correttamente"), std::int16_t{3},
                    std::string(location), std::string(className), std::string("VELTGENERAL"),
                    std::string());
}

// Of the members that name the module where others name the class: a success without a message, or
// a failure.
inline auto ofModule(std::int32_t number, const std::string& message, const char* location) {
  return std::tuple(number, message, std::int16_t(number == 0 ? 3 : 1), std::string(location),
                    std::string("VELTGENERAL"), std::string(), std::string());
}

inline auto fresh() { return fields(ErrInfo()); }

inline auto cleared() {
  ErrInfo result;
  result.clear();
  return fields(result);
}

}  // namespace test
}  // namespace veltgeneral
