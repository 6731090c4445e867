#include "platform/registry.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <utility>

#include "platform/environment.h"
#include "platform/folders.h"
#include "platform/linux/settings/file_cache.h"
#include "platform/linux/settings/reg_file.h"
#include "platform/linux/settings/replace_file.h"

namespace veltgeneral::platform {
namespace {

struct Root {
  RegistryRoot root;
  TextView name;
  TextView shortName;
};

constexpr std::array kRoots{
    Root{RegistryRoot::classes, u"HKEY_CLASSES_ROOT", u"HKCR"},
    Root{RegistryRoot::currentUser, u"HKEY_CURRENT_USER", u"HKCU"},
    Root{RegistryRoot::localMachine, u"HKEY_LOCAL_MACHINE", u"HKLM"},
    Root{RegistryRoot::users, u"HKEY_USERS", u"HKU"},
    Root{RegistryRoot::currentConfig, u"HKEY_CURRENT_CONFIG", u"HKCC"},
};

constexpr const char* kFolderVariable = "VELTGENERAL_REGISTRY_DIR";
constexpr TextView kClasses = u"HKEY_LOCAL_MACHINE\\SOFTWARE\\Classes";

bool sameName(TextView one, TextView other) {
  return std::ranges::equal(one, other, {}, foldUnit, foldUnit);
}

// Empty for a number that is no root.
Text wholePath(RegistryRoot root, TextView path) {
  Text whole(root == RegistryRoot::classes ? kClasses : registryRootName(root));
  if (!whole.empty() && !path.empty()) whole.append(u"\\").append(path);
  return whole;
}

FileCache<RegistryFile>& hives() {
  static auto* const kHives = new FileCache<RegistryFile>;  // outlives every late caller
  return *kHives;
}

KnownFile<RegistryFile> hive(const std::string& file, const NarrowPage& page) {
  return hives().get(file, [&](std::string_view content) {
    return std::make_shared<const RegistryFile>(content, page);
  });
}

// The key that a thread opened last: programs ask for the values of one key again and again.
struct RecentKey {
  RegistryRoot root{};
  Text path;
  std::optional<std::string> folder;  // as the environment named it
  std::string file;
  KnownFile<RegistryFile> hive;
  std::uint32_t node = RegistryFile::kNone;

  bool is(RegistryRoot wantedRoot, TextView wantedPath) const {
    return root == wantedRoot && std::ranges::equal(path, wantedPath) &&
           environmentIs(kFolderVariable, folder) && hive.holds(file);
  }
};

// Text that a UTF-8 file can hold in one line.
std::string lineText(TextView text, bool escapes) {
  std::string inner = toInner(text);
  const bool control = text.find_first_of(TextView(u"\r\n\0", 3)) != TextView::npos;
  if (!isUtf8(inner) || (control && (!escapes || text.find(u'\0') != TextView::npos)))
    throw RegistryError("a name holds characters that the registry cannot keep");
  return inner;
}

std::string keyText(RegistryRoot root, TextView path) {
  const Text whole = wholePath(root, path);
  if (whole.empty()) throw RegistryError("no such root");
  std::string inner = regPath(lineText(whole, false));
  if (std::ranges::count(inner, '\\') >= static_cast<std::ptrdiff_t>(kRegDepth))
    throw RegistryError("the key lies too deep");
  return inner;
}

bool removes(const RegChange& change) {
  return change.kind == RegChange::Kind::removeKey || change.kind == RegChange::Kind::removeValue;
}

// False where everything was so already.
bool apply(const std::string& file, const std::vector<RegChange>& changes, const NarrowPage& page) {
  if (changes.empty()) return false;
  const bool onlyRemoves = std::ranges::all_of(changes, removes);
  const auto folder = file.substr(0, file.rfind('/'));
  if (!onlyRemoves) makePrivateFolder(folder);  // where that failed, the change tells why
  bool changed = false;
  const auto failed = changeFile(file, S_IRUSR | S_IWUSR,
                                 [&](std::string_view before) -> std::optional<std::string> {
                                   RegText text = decodeReg(before, page);
                                   text.inner = editReg(text.inner, changes, page);
                                   std::string after = encodeReg(text, page);
                                   changed = after != before && !(onlyRemoves && before.empty());
                                   if (!changed) return std::nullopt;
                                   return after;
                                 });
  // What is not there has nothing to remove.
  if (onlyRemoves && failed == std::errc::no_such_file_or_directory) return false;
  if (failed) throw RegistryError(file + ": " + failed.message());
  return changed;
}

bool knownRoot(std::string_view path) {
  const Text name = fromInner(path.substr(0, path.find('\\')));
  return std::ranges::any_of(kRoots, [&](const Root& r) { return sameName(r.name, name); });
}

// The changes that a text asks for, those of the user's hive apart.
struct Import {
  std::vector<RegChange> machine;
  std::vector<RegChange> user;
};

class Importer {
 public:
  Importer(std::string_view text, const NarrowPage& page)
      : inner_(decodeReg(text, page).inner), dialect_(regDialect(inner_, page)) {}

  Import run() {
    RegLexer lexer(inner_);
    bool begun = false;
    for (RegLine line; lexer.next(line);) {
      if (line.kind == RegStatement::blank) continue;
      if (begun == (line.kind == RegStatement::version))
        throw RegistryError(begun ? "a second version line" : "no version line at the start",
                            line.line);
      begun = true;
      take(line);
    }
    if (!begun) throw RegistryError("no version line", 1);
    return std::move(import_);
  }

 private:
  void take(const RegLine& line) {
    switch (line.kind) {
      case RegStatement::key:
      case RegStatement::removeKey:
        takeKey(line);
        break;
      case RegStatement::value:
      case RegStatement::removeValue:
        takeValue(line);
        break;
      case RegStatement::malformed:
        throw RegistryError("not understood", line.line);
      default:
        break;
    }
  }

  void takeKey(const RegLine& line) {
    key_ = regPath(line.name);
    if (!knownRoot(key_)) throw RegistryError("no such root", line.line);
    const std::size_t rootEnd = std::min(key_.find('\\'), key_.size());
    const bool isRoot = rootEnd == key_.size();
    const auto root = registryRoot(fromInner(std::string_view(key_).substr(0, rootEnd)));
    key_ = toInner(root == RegistryRoot::classes ? kClasses : registryRootName(*root)) +
           key_.substr(rootEnd);
    if (std::ranges::count(key_, '\\') >= static_cast<std::ptrdiff_t>(kRegDepth))
      throw RegistryError("the key lies too deep", line.line);
    changes_ = root == RegistryRoot::currentUser ? &import_.user : &import_.machine;
    removed_ = line.kind == RegStatement::removeKey;
    if (isRoot) return;  // always there
    changes_->push_back(
        {removed_ ? RegChange::Kind::removeKey : RegChange::Kind::createKey, key_, {}, {}});
  }

  void takeValue(const RegLine& line) {
    if (changes_ == nullptr || removed_) throw RegistryError("a value without a key", line.line);
    std::string name = unescapeReg(line.name);
    if (line.kind == RegStatement::removeValue) {
      changes_->push_back({RegChange::Kind::removeValue, key_, std::move(name), {}});
      return;
    }
    auto value = parseRegData(line.data, dialect_);
    if (!value) throw RegistryError("the value's data is not understood", line.line);
    changes_->push_back({RegChange::Kind::setValue, key_, std::move(name), std::move(*value)});
  }

  std::string inner_;
  RegDialect dialect_;
  Import import_;
  std::vector<RegChange>* changes_ = nullptr;
  std::string key_;
  bool removed_ = false;
};

}  // namespace

RegistryKey::RegistryKey(std::shared_ptr<const RegistryFile> file, std::uint32_t node)
    : file_(std::move(file)), node_(node) {}

std::optional<RegistryKey> RegistryKey::open(RegistryRoot root, TextView path,
                                             const NarrowPage& page) {
  thread_local RecentKey recent;
  if (!recent.is(root, path)) {
    const Text whole = wholePath(root, path);
    if (whole.empty()) return std::nullopt;
    RecentKey key{.root = root,
                  .path = Text(path),
                  .folder = environment(kFolderVariable),
                  .file = registryFile(root),
                  .hive = {}};
    key.hive = hive(key.file, page);
    if (key.hive.parsed) key.node = key.hive.parsed->find(whole);
    recent = std::move(key);  // whole, or not at all
  }
  if (!recent.hive.parsed || recent.node == RegistryFile::kNone) return std::nullopt;
  return RegistryKey(recent.hive.parsed, recent.node);
}

std::optional<RegistryValue> RegistryKey::query(TextView name) const {
  return file_->query(node_, name);
}

std::vector<Text> RegistryKey::valueNames() const { return file_->valueNames(node_); }

std::vector<Text> RegistryKey::subKeyNames() const { return file_->subKeyNames(node_); }

void setRegistryValue(RegistryRoot root, TextView path, TextView name, const RegistryValue& value,
                      const NarrowPage& page) {
  apply(registryFile(root),
        {{RegChange::Kind::setValue, keyText(root, path), lineText(name, true), value}}, page);
}

bool removeRegistryValue(RegistryRoot root, TextView path, TextView name, const NarrowPage& page) {
  const Text whole = wholePath(root, path);
  if (whole.empty()) return false;
  const std::string file = registryFile(root);
  // Where the hive cannot be read, the change finds out whether there is one.
  if (const auto known = hive(file, page).parsed) {
    const std::uint32_t node = known->find(whole);
    if (node == RegistryFile::kNone || !known->query(node, name)) return false;
  }
  return apply(
      file, {{RegChange::Kind::removeValue, keyText(root, path), lineText(name, true), {}}}, page);
}

bool removeRegistryKey(RegistryRoot root, TextView path, const NarrowPage& page) {
  const std::string key = keyText(root, path);
  const bool isRoot = path.find_first_not_of(u'\\') == TextView::npos;
  if (isRoot) return false;
  const std::string file = registryFile(root);
  const auto known = hive(file, page).parsed;
  if (known && known->find(wholePath(root, path)) == RegistryFile::kNone) return false;
  return apply(file, {{RegChange::Kind::removeKey, key, {}, {}}}, page);
}

bool writeRegistryText(RegistryRoot root, TextView path, TextView name, TextView value,
                       const NarrowPage& page) noexcept {
  try {
    setRegistryValue(root, path, name, {.text = Text(value)}, page);
    return true;
  } catch (const std::exception&) {
    return false;
  }
}

void importRegistry(std::string_view text, const NarrowPage& page) {
  const Import import = Importer(text, page).run();
  apply(registryFile(RegistryRoot::localMachine), import.machine, page);
  apply(registryFile(RegistryRoot::currentUser), import.user, page);
}

std::optional<std::string> exportRegistry(RegistryRoot root, TextView path, bool utf16,
                                          const NarrowPage& page) {
  const Text whole = wholePath(root, path);
  const auto file = hive(registryFile(root), page).parsed;
  if (!file || whole.empty()) return std::nullopt;
  const std::uint32_t node = file->find(whole);
  if (node == RegistryFile::kNone) return std::nullopt;
  std::string inner = file->exported(node);
  return utf16 ? std::string(kUtf16Mark) + utf16OfInner(inner) : std::move(inner);
}

std::optional<RegistryRoot> registryRoot(TextView name) {
  for (const Root& root : kRoots)
    if (sameName(root.name, name) || sameName(root.shortName, name)) return root.root;
  return std::nullopt;
}

TextView registryRootName(RegistryRoot root) noexcept {
  for (const Root& entry : kRoots)
    if (entry.root == root) return entry.name;
  return {};
}

std::string registryFile(RegistryRoot root) {
  const bool user = root == RegistryRoot::currentUser;
  const char* file = user ? "/user.reg" : "/machine.reg";
  if (const auto folder = environment(kFolderVariable); folder && !folder->empty())
    return *folder + file;
  return (user ? configFolder() : std::string("/etc/veltgeneral")) + file;
}

}  // namespace veltgeneral::platform
