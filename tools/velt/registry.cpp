// velt registry list|get|set|delete|import|export
#include <iostream>

#include "command.h"
#include "core/narrow_page.h"
#include "file_io.h"
#include "registry_text.h"

namespace veltgeneral::tool {

using platform::RegistryKey;
using platform::RegistryRoot;

namespace {

struct Options {
  std::string key;
  std::optional<std::string> name;
  std::vector<std::string> data;
  std::string type = "text";
  std::string file;
  bool recursive = false;
  bool utf16 = false;
  bool json = false;
};

struct KeyPath {
  RegistryRoot root;
  Text path;  // below it
};

KeyPath parseKey(const std::string& key) {
  const std::size_t end = std::min(key.find('\\'), key.size());
  const auto root = platform::registryRoot(fromUtf8(key.substr(0, end)));
  if (!root)
    throw UsageError("a key begins with its root, HKLM\\... or HKCU\\..., not '" + key + "'");
  return {*root, fromUtf8(std::string_view(key).substr(std::min(end + 1, key.size())))};
}

// "@" stands for the key's default value, whose name is empty.
Text valueName(const std::string& name) { return name == "@" ? Text() : fromUtf8(name); }
std::string shownName(const Text& name) { return name.empty() ? "@" : toUtf8(name); }

// To the reader below, a hive that cannot be read is one that is not there.
std::optional<RegistryKey> openKey(const KeyPath& key) {
  requireReadable(platform::registryFile(key.root));
  return RegistryKey::open(key.root, key.path, narrowPage());
}

int missing(const std::string& what) {
  std::cerr << "velt: no such " << what << '\n';
  return kFailed;
}

Json valueJson(const platform::RegistryValue& value) {
  return {{"type", typeName(value.type)}, {"data", dataJson(value)}};
}

Json valuesJson(const RegistryKey& key) {
  Json values = Json::object();
  for (const Text& name : key.valueNames()) {
    if (const auto value = key.query(name)) values[shownName(name)] = valueJson(*value);
  }
  return values;
}

void printValues(const RegistryKey& key, const std::string& indent) {
  std::vector<std::vector<std::string>> rows;
  for (const Text& name : key.valueNames()) {
    const auto value = key.query(name);
    if (value)
      rows.push_back(
          {indent + shownName(name), typeName(value->type), toReadable(dataJson(*value))});
  }
  printColumns(std::cout, rows);
}

Text below(const Text& path, const Text& name) { return path.empty() ? name : path + u'\\' + name; }

Json treeJson(const KeyPath& at, const RegistryKey& key, bool recursive) {
  Json keys = recursive ? Json::object() : Json::array();
  for (const Text& name : key.subKeyNames()) {
    const KeyPath inner{at.root, below(at.path, name)};
    if (!recursive) {
      keys.push_back(toUtf8(name));
    } else if (const auto subKey = openKey(inner)) {
      keys[toUtf8(name)] = treeJson(inner, *subKey, true);
    }
  }
  return {{"values", valuesJson(key)}, {"keys", std::move(keys)}};
}

std::string fullName(const KeyPath& key) {
  std::string name = toUtf8(platform::registryRootName(key.root));
  if (!key.path.empty()) name += '\\' + toUtf8(key.path);
  return name;
}

void printTree(const KeyPath& at, const RegistryKey& key, bool recursive) {
  std::cout << fullName(at) << '\n';
  printValues(key, "  ");
  for (const Text& name : key.subKeyNames()) {
    const KeyPath inner{at.root, below(at.path, name)};
    if (!recursive) {
      std::cout << "  [" << toUtf8(name) << "]\n";
    } else if (const auto subKey = openKey(inner)) {
      printTree(inner, *subKey, true);
    }
  }
}

int list(const Options& options) {
  const KeyPath at = parseKey(options.key);
  const auto key = openKey(at);
  if (!key) return missing("key: " + options.key);
  if (options.json) {
    printJson(std::cout, treeJson(at, *key, options.recursive));
  } else {
    printTree(at, *key, options.recursive);
  }
  return kSucceeded;
}

int get(const Options& options) {
  const auto key = openKey(parseKey(options.key));
  if (!key) return missing("key: " + options.key);
  if (!options.name) {
    if (options.json) {
      printJson(std::cout, valuesJson(*key));
    } else {
      printValues(*key, "");
    }
    return kSucceeded;
  }
  const auto value = key->query(valueName(*options.name));
  if (!value) return missing("value: " + *options.name);
  if (options.json) {
    printJson(std::cout, valueJson(*value));
  } else {
    std::cout << dataText(*value) << '\n';
  }
  return kSucceeded;
}

int set(const Options& options) {
  const KeyPath key = parseKey(options.key);
  const auto value = parseValue(options.type, options.data);
  platform::setRegistryValue(key.root, key.path, valueName(*options.name), value, narrowPage());
  return kSucceeded;
}

int remove(const Options& options) {
  const KeyPath key = parseKey(options.key);
  requireReadable(platform::registryFile(key.root));
  if (options.name) {
    const Text name = valueName(*options.name);
    if (platform::removeRegistryValue(key.root, key.path, name, narrowPage())) return kSucceeded;
    return missing("value: " + *options.name);
  }
  if (key.path.empty()) throw UsageError("a root cannot be deleted");
  if (platform::removeRegistryKey(key.root, key.path, narrowPage())) return kSucceeded;
  return missing("key: " + options.key);
}

int import(const Options& options) {
  const std::string text = readWhole(options.file);
  try {
    platform::importRegistry(text, narrowPage());
  } catch (const platform::RegistryError& error) {
    if (error.line() == 0) throw;
    const std::string file = options.file == "-" ? "standard input" : options.file;
    throw std::runtime_error(file + ":" + std::to_string(error.line()) + ": " + error.what());
  }
  return kSucceeded;
}

int exportKey(const Options& options) {
  const KeyPath key = parseKey(options.key);
  requireReadable(platform::registryFile(key.root));
  const auto text = platform::exportRegistry(key.root, key.path, options.utf16, narrowPage());
  if (!text) return missing("key: " + options.key);
  writeWhole(options.file, *text);
  return kSucceeded;
}

CLI::Option* declareName(CLI::App& command, Options& options) {
  return addText(command, "NAME", options.name, "A value; @ is the key's default value");
}

// A command whose first argument is a key; `declare` adds what else it takes.
void addKeyCommand(CLI::App& registry, Action& action, const char* name, const char* help,
                   int (*run)(const Options&), void (*declare)(CLI::App&, Options&),
                   const std::string& examples) {
  addCommand<Options>(
      registry, name, help, action,
      [declare](CLI::App& command, Options& options) {
        addText(command, "KEY", options.key, "A key, as HKLM\\SOFTWARE\\Acme")->required();
        declare(command, options);
      },
      run)
      .footer("Examples:\n" + examples);
}

void addReaders(CLI::App& registry, Action& action) {
  addKeyCommand(
      registry, action, "list", "List the values and sub-keys of a key", &list,
      [](CLI::App& command, Options& options) {
        command.add_flag("-r,--recursive", options.recursive, "With everything below it");
        addJson(command, options.json);
      },
      "  velt registry list 'HKLM\\SOFTWARE\\Zoltra'\n"
      "  velt registry list HKLM --recursive --json\n");
  addKeyCommand(
      registry, action, "get", "Print one value, or all values of a key", &get,
      [](CLI::App& command, Options& options) {
        declareName(command, options);
        addJson(command, options.json);
      },
      "  velt registry get 'HKLM\\SOFTWARE\\Zoltra\\LogSystem' Trace\n"
      "  velt registry get 'HKLM\\SOFTWARE\\Zoltra\\LogSystem' --json\n");
  addKeyCommand(
      registry, action, "export", "Write a key with everything below it as a .reg file", &exportKey,
      [](CLI::App& command, Options& options) {
        options.file = "-";
        addText(command, "-o,--output", options.file, "The file; standard output without it")
            ->type_name("FILE");
        command.add_flag("--utf16", options.utf16, "In UTF-16, as other systems expect it");
      },
      "  velt registry export 'HKLM\\SOFTWARE\\Zoltra' -o zoltra.reg --utf16\n");
}

void addWriters(CLI::App& registry, Action& action) {
  addKeyCommand(
      registry, action, "set", "Set a value, creating its key", &set,
      [](CLI::App& command, Options& options) {
        declareName(command, options)->required();
        addTexts(command, "DATA", options.data,
                 "A text, a number (decimal or 0x...), bytes in hexadecimal, or several texts");
        addText(command, "-t,--type", options.type, typeNames() + "; text without it")
            ->type_name("TYPE");
      },
      "  velt registry set 'HKLM\\SOFTWARE\\Zoltra\\LogSystem' Path /var/log/acme\n"
      "  velt registry set 'HKCU\\Software\\Acme' Size 0x1F4 --type dword\n"
      "  velt registry set 'HKCU\\Software\\Acme' Names Anna Berto --type texts\n"
      "  velt registry set 'HKCU\\Software\\Acme' Key 00ff10 --type binary\n");
  addKeyCommand(
      registry, action, "delete", "Delete one value, or a key with everything below it", &remove,
      [](CLI::App& command, Options& options) { declareName(command, options); },
      "  velt registry delete 'HKCU\\Software\\Acme' Size\n"
      "  velt registry delete 'HKCU\\Software\\Acme'\n");
  addCommand<Options>(
      registry, "import", "Take over a .reg file, deletions included", action,
      [](CLI::App& command, Options& options) {
        addText(command, "FILE", options.file, "Version 5 or REGEDIT4; - is standard input")
            ->required();
      },
      &import)
      .footer(
          "A malformed file changes nothing; the error names its line.\n"
          "\n"
          "Examples:\n"
          "  velt registry import zoltra.reg\n");
}

}  // namespace

void addRegistry(CLI::App& program, Action& action) {
  CLI::App* registry = program.add_subcommand("registry", "Read and change the registry");
  registry->require_subcommand(1);
  registry->footer(
      "Keys begin with their root: HKLM, HKCU, HKCR or the full name.\n"
      "Exit status: 1 where there is no such key or value.\n"
      "\n"
      "Examples:\n"
      "  velt registry list 'HKLM\\SOFTWARE'\n"
      "  velt registry get --help\n");
  addReaders(*registry, action);
  addWriters(*registry, action);
}

}  // namespace veltgeneral::tool
