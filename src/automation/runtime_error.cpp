#include "veltgeneral/runtime_error.h"

#include <algorithm>
#include <array>
#include <utility>

namespace veltgeneral {
namespace {

struct Message {
  RunTime error;
  TextView text;
};

constexpr std::array kMessages{
    Message{RunTime::invalidCall, u"Invalid procedure call or argument"},
    Message{RunTime::overflow, u"Overflow"},
    Message{RunTime::outOfMemory, u"Out of memory"},
    Message{RunTime::subscriptOutOfRange, u"Subscript out of range"},
    Message{RunTime::fixedOrLockedArray, u"This array is fixed or temporarily locked"},
    Message{RunTime::divisionByZero, u"Division by zero"},
    Message{RunTime::typeMismatch, u"Type mismatch"},
    Message{RunTime::libraryNotFound, u"Error in loading DLL"},
    Message{RunTime::internalError, u"Internal error"},
    Message{RunTime::badFileName, u"Bad file name or number"},
    Message{RunTime::fileNotFound, u"File not found"},
    Message{RunTime::fileAlreadyOpen, u"File already open"},
    Message{RunTime::deviceIo, u"Device I/O error"},
    Message{RunTime::diskFull, u"Disk full"},
    Message{RunTime::inputPastEnd, u"Input past end of file"},
    Message{RunTime::badRecordNumber, u"Bad record number"},
    Message{RunTime::tooManyFiles, u"Too many files"},
    Message{RunTime::permissionDenied, u"Permission denied"},
    Message{RunTime::pathFileAccess, u"Path/File access error"},
    Message{RunTime::pathNotFound, u"Path not found"},
    Message{RunTime::objectNotSet, u"Object variable not set"},
    Message{RunTime::invalidUseOfNull, u"Invalid use of Null"},
    Message{RunTime::invalidPropertyValue, u"Invalid property value"},
    Message{RunTime::cannotCreateObject, u"Cannot create object"},
    Message{RunTime::noAutomation, u"Class does not support Automation"},
    Message{RunTime::memberNotSupported, u"Object does not support this property or method"},
    Message{RunTime::namedArgumentNotFound, u"Named argument not found"},
    Message{RunTime::argumentNotOptional, u"Argument not optional"},
    Message{RunTime::wrongArgumentCount,
            u"Wrong number of arguments or invalid property assignment"},
    Message{RunTime::entryNotFound, u"Specified DLL function not found"},
    Message{RunTime::printerError, u"Printer error"},
};

}  // namespace

TextView standardMessage(std::int32_t number) noexcept {
  const auto* found = std::ranges::find(
      kMessages, number, [](const Message& m) { return static_cast<std::int32_t>(m.error); });
  return found != kMessages.end() ? found->text : u"Application-defined or object-defined error";
}

RuntimeError::RuntimeError(RunTime error)
    : RuntimeError(static_cast<std::int32_t>(error),
                   Text(standardMessage(static_cast<std::int32_t>(error)))) {}

RuntimeError::RuntimeError(std::int32_t number, Text description)
    : number_(number), description_(std::move(description)), utf8_(toUtf8(description_)) {}

}  // namespace veltgeneral
