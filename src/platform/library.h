// Shared libraries opened while the program runs: our own modules and a caller's PDF generator.
#pragma once

#include <string>

#include "veltgeneral/export.h"

namespace veltgeneral::platform {

// An open library; unloaded when the object goes.
class Library {
 public:
  // `path` names the file; a name without a folder is looked for where the system's loader looks.
  // Every symbol is bound at once, so a library that opens can also be called.
  //
  // Throws RuntimeError: 53 no such file, 48 the file is there and cannot be loaded.
  explicit Library(const std::string& path);
  Library(Library&& other) noexcept;
  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;
  ~Library();

  // A function that the library exports, valid as long as the library is open. `Function` must be
  // its type: nothing checks it. Throws RuntimeError 453 for a name that is not exported.
  template <typename Function>
  Function* entry(const char* name) const {
    return reinterpret_cast<Function*>(symbol(name));
  }

 private:
  void* symbol(const char* name) const;

  void* handle_;
};

// The folder of the file that this library was loaded from, links resolved; where the library is
// linked into a program, that program's folder. Does not end in a slash. Throws RuntimeError 53
// where it could not be found out.
VELTGENERAL_API std::string libraryFolder();

// The absolute path that this library was loaded by, links not resolved, so that it stays good when
// a newer version takes the file's place. Throws RuntimeError 53 where it could not be found out.
VELTGENERAL_API std::string libraryFile();

// The file of our own module `name` ("veltgeneral-http"): in the folder VELTGENERAL_MODULE_DIR, or
// where that is not set in the folder "veltgeneral" beside this library. Need not exist.
VELTGENERAL_API std::string modulePath(const std::string& name);

}  // namespace veltgeneral::platform
