// What is tried: one row an operation.
#pragma once

#include <sys/stat.h>

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "veltgeneral/variant.h"

namespace veltgeneral::faults {

// The file that most operations are about: so long a name that copies of it are allocated.
inline const std::string kName = "the-file-worked-on";
inline const Text kPath = u"./the-file-worked-on";

// What an operation finds in its folder; it is added to what a file of that name already holds.
struct File {
  std::string_view name;
  std::string_view content = {};    // of a link, where it leads
  mode_t mode = 0644;               // S_IFLNK makes a link, 0 takes the file away
  std::string_view attribute = {};  // user.DOSATTRIB
  bool others = false;              // somebody else's, where this process may give files away
};

// A member with these arguments, or a function.
struct Action {
  Action(std::initializer_list<Variant> given) : arguments(given) {}
  Action(Variant (*function)()) : run(function) {}

  std::vector<Variant> arguments;
  Variant (*run)() = nullptr;
};

// What a caller was told.
struct Outcome {
  std::int32_t number = 0;  // of the error; -1 where it has none
  std::string seen = {};    // what was handed out: the result, and the arguments that changed
  bool kept = true;         // no argument changed
};

enum class Process : std::uint8_t {
  cold,   // has not done it before
  first,  // the same, and only loading a library fails
  warm,   // has; what it loaded then may tell of signals
  user,   // a plain user's, cold
};

inline constexpr int kInPlace = 0;  // written in place, and left as it comes
inline constexpr int kUndone = -1;  // written in place, and made as it was by what fails

struct Operation {
  std::string name;  // the member's, with "=" where it is put, and perhaps ", " and a circumstance
  std::vector<File> given;
  Action action;
  // Whether `got` is documented for a call that failed with `error`, where it is not what is seen
  // undisturbed or not all was done.
  bool (*documented)(const Outcome& got, const std::string& undisturbed, int error);
  // How many times a file is replaced whole, so that nobody ever sees it otherwise; or one of
  // above.
  int changes = 1;
  Process process = Process::cold;
  // Files in the current folder that are whole though an undisturbed run never has them so.
  bool (*alsoWhole)() = nullptr;
};

// The cold ones first: what a warm one does in its parent's process, others would find done.
std::vector<Operation> operations();

}  // namespace veltgeneral::faults
