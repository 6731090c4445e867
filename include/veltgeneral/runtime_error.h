// RuntimeError: the one error type inside the library.
//
// It carries a run-time error number and, unless its thrower says otherwise, the standard message
// of that number. Members that return an ErrInfo turn it into the result; the others let it reach
// the caller.
#pragma once

#include <cstdint>
#include <exception>
#include <string>

#include "veltgeneral/export.h"
#include "veltgeneral/text.h"

namespace veltgeneral {

// The standard run-time errors that the library raises. The numbers are published.
enum class RunTime : std::int32_t {
  invalidCall = 5,
  overflow = 6,
  outOfMemory = 7,
  subscriptOutOfRange = 9,
  fixedOrLockedArray = 10,
  divisionByZero = 11,
  typeMismatch = 13,
  internalError = 51,
  badFileName = 52,
  fileNotFound = 53,
  fileAlreadyOpen = 55,
  deviceIo = 57,
  diskFull = 61,
  inputPastEnd = 62,
  badRecordNumber = 63,
  tooManyFiles = 67,
  permissionDenied = 70,
  pathFileAccess = 75,
  pathNotFound = 76,
  objectNotSet = 91,
  invalidUseOfNull = 94,
  libraryNotFound = 48,
  invalidPropertyValue = 380,
  cannotCreateObject = 429,
  noAutomation = 430,
  memberNotSupported = 438,
  namedArgumentNotFound = 448,
  argumentNotOptional = 449,
  wrongArgumentCount = 450,
  entryNotFound = 453,
  printerError = 482,
};

// The standard English message of `number`; "Application-defined or object-defined error" for a
// number that has none.
VELTGENERAL_API TextView standardMessage(std::int32_t number) noexcept;

class VELTGENERAL_API RuntimeError : public std::exception {
 public:
  explicit RuntimeError(RunTime error);
  // For errors that a caller's object raised: any number, and the text it came with.
  RuntimeError(std::int32_t number, Text description);

  std::int32_t number() const noexcept { return number_; }
  const Text& description() const noexcept { return description_; }
  // The description in UTF-8; lives as long as the error.
  const char* what() const noexcept override { return utf8_.c_str(); }

 private:
  std::int32_t number_;
  Text description_;
  std::string utf8_;
};

}  // namespace veltgeneral
