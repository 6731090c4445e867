// Every call of every operation that touches the machine fails once in turn: the result is a
// documented one, files are whole, nothing stays open and the next call succeeds.
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <iomanip>
#include <iostream>
#include <map>
#include <memory>
#include <set>
#include <sstream>
#include <stdexcept>
#include <thread>

#include "automation/coerce.h"
#include "faults/interpose.h"
#include "faults/operation.h"
#include "support/temporary_folder.h"
#include "veltgeneral/component.h"
#include "veltgeneral/runtime_error.h"

namespace veltgeneral::faults {
namespace {

namespace fs = std::filesystem;
using test::TemporaryFolder;

constexpr const char* kAttribute = "user.DOSATTRIB";
constexpr uid_t kNobody = 65534;

bool asPlainUser(const Operation& operation) {
  return operation.process == Process::user && ::geteuid() == 0;
}

void put(const File& file, const std::string& path) {
  if (file.mode == S_IFLNK) return fs::create_symlink(file.content, path);
  if (file.mode == 0) return static_cast<void>(fs::remove(path));
  std::ofstream(path, std::ios::app | std::ios::binary) << file.content;
  if (!file.attribute.empty())
    ::setxattr(path.c_str(), kAttribute, file.attribute.data(), file.attribute.size(), 0);
  const bool given = file.others && ::geteuid() == 0;
  if ((given && ::chown(path.c_str(), kNobody, kNobody) != 0) ||
      ::chmod(path.c_str(), file.mode) != 0)
    throw std::runtime_error("cannot make " + path);
}

// A folder with what the operation finds; a plain user's, where it is one. It lies in memory where
// that keeps attributes, for no disk is as fast.
std::unique_ptr<TemporaryFolder> folderFor(const Operation& operation) {
  static const fs::path kParent =
      ::getxattr("/dev/shm", kAttribute, nullptr, 0) < 0 && errno == ENODATA
          ? "/dev/shm"
          : fs::temp_directory_path();
  const bool plain = asPlainUser(operation) && ::seteuid(kNobody) == 0;
  auto folder = std::make_unique<TemporaryFolder>(kParent);
  for (const char* name : {"registry", "home", "log"}) fs::create_directory(*folder / name);
  folder->put("registry/machine.reg",
              "REGEDIT4\n\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Zoltra\\LogSystem]\n\"Path\"=\"log\"\n");
  for (const File& file : operation.given) put(file, *folder / file.name);
  if (plain && ::seteuid(0) != 0) throw std::runtime_error("cannot become root again");
  return folder;
}

void enter(const TemporaryFolder& folder, const Operation& operation) {
  fs::current_path(folder.path());
  for (const auto& [variable, value] :
       std::map<const char*, std::string>{{"VELTGENERAL_REGISTRY_DIR", folder / "registry"},
                                          {"VELTGENERAL_HOME", folder / "home"},
                                          {"VELTGENERAL_PRINTER", "pdf:report.pdf"},
                                          {"VELTGENERAL_FORM", "image:form.png"},
                                          {"XDG_STATE_HOME", folder / "state"},
                                          {"TMPDIR", folder / "home"}})
    ::setenv(variable, value.c_str(), 1);
  if (asPlainUser(operation) && ::setresuid(kNobody, kNobody, kNobody) != 0)
    throw std::runtime_error("cannot become a plain user");
}

// Files changed within the clock's last tick are not yet trusted, which takes other calls.
void letTheClockTick() { std::this_thread::sleep_for(std::chrono::milliseconds(12)); }

// Everything about the files of a folder that an operation can change, by their names.
using Files = std::map<std::string, std::string>;

Files filesIn(const TemporaryFolder& folder) {
  Files files;
  for (const auto& entry : fs::recursive_directory_iterator(folder.path())) {
    struct stat status {};
    if (::lstat(entry.path().c_str(), &status) != 0) continue;
    std::ostringstream state;
    state << "mode " << status.st_mode << " of " << status.st_uid << ' ';
    std::array<char, 64> value{};
    const auto size = ::getxattr(entry.path().c_str(), kAttribute, value.data(), value.size());
    if (size > 0) state.write(value.data(), size);
    if (status.st_mtime < 1'500'000'000) state << " time " << status.st_mtime;  // it was set
    if (entry.is_regular_file()) state << ": " << test::contentOf(entry.path());
    files[entry.path().lexically_relative(folder.path())] = state.str();
  }
  return files;
}

// The common log takes a line of whatever fails: it has whole lines, and is of no account else.
bool isLog(const std::string& name) { return name.find("/tarnview.log") != std::string::npos; }

bool hasWholeLines(const std::string& state) {
  const std::string lines = state.substr(state.find(": ") + 2);
  return lines.empty() || (lines.starts_with("\"[") && lines.ends_with("]\"\r\n"));
}

// What is handed out, as one text; of a table, its first row.
std::string textOf(const Variant& value) {
  if (const Bytes* bytes = std::get_if<Bytes>(&value)) return {bytes->begin(), bytes->end()};
  if (const bool* yes = std::get_if<bool>(&value)) return *yes ? "yes" : "";
  if (std::holds_alternative<ObjectRef>(value)) return {};
  const TextArray* array = std::get_if<TextArray>(&value);
  if (array == nullptr) return toUtf8(toText(value));
  std::string all;
  for (std::int32_t i = 1; array->dimensions() > 0 && i <= array->bounds().upper; ++i)
    all += toUtf8(array->dimensions() == 1 ? array->at(i) : array->at(i, 1));
  return all;
}

Variant call(Object& object, TextView member, CallKind kind, std::vector<Variant> arguments = {}) {
  return object.call(member, kind, arguments);
}

Variant get(Object& object, TextView property) {
  return call(object, property, CallKind::propertyGet);
}

// An object that has the member, ready for it.
ObjectRef objectFor(std::string_view member) {
  const auto type = std::ranges::find_if(classes(), [&](const Class& one) {
    return std::ranges::count(one.members, member, &Member::name) > 0;
  });
  ObjectRef object = type->create();
  if (type->name == "ErrInfo")
    call(*object, u"ErrInfo", CallKind::method, {5, u"what went wrong", 1, u"here"});
  if (type->name == "cInifile") {
    call(*object, u"Path", CallKind::propertyPut, {kPath});
    call(*object, u"section", CallKind::propertyPut, {u"Main"});
    call(*object, u"key", CallKind::propertyPut, {u"key"});
  }
  return object;
}

Outcome outcomeOf(const Operation& operation, const Fault& fault = {},
                  const Listener& listener = {}) {
  const auto& [given, run] = operation.action;
  const std::string member = operation.name.substr(0, operation.name.find_first_of("=,"));
  const Text name = fromUtf8(member);
  const bool isPut = operation.name.find('=') != std::string::npos;
  const CallKind kind = isPut ? CallKind::propertyPut : CallKind::method;
  const ObjectRef object = run != nullptr ? nullptr : objectFor(member);
  std::vector<Variant> arguments = given;
  Variant result;
  Outcome outcome;
  try {
    const Disturbance disturbance(fault, listener);
    result = run != nullptr ? run() : object->call(name, kind, arguments);
  } catch (const RuntimeError& error) {
    outcome.number = error.number();
  } catch (const std::bad_alloc&) {
    outcome.number = 7;
  } catch (const std::exception&) {
    outcome.number = -1;
  }
  outcome.seen = textOf(result);
  if (const ObjectRef* info = std::get_if<ObjectRef>(&result)) {
    outcome.number = toInt32(get(**info, u"numberInfo"));
    const Text told = toText(get(**info, u"descriptionInfo"));
    if (outcome.number > 0 && told != standardMessage(outcome.number)) outcome.seen = toUtf8(told);
  }
  for (std::size_t i = 0; i < given.size(); ++i) {
    if (textOf(arguments[i]) == textOf(given[i])) continue;
    outcome.kept = false;
    outcome.seen += textOf(arguments[i]);
  }
  // An INI file's changes hand out nothing else.
  if (object && classOf(*object)->name == "cInifile" && outcome.kept && result == Variant())
    if (outcome.number == 0 && get(*object, u"Success") != Variant(true)) outcome.number = -1;
  return outcome;
}

// What `body` tells in a process of its own, or how that ended if not well.
std::string inChild(const std::function<std::string()>& body) {
  static const int kShared = ::memfd_create("told", 0);
  if (::ftruncate(kShared, 0) != 0) throw std::runtime_error("no memory to share");
  const pid_t child = ::fork();
  if (child == 0) {
    ::alarm(10);
    std::string told;
    try {
      told = body();
    } catch (const std::exception& error) {
      told = std::string("the trial itself failed: ") + error.what();
    }
    ::_exit(::pwrite(kShared, told.data(), told.size(), 0) < 0 ? 1 : 0);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  if (WIFSIGNALED(status)) return std::string("ended by ") + ::strsignal(WTERMSIG(status));
  return test::contentOf("/proc/self/fd/" + std::to_string(kShared));
}

// What an undisturbed run does.
struct Reference {
  Files known(Files files) const {
    std::erase_if(files, [this](const auto& file) { return !names.contains(file.first); });
    return files;
  }

  std::string seen;
  bool repeats = false;         // done once more, it tells the same and leaves the same files
  std::vector<Files> moments;   // before, all between, and after
  std::set<std::string> names;  // of what is there before or after, the log apart
  std::vector<Fault> faults;
};

// An undisturbed run, as a text: what was seen, whether it repeats, and for every call its place in
// the table and the files: how many, and each, or none where they are those of the call before.
std::string toldOf(const Operation& operation, const TemporaryFolder& folder) {
  std::ostringstream all;
  Files latest;
  enter(folder, operation);
  const Outcome outcome = outcomeOf(operation, {}, [&](const Call& call) {
    Files files = call.name == kAllocation ? latest : filesIn(folder);
    all << ' ' << &call - calls().data() << ' ' << (files == latest ? 0 : files.size());
    if (files == latest) return;
    for (const auto& [name, state] : files) all << std::quoted(name) << std::quoted(state);
    latest = std::move(files);
  });
  if (outcome.number != 0) throw std::runtime_error("error " + std::to_string(outcome.number));
  const Outcome again = outcomeOf(operation);
  std::ostringstream told;
  told << std::quoted(outcome.seen) << (again.seen == outcome.seen && filesIn(folder) == latest);
  return told.str() + all.str();
}

Reference undisturbed(const Operation& operation) {
  const auto folder = folderFor(operation);
  letTheClockTick();
  Reference reference;
  reference.moments.push_back(filesIn(*folder));
  std::istringstream told(inChild([&] { return toldOf(operation, *folder); }));
  if (!(told >> std::quoted(reference.seen) >> reference.repeats))
    throw std::runtime_error(operation.name + ", undisturbed: " + told.str());
  std::map<const Call*, int> turns;
  for (std::size_t place = 0, count = 0; told >> place >> count;) {
    const Call& made = calls()[place];
    const int turn = ++turns[&made];
    if (operation.process != Process::first || made.name == "dlopen")
      for (const int error : made.errors) reference.faults.push_back({&made, turn, error});
    Files files;
    for (std::string name, state; files.size() < count; files[name] = state)
      told >> std::quoted(name) >> std::quoted(state);
    if (count > 0) reference.moments.push_back(std::move(files));
  }
  for (const Files& files : {reference.moments.front(), reference.moments.back()})
    for (const auto& [name, state] : files)
      if (!isLog(name)) reference.names.insert(name);
  for (Files& files : reference.moments) files = reference.known(files);
  return reference;
}

// What is wrong with the files after a fault, or nothing.
std::string wrongFiles(const Operation& operation, const Reference& reference, const Fault& fault,
                       const Files& files) {
  for (const auto& [name, state] : files) {
    if (isLog(name) && !hasWholeLines(state)) return name + " is torn";
    if (!isLog(name) && !reference.names.contains(name) && fault.call->name != "unlink")
      return name + " was left behind";
  }
  const auto& moments = reference.moments;
  const Files known = reference.known(files);
  if (known == moments.front() || known == moments.back()) return {};
  if (operation.changes != kUndone && std::ranges::count(moments, known) > 0) return {};
  return "files are neither as before nor as after";
}

auto openDescriptors() { return std::distance(fs::directory_iterator("/proc/self/fd"), {}); }

// Nothing, or what is wrong. That no descriptor stays says that no lock does.
std::string wrong(const Operation& operation, const Reference& reference,
                  const TemporaryFolder& folder, const Fault& fault) {
  enter(folder, operation);
  const auto open = openDescriptors();
  const Outcome got = outcomeOf(operation, fault);
  if (!faultCame()) return {};  // how many calls there are may hang on the clock
  const Files files = filesIn(folder);
  const Files& after = reference.moments.back();
  const auto whole = [&] { return operation.alsoWhole != nullptr && operation.alsoWhole(); };
  const bool done = reference.known(files) == after || whole();
  const bool unnoticed = done && got.number == 0 && got.seen == reference.seen;
  const bool memory = fault.error == ENOMEM && got.number == 7;
  const bool signal = fault.error == EINTR && operation.process != Process::warm;
  if (!unnoticed && !memory && (signal || !operation.documented(got, reference.seen, fault.error)))
    return "result " + std::to_string(got.number) + " '" + got.seen + (done ? "'" : "', not done");
  std::string why = wrongFiles(operation, reference, fault, files);
  if (!why.empty() && !whole()) return why;
  if (openDescriptors() != open) return "a descriptor stays open";
  const Outcome again = outcomeOf(operation);
  if (again.number != 0) return "the next call fails: " + std::to_string(again.number);
  if (!reference.repeats) return {};
  if (again.seen != reference.seen) return "the next call tells '" + again.seen + "'";
  const bool redone = reference.known(filesIn(folder)) == after || whole();
  return redone ? "" : "the next call leaves wrong files";
}

// Others see no file half written.
void checkMoments(const Operation& operation, const Reference& reference) {
  if (operation.changes <= 0) return;
  for (const std::string& name : reference.names) {
    std::set<std::string> states;
    for (const Files& files : reference.moments)
      states.insert(files.contains(name) ? files.at(name) : "");
    EXPECT_LE(states.size(), static_cast<std::size_t>(operation.changes) + 1) << name;
  }
}

// Runs it undisturbed, and then with each of its calls failing in turn, each time in a process and
// a folder of its own. Returns what failed.
std::vector<Fault> tryOut(const Operation& operation) {
  if (operation.process == Process::warm) {
    const auto folder = folderFor(operation);
    enter(*folder, operation);
    outcomeOf(operation);
  }
  const Reference reference = undisturbed(operation);
  checkMoments(operation, reference);
  EXPECT_FALSE(reference.faults.empty());
  std::vector<std::unique_ptr<TemporaryFolder>> folders;
  while (folders.size() < reference.faults.size()) folders.push_back(folderFor(operation));
  letTheClockTick();
  for (std::size_t i = 0; i < folders.size(); ++i) {
    const Fault& fault = reference.faults[i];
    const auto trial = [&] { return wrong(operation, reference, *folders[i], fault); };
    EXPECT_EQ(inChild(trial), "") << fault.call->name << ' ' << fault.turn << ": " << fault.error;
  }
  return reference.faults;
}

void tryAll(bool warm) {
  int calls = 0, allocations = 0, trials = 0;
  for (const Operation& operation : operations()) {
    SCOPED_TRACE(operation.name);
    if ((operation.process == Process::warm) != warm) continue;
    for (const Fault& fault : tryOut(operation)) {
      ++trials;
      if (fault.error == fault.call->errors.front())
        ++(fault.call->name == kAllocation ? allocations : calls);
    }
  }
  std::cout << calls << " calls and " << allocations << " allocations failed, " << trials
            << " trials\n";
}

TEST(Faults, LeaveADocumentedResultAndWholeFiles) { tryAll(false); }

TEST(Faults, LeaveThemInAProcessThatHasDoneItBefore) { tryAll(true); }

}  // namespace
}  // namespace veltgeneral::faults
