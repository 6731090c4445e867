#include "platform/linux/report/failure.h"

#include <cerrno>
#include <new>

#include "drawing/error.h"

namespace veltgeneral::platform {

namespace {

struct Row {
  int host;
  RunTime error;
};

constexpr Row kErrors[] = {
    {ENOSPC, RunTime::diskFull},        {EDQUOT, RunTime::diskFull},
    {EFBIG, RunTime::diskFull},         {ENOENT, RunTime::pathNotFound},
    {ENOTDIR, RunTime::pathNotFound},   {EACCES, RunTime::permissionDenied},
    {EPERM, RunTime::permissionDenied}, {EROFS, RunTime::permissionDenied},
    {EISDIR, RunTime::pathFileAccess},  {ENAMETOOLONG, RunTime::badFileName},
    {EMFILE, RunTime::tooManyFiles},    {ENFILE, RunTime::tooManyFiles},
    {ENOMEM, RunTime::outOfMemory},
};

RunTime errorOfSystem(int number, RunTime device) noexcept {
  for (const Row& row : kErrors)
    if (row.host == number) return row.error;
  return device;
}

}  // namespace

ErrorNumber currentNumber(RunTime device) noexcept {
  try {
    throw;
  } catch (const Failure& failure) {
    device = failure.error();
  } catch (const drawing::Error& error) {
    device = errorOfSystem(error.systemError(), device);
  } catch (const std::bad_alloc&) {
    device = RunTime::outOfMemory;
  } catch (...) {
    device = RunTime::internalError;
  }
  return static_cast<ErrorNumber>(device);
}

}  // namespace veltgeneral::platform
