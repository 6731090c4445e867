#include "faults/trial.h"

#include <grp.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <ctime>
#include <iomanip>
#include <list>
#include <map>
#include <set>
#include <sstream>
#include <stdexcept>
#include <thread>
#include <utility>

#include "veltgeneral/runtime_error.h"

namespace veltgeneral::faults {
namespace {

namespace fs = std::filesystem;
using test::TemporaryFolder;

constexpr std::string_view kAllocation = "new";
constexpr uid_t kNobody = 65534;

// Everything about the files of a folder that an operation can change, by their names.
using Files = std::map<std::string, std::string>;

Files filesIn(const std::string& folder) {
  Files files;
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    const std::string path = entry.path();
    struct stat status {};
    if (::lstat(path.c_str(), &status) != 0) continue;
    std::string& state = files[path.substr(folder.size() + 1)];
    state = "mode " + std::to_string(status.st_mode) + " of " + std::to_string(status.st_uid);
    if (!S_ISREG(status.st_mode)) continue;
    std::array<char, 256> value{};
    for (const char* name : {"user.DOSATTRIB", "user.note"}) {
      const ssize_t size = ::getxattr(path.c_str(), name, value.data(), value.size());
      if (size > 0) state.append(" ").append(value.data(), static_cast<std::size_t>(size));
    }
    // Only a time that an operation sets is not of today.
    if (status.st_mtime < std::time(nullptr) - 86400)
      state += " time " + std::to_string(status.st_mtime);
    std::string content = test::contentOf(path);
    for (std::size_t at = 0; (at = content.find(folder, at)) != std::string::npos;)
      content.replace(at, folder.size(), "<folder>");
    state += ": " + content;
  }
  return files;
}

// The common log takes a line of whatever fails: it has whole lines, and is of no account else.
bool isLog(const std::string& name) {
  return (name.starts_with("log/") || name.starts_with("home/")) &&
         (name.ends_with("tarnview.log") || name.ends_with("tarnview.log.old"));
}

bool hasWholeLines(const std::string& state) {
  const std::string lines = state.substr(state.find(": ") + 2);
  return lines.empty() || (lines.starts_with("\"[") && lines.ends_with("]\"\r\n"));
}

bool also(const Operation& operation, const Site& site) {
  return operation.alsoWhole != nullptr && operation.alsoWhole(site);
}

// What an undisturbed run does.
struct Reference {
  Outcome outcome;
  std::set<std::string> names;  // of what is there before or after, the log apart
  std::vector<Files> moments;   // before, after, and all between
  std::vector<Fault> faults;
};

Files known(const Reference& reference, Files files) {
  std::erase_if(files, [&](const auto& file) { return !reference.names.contains(file.first); });
  return files;
}

std::string describe(const Fault& fault) {
  const char* how = fault.error == kPart ? "done in part" : ::strerrorname_np(fault.error);
  return fault.name + " " + std::to_string(fault.turn) + ", " + how;
}

// Where a child leaves texts for its parent.
int sharedFile() {
  static const int kFile = ::memfd_create("faults", 0);
  return kFile;
}

// Runs `body` in a process of its own: the texts that it gives, and how it ended if not well.
template <class Body>
std::vector<std::string> inChild(const Body& body) {
  if (::ftruncate(sharedFile(), 0) != 0) throw std::runtime_error("no memory to share");
  const pid_t child = ::fork();
  if (child == 0) {
    ::alarm(10);
    std::ostringstream out;
    try {
      for (const std::string& text : body()) out << std::quoted(text) << '\n';
    } catch (const std::exception& error) {
      out << std::quoted(std::string("the trial itself failed: ") + error.what());
    }
    const std::string texts = out.str();
    ::_exit(::pwrite(sharedFile(), texts.data(), texts.size(), 0) < 0 ? 1 : 0);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  if (WIFSIGNALED(status)) return {std::string("ended by ") + ::strsignal(WTERMSIG(status))};
  std::istringstream in(test::contentOf("/proc/self/fd/" + std::to_string(sharedFile())));
  std::vector<std::string> texts;
  for (std::string text; in >> std::quoted(text);) texts.push_back(text);
  return texts;
}

// Where a host keeps extended attributes in memory that is far faster than its disk.
const fs::path& workFolder() {
  static const fs::path kFolder = [] {
    const TemporaryFolder probe(fs::exists("/dev/shm") ? "/dev/shm" : "/tmp");
    const bool fit = ::setxattr(probe.put("a", "").c_str(), "user.a", "", 0, 0) == 0;
    return fit ? probe.path().parent_path() : fs::temp_directory_path();
  }();
  return kFolder;
}

void enter(const Site& site, Way way) {
  fs::current_path(site.file("home"));
  for (const auto& [name, value] : std::initializer_list<std::pair<const char*, const char*>>{
           {"VELTGENERAL_REGISTRY_DIR", "registry"},
           {"VELTGENERAL_HOME", "home"},
           {"XDG_STATE_HOME", "state"},
           {"TMPDIR", "home"}})
    ::setenv(name, site.file(value).c_str(), 1);
  ::setenv("VELTGENERAL_PRINTER", ("pdf:" + site.file("report.pdf")).c_str(), 1);
  ::setenv("VELTGENERAL_FORM", ("image:" + site.file("form.png")).c_str(), 1);
  if ((way == Way::user || way == Way::guest) && ::geteuid() == 0)
    if (::setgroups(0, nullptr) != 0 || ::setresgid(kNobody, kNobody, kNobody) != 0 ||
        ::setresuid(kNobody, kNobody, kNobody) != 0)
      throw std::runtime_error("cannot become a plain user");
}

Site prepared(const Operation& operation, const TemporaryFolder& folder) {
  const Site site{.folder = folder.path()};
  for (const char* name : {"registry", "home", "log"}) fs::create_directory(site.file(name));
  site.put("registry/machine.reg",
           "REGEDIT4\n\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Zoltra\\LogSystem]\n\"Path\"=\"" +
               site.file("log") + "\"\n");
  operation.prepare(site);
  if (operation.way != Way::user && operation.way != Way::guest) return site;
  fs::permissions(site.folder, fs::perms(0755));
  if (operation.way == Way::guest || ::geteuid() != 0) return site;
  std::vector<fs::path> all{site.folder};
  for (const auto& entry : fs::recursive_directory_iterator(site.folder)) all.push_back(entry);
  for (const fs::path& path : all)
    if (::lchown(path.c_str(), kNobody, kNobody) != 0) throw std::runtime_error("lchown");
  return site;
}

// Files changed within the clock's last tick are not yet trusted, which takes other calls.
void letTheClockTick() { std::this_thread::sleep_for(std::chrono::milliseconds(12)); }

// The child tells the outcome, and for every call its place, the number of files and the files:
// none where they are those of the call before.
std::vector<std::string> toldOf(const Operation& operation, Site site) {
  std::vector<std::string> told(2);
  Files latest;
  site.made = [&](const Call& call) {
    const Call* place = &call;  // constant data, at the same place in every process
    told.emplace_back(reinterpret_cast<const char*>(&place), sizeof place);
    Files files = call.name == kAllocation ? latest : filesIn(site.folder);
    told.push_back(std::to_string(files == latest ? 0 : files.size()));
    if (files == latest) return;
    for (const auto& [name, state] : files) told.insert(told.end(), {name, state});
    latest = std::move(files);
  };
  enter(site, operation.way);
  const Outcome outcome = operation.run(site);
  told[0] = std::to_string(outcome.number);
  told[1] = outcome.seen;
  return told;
}

Reference undisturbed(const Operation& operation) {
  const TemporaryFolder folder(workFolder());
  const Site site = prepared(operation, folder);
  letTheClockTick();
  Reference reference;
  reference.moments.push_back(filesIn(site.folder));
  const auto told = inChild([&] { return toldOf(operation, site); });
  if (told.size() < 3) throw std::runtime_error("undisturbed: " + told.at(0));
  reference.outcome = {std::stoi(told[0]), told[1]};
  reference.moments.push_back(filesIn(site.folder));
  std::map<std::string, int> turns;
  for (std::size_t i = 2; i < told.size();) {
    const Call* call = nullptr;
    std::memcpy(&call, told[i].data(), sizeof call);
    const int turn = ++turns[call->name];
    if (operation.way != Way::first || std::string_view(call->name) == "dlopen")
      for (const int error : call->errors) reference.faults.push_back({call->name, turn, error});
    const std::size_t end = i + 2 + 2 * std::stoul(told[i + 1]);
    Files files;
    for (i += 2; i < end; i += 2) files[told[i]] = told[i + 1];
    if (!files.empty()) reference.moments.push_back(std::move(files));
  }
  for (const std::size_t moment : {0, 1})
    for (const auto& [name, state] : reference.moments[moment])
      if (!isLog(name)) reference.names.insert(name);
  for (Files& files : reference.moments) files = known(reference, std::move(files));
  return reference;
}

// What is wrong with the files after a fault, or nothing.
std::string wrongFiles(const Operation& operation, const Reference& reference, const Site& site,
                       const Files& files) {
  if (also(operation, site)) return {};
  for (const auto& [name, state] : files) {
    if (isLog(name) && !hasWholeLines(state)) return name + " is torn: " + state;
    if (!isLog(name) && !reference.names.contains(name) && !site.fault.name.starts_with("unlink"))
      return name + " was left behind";
  }
  const Files kept = known(reference, files);
  const auto last = operation.changes == Operation::kUndone ? reference.moments.begin() + 2
                                                            : reference.moments.end();
  if (std::find(reference.moments.begin(), last, kept) != last) return {};
  std::string why = "files are neither as before nor as after:";
  for (const auto& [name, state] : kept)
    if (reference.moments[1].count(name) == 0 || reference.moments[1].at(name) != state)
      why.append(" ").append(name).append(" ").append(state.substr(0, 200));
  return why;
}

std::size_t openDescriptors() {
  return static_cast<std::size_t>(std::distance(fs::directory_iterator("/proc/self/fd"), {}));
}

// Nothing, or what is wrong. That no descriptor stays says that no lock does.
std::string wrong(const Operation& operation, const Reference& reference, const Site& site) {
  enter(site, operation.way);
  const std::size_t open = openDescriptors();
  const Outcome got = operation.run(site);
  if (!site.came) return "did not come";
  const Files files = filesIn(site.folder);
  const Files& after = reference.moments[1];
  const bool same = got.number == reference.outcome.number && got.seen == reference.outcome.seen;
  const bool done = known(reference, files) == after || also(operation, site);
  const bool memory = site.fault.error == ENOMEM && got.number == 7;
  if (!(same && done) && !memory && !operation.documented(got, reference.outcome, site.fault.error))
    return "result " + std::to_string(got.number) + " '" + got.seen + "'" +
           (done ? "" : ", not done");
  if (std::string why = wrongFiles(operation, reference, site, files); !why.empty()) return why;
  if (openDescriptors() != open) return "a descriptor stays open";
  const Outcome again = operation.run(Site{site.folder});
  if (again.number != reference.outcome.number)
    return "the next call fails: " + std::to_string(again.number);
  if (!operation.repeats) return {};
  if (again.seen != reference.outcome.seen) return "the next call tells '" + again.seen + "'";
  return known(reference, filesIn(site.folder)) == after ? "" : "the next call leaves wrong files";
}

// Files that others see half written where they should not.
void lookAtMoments(const Operation& operation, const Reference& reference, Findings& findings) {
  if (operation.changes <= 0) return;
  for (const std::string& name : reference.names) {
    std::set<std::string> states;
    for (const Files& files : reference.moments)
      states.insert(files.contains(name) ? files.at(name) : "");
    if (states.size() > static_cast<std::size_t>(operation.changes) + 1)
      findings.complaints.push_back(name + " is seen half written");
  }
}

}  // namespace

Outcome Site::tried(const std::function<void()>& body) const {
  struct Under {
    const Site& site;
    ~Under() { site.came = end(); }
  };
  try {
    const Under under{*this};
    begin(fault, made);
    body();
    return {};
  } catch (const RuntimeError& error) {
    return {error.number()};
  } catch (const std::bad_alloc&) {
    return {7};
  } catch (const std::exception&) {
    return {-1};
  }
}

Outcome Site::result(const std::function<ErrInfo()>& body) const {
  ErrInfo result;
  Outcome outcome = tried([&] { result = body(); });
  if (!result.isSuccess()) outcome.number = result.numberInfo();
  if (result.numberInfo() > 0 && result.descriptionInfo() != standardMessage(outcome.number))
    outcome.seen = "not the description of its number: ";
  return outcome;
}

Findings tryOut(const Operation& operation) {
  if (operation.way == Way::warm) {
    const std::string temporary = fs::temp_directory_path();
    const TemporaryFolder folder(workFolder());
    const Site site = prepared(operation, folder);
    enter(site, operation.way);
    operation.run(site);
    fs::current_path("/");
    ::setenv("TMPDIR", temporary.c_str(), 1);
  }
  const Reference reference = undisturbed(operation);
  Findings findings;
  lookAtMoments(operation, reference, findings);
  std::set<std::pair<std::string, int>> calls;
  std::vector<Fault> waiting = reference.faults;
  for (int round = 0; round < 5 && !waiting.empty(); ++round) {
    const std::vector<Fault> faults = std::exchange(waiting, {});
    constexpr std::size_t kAtOnce = 64;
    for (std::size_t first = 0; first < faults.size(); first += kAtOnce) {
      const std::size_t count = std::min(kAtOnce, faults.size() - first);
      std::list<TemporaryFolder> folders;
      while (folders.size() < count) folders.emplace_back(workFolder());
      std::vector<Site> sites;
      for (const TemporaryFolder& folder : folders) sites.push_back(prepared(operation, folder));
      letTheClockTick();
      for (std::size_t i = 0; i < count; ++i) {
        const Fault& fault = sites[i].fault = faults[first + i];
        const auto said =
            inChild([&] { return std::vector{wrong(operation, reference, sites[i])}; });
        // How many calls there are may hang on the clock.
        if (said.at(0) == "did not come") {
          waiting.push_back(fault);
          continue;
        }
        ++findings.trials;
        calls.emplace(fault.name, fault.turn);
        if (!said[0].empty()) findings.complaints.push_back(describe(fault) + ": " + said[0]);
      }
    }
  }
  for (const Fault& fault : waiting)  // how often a socket is waited for, nobody knows
    if (fault.name != "poll" && fault.name != "recv")
      findings.complaints.push_back(describe(fault) + " never came again");
  const auto allocates = [](const auto& call) { return call.first == kAllocation; };
  findings.allocations = static_cast<int>(std::ranges::count_if(calls, allocates));
  findings.calls = static_cast<int>(calls.size()) - findings.allocations;
  return findings;
}

}  // namespace veltgeneral::faults
