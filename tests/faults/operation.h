// What is tried: one row an operation.
#pragma once

#include <cstdint>
#include <functional>
#include <ostream>
#include <span>
#include <string>

#include "faults/interpose.h"
#include "support/temporary_folder.h"
#include "veltgeneral/err_info.h"

namespace veltgeneral::faults {

// What a caller was told: 0 for success, else a run-time or domain error (-1 where the interface
// has no number), and everything that was handed out.
struct Outcome {
  std::int32_t number = 0;
  std::string seen = {};
};

// The folder of one run, and the fault that it meets.
struct Site {
  std::string file(const std::string& name) const { return folder + "/" + name; }
  Text text(const std::string& name) const { return fromUtf8(file(name)); }
  std::string get(const std::string& name) const { return test::contentOf(file(name)); }
  void put(const std::string& name, std::string_view content) const {
    test::setContent(file(name), content);
  }

  // Runs `body` under the fault, which is gone afterwards; what it throws becomes an outcome, and
  // an ErrInfo that it returns too.
  Outcome tried(const std::function<void()>& body) const;
  Outcome result(const std::function<ErrInfo()>& body) const;

  std::string folder;
  Fault fault = {};
  std::function<void(const Call&)> made = {};
  mutable bool came = false;
};

// In which process.
enum class Way : std::uint8_t {
  cold,   // one that has not done it before
  first,  // the same, and only loading a library fails
  warm,   // one that has
  user,   // a plain user's that owns the folder
  guest,  // a plain user's that owns nothing
};

struct Operation {
  const char* name;
  void (*prepare)(const Site&);
  Outcome (*run)(const Site&);
  // Whether `got` is documented for a call that failed with `error`, where it is not what comes
  // undisturbed or not all was done.
  bool (*documented)(const Outcome& got, const Outcome& undisturbed, int error);
  // How many times a file of it is replaced whole, so that nobody ever sees it otherwise.
  int changes = 1;
  static constexpr int kInPlace = 0;  // written in place, and left as it comes
  static constexpr int kUndone = -1;  // written in place, and made as it was by what fails
  Way way = Way::cold;
  bool repeats = true;  // done once more, it leaves the same files
  // Files that are whole though an undisturbed run never has them so.
  bool (*alsoWhole)(const Site&) = nullptr;
};

inline void PrintTo(const Operation& operation, std::ostream* out) { *out << operation.name; }

std::span<const Operation> settingsOperations();
std::span<const Operation> fileOperations();

}  // namespace veltgeneral::faults
